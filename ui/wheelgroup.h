#pragma once

#include "ui/collection.h"
#include "ui/itemlabel.h"

class ItemWheel;

/// A wheel and the arrows above and below it, which show while it is being turned. The highlight treats the three
/// as one. The wheel is borrowed; the arrows stand where the owner puts them.
class WheelGroup
{
public:
    /// @param parent of the arrows.
    WheelGroup(QWidget *parent, ItemWheel *wheel);

    ItemLabel up, down;
    Collection collection; ///< Of all three, for the navigator of the screen.
};
