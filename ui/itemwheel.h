#pragma once

#include "ui/itemlabel.h"

/// The base of the labels that are edited by turning the knob. While it is selected it gets all keys; Return keeps
/// what was turned to, Escape brings back what was there.
class ItemWheel : public ItemLabel
{
    Q_OBJECT
public:
    explicit ItemWheel(QWidget *parent)
        : ItemLabel(parent, true, true)
    {
    }

    /// Moves on by so many steps, as the knob does.
    virtual void scroll(int delta) = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override;

    /// What shows is what Escape brings back from now on.
    virtual void commit() = 0;
    virtual void rewind() = 0;
};
