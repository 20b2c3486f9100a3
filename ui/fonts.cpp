#include "ui/fonts.h"

#include <QFile>
#include <QFont>
#include <QFontDatabase>
#include <QStringList>

void loadFonts(const QString &folder)
{
    // Qt looks for the system's fonts at the first question. Asked later, a system font of the same family
    // would replace ours.
    QFontDatabase::families();
    for (const char *file : {"Roboto-Bold-Ostra.ttf", "Roboto-Medium-Ostra.ttf", "Roboto-Regular-Ostra.ttf",
             "Roboto-Light-Ostra.ttf", "fontawesome-webfont.ttf"}) {
        // Read once: by its name Qt would open the file again later, and say nothing where it cannot.
        QFile font(folder + '/' + QLatin1StringView(file));
        const QByteArray data = font.open(QIODevice::ReadOnly) ? font.readAll() : QByteArray();
        if (font.error() != QFile::NoError)
            qWarning("Cannot read the font %s: %s", qPrintable(font.fileName()), qPrintable(font.errorString()));
        else if (QFontDatabase::addApplicationFontFromData(data) < 0)
            qWarning("%s is no font", qPrintable(font.fileName()));
    }
    // The numbers beside an icon ask for its font, which has no digits.
    QFont::insertSubstitution(QStringLiteral("FontAwesome"), QStringLiteral("RobotoLight"));
}
