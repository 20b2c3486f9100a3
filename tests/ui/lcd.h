#pragma once

#include "ui/mywidget.h"

/// Fonts and looks of the program, for this process.
void prepareLcdLooks();

/// The LCD of one test, in the fonts of the program, and the keys of its knob.
class Lcd : public MyWidget
{
    Q_OBJECT
public:
    Lcd();

    /// To whoever has the keyboard: D, E, A and Q as the encoder posts them, "\r" its push, "\x1b" Escape.
    static void keys(const char *keys);

    // Of the screen that has the keyboard.
    static QString title();
    /// All that shows but glyphs: "WARNING|Yes|No|Really?".
    static QString texts();
    /// From top to bottom, each with the values that show: "Network", "Buzzer: TBD".
    static QStringList rows();
};
