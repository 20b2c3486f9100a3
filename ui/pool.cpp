#include "ui/pool.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QVBoxLayout>

Pool *Pool::instance()
{
    static QPointer<Pool> self;
    if (!self) {
        self = new Pool; // owned by the post routine
        qAddPostRoutine([] { delete self.data(); });
    }
    return self;
}

Pool::Pool()
{
    setWindowFlag(Qt::FramelessWindowHint);
    setGeometry(0, 0, 320, 240);
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(QStringLiteral("The matrix is about to start."), this);
    label->setStyleSheet(QStringLiteral("*{ font-family: RobotoMedium; font-size: 19px; color: #FFFFFF}"));
    layout->addWidget(label, 0, Qt::AlignCenter);
    setFocusPolicy(Qt::StrongFocus); // keys are posted to the widget with the focus; without one they are lost
    setVisible(true);
    setFocus();
}
