#include "ui/wheelgroup.h"

#include "ui/itemwheel.h"
#include "ui/styles.h"

WheelGroup::WheelGroup(QWidget *parent, ItemWheel *wheel)
    : up(parent, true)
    , down(parent, true)
{
    wheel->setSheet(Style::wheel(19));
    wheel->setAlignment(Qt::AlignCenter);
    up.setText(Glyph::chevronUp);
    down.setText(Glyph::chevronDown);
    for (ItemLabel *arrow : {&up, &down}) {
        arrow->setSheet(Style::wheelArrow(15));
        arrow->setAlignment(Qt::AlignCenter);
    }
    collection.addWidget(wheel);
    collection.addWidget(&up);
    collection.addWidget(&down);
    QObject::connect(wheel, &ItemLabel::signalDeselected, &collection, &Collection::hover);
}
