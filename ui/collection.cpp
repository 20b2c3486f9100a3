#include "ui/collection.h"

#include "ui/interfaceitem.h"

#include <QWidget>

void Collection::addWidget(QWidget *widget)
{
    if (m_widgets.contains(widget))
        return;
    m_widgets.append(widget);
    if (auto *item = dynamic_cast<InterfaceItem *>(widget))
        m_items.append(item);
}

void Collection::showAll(bool skipped)
{
    for (QWidget *widget : std::as_const(m_widgets))
        widget->show();
    m_skipped = skipped;
}

void Collection::hideAll()
{
    for (QWidget *widget : std::as_const(m_widgets))
        widget->hide();
    m_skipped = true;
}

void Collection::normal()
{
    for (InterfaceItem *item : std::as_const(m_items))
        item->normal();
}

void Collection::hover()
{
    for (InterfaceItem *item : std::as_const(m_items))
        item->hover();
}

void Collection::select()
{
    const QList<InterfaceItem *> items = m_items; // one may open a page that changes this row
    for (InterfaceItem *item : items)
        item->select();
}
