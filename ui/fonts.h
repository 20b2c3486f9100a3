#pragma once

#include <QString>

/// Makes the fonts of the LCD known to Qt, and with them the families that the style sheets name. Called once, after
/// the application object is made. @param folder where the font files are.
void loadFonts(const QString &folder);
