#include "ui/screens/screenroot.h"

#include "ui/screens/screensystemsettings.h"

ScreenRoot::ScreenRoot(QWidget *parent, const Editors &editors)
    : ScreenData(parent)
{
    setRootScreen();
    addLine(QStringLiteral("System Settings"), new ScreenSystemSettings(parent, editors)); // owned by the parent
}
