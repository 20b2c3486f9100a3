#pragma once

#include "hardware/panellayout.h"

#include <QString>
#include <QStringList>

/// A button of the front and the LED behind it.
struct FrontKey
{
    int panel = 0;  ///< 1 to 3.
    int button = 0; ///< 1 to 40.
};

/// Takes a key's name off the front of the words: "source N", "destination N", "take", "load", "save", "panel-lock",
/// "destination-lock", or PANEL.BUTTON as in "2.17".
/// @return empty on success, else what is wrong with the name; the words are then left alone.
QString takeKey(const PanelLayout &layout, QStringList *words, FrontKey *key);

/// The button's name as takeKey() reads it; PANEL.BUTTON where the layout has none for it.
QString keyName(const PanelLayout &layout, FrontKey key);
