// The floor of the start-up: a Qt Widgets program with the panel's fonts and one label. With an argument it also has
// two timers of 20 ms, the floor of being idle.

#include "benchmarks/lcdbenchmark-common.h"
#include "ui/fonts.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    loadFonts(QStringLiteral(FONT_FOLDER));
    QLabel label(QStringLiteral("The matrix is about to start."), nullptr, Qt::FramelessWindowHint);
    QFont font(QStringLiteral("RobotoMedium"));
    font.setPixelSize(19);
    label.setFont(font);
    label.setAlignment(Qt::AlignCenter);
    label.setGeometry(0, 0, 320, 240);
    label.show();
    QTimer timers[2];
    for (QTimer &timer : timers) {
        QObject::connect(&timer, &QTimer::timeout, &label, [] {});
        if (argc > 1)
            timer.start(20);
    }
    return QApplication::exec();
}
