#include "ui/screenresettofactorydefaults.h"

#include "protocol/catalogue.h"

ScreenResetToFactoryDefaults::ScreenResetToFactoryDefaults(QWidget *parent)
    : ScreenWarning(parent, true, true)
{
    setTitle(QStringLiteral("Warning"));
    setMessage(QStringLiteral("Reset to Factory Deafults?"));
    setButtonTexts(QStringLiteral("Yes"), QStringLiteral("No"));
}

void ScreenResetToFactoryDefaults::savePressed()
{
    call(methodFactoryDefaults, {});
    hideMe();
}
