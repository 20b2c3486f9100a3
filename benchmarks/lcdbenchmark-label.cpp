// The floor of the start-up: a Qt Widgets program with the panel's fonts and one label.

#include "benchmarks/lcdbenchmark-common.h"

#include <QApplication>
#include <QLabel>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    loadFonts();
    QLabel label(QStringLiteral("The matrix is about to start."), nullptr, Qt::FramelessWindowHint);
    QFont font(QStringLiteral("RobotoMedium"));
    font.setPixelSize(19);
    label.setFont(font);
    label.setAlignment(Qt::AlignCenter);
    label.setGeometry(0, 0, 320, 240);
    label.show();
    return QApplication::exec();
}
