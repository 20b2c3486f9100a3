#include "ui/fonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QStringList>

void loadFonts(const QString &folder)
{
    // Qt looks for the system's fonts at the first question. Asked later, a system font of the same family
    // would replace ours.
    QFontDatabase::families();
    for (const char *file : {"Roboto-Bold-Ostra.ttf", "Roboto-Medium-Ostra.ttf", "Roboto-Regular-Ostra.ttf",
             "Roboto-Light-Ostra.ttf", "fontawesome-webfont.ttf"})
        QFontDatabase::addApplicationFont(folder + '/' + QLatin1StringView(file));
    // The numbers beside an icon ask for its font, which has no digits.
    QFont::insertSubstitution(QStringLiteral("FontAwesome"), QStringLiteral("RobotoLight"));
}
