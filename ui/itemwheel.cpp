#include "ui/itemwheel.h"

#include "ui/keys.h"

#include <QCoreApplication>

void ItemWheel::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (const int steps = wheelSteps(key)) {
        scroll(steps);
    } else if (isConfirm(key)) {
        commit();
        deselect(true);
    } else if (key == Qt::Key_Escape) {
        rewind();
        deselect(false);
    } else if (key == Qt::Key_Alt) {
        QCoreApplication::exit(0);
    }
    event->accept(); // the screen behind takes no part while an item has the keyboard
}
