#include "ui/screensetip.h"

ScreenSetIp::ScreenSetIp(QWidget *parent)
    : ScreenSetFields(parent, {{0, 255, false, 55}, {0, 255, false, 55}, {0, 255, false, 55}, {0, 255, false, 55}},
        QStringLiteral("."))
{
}

void ScreenSetIp::setActive(bool active)
{
    if (active)
        fetch();
}

void ScreenSetIp::propertyReceived(const QString &property, const QString &value)
{
    if (isEdited(property))
        showFields(value);
}

void ScreenSetIp::savePressed() { save(fields()); }
