#pragma once

#include "ui/interfaceitem.h"
#include "ui/styledlabel.h"

class QKeyEvent;

/// A label that the highlight reaches: a caption, a button, an icon, and the base of the wheels.
class ItemLabel : public StyledLabel, public InterfaceItem
{
    Q_OBJECT
public:
    /// @param selectable whether select() changes the look.
    /// @param takesFocus whether, selected, it takes the keyboard until it is deselected.
    explicit ItemLabel(QWidget *parent = nullptr, bool selectable = false, bool takesFocus = false);

    void normal() override;
    void hover() override;
    /// Tells that it was selected in every case, also where its look stays.
    void select() override;

    /// Ends a selection and gives the keyboard back; the look is left to whoever listens.
    /// @param chosen whether it ended with a choice.
    void deselect(bool chosen);

signals:
    void signalNormaled();
    void signalHovered();
    void signalSelected();
    void signalDeselected();
    void signalChosen();

private:
    const bool m_selectable;
    const bool m_takesFocus;
};
