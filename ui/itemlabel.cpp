#include "ui/itemlabel.h"

#include "ui/navigationmanager.h"

ItemLabel::ItemLabel(QWidget *parent, bool selectable, bool takesFocus)
    : StyledLabel(parent)
    , m_selectable(selectable)
    , m_takesFocus(takesFocus)
{
    setStyledProperty(stateProperty, normalState);
}

void ItemLabel::normal()
{
    setStyledProperty(stateProperty, normalState);
    emit signalNormaled();
}

void ItemLabel::hover()
{
    setStyledProperty(stateProperty, hoveredState);
    emit signalHovered();
}

void ItemLabel::select()
{
    if (m_selectable) {
        setStyledProperty(stateProperty, selectedState);
        if (m_takesFocus)
            NavigationManager::instance()->pushFocus(this);
    }
    emit signalSelected();
}

void ItemLabel::deselect(bool chosen)
{
    if (m_selectable && m_takesFocus)
        NavigationManager::instance()->popFocus(this);
    if (chosen)
        emit signalChosen();
    emit signalDeselected();
}
