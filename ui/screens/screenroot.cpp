#include "ui/screens/screenroot.h"

#include "ui/screens/screenedid.h"
#include "ui/screens/screenhealth.h"
#include "ui/screens/screeninoutports.h"
#include "ui/screens/screenpreset.h"
#include "ui/screens/screensystemsettings.h"

ScreenRoot::ScreenRoot(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    setRootScreen();
    addRows({
        // the pages are the parent's
        {"System Settings", new ScreenSystemSettings(parent, shared)},
        {"Input Ports", new ScreenInOutPorts(parent, true, shared)},
        {"Output Ports", new ScreenInOutPorts(parent, false, shared)},
        {"EDID", new ScreenEdid(parent, shared)},
        {"Health", new ScreenHealth(parent)},
        {"Presets", new ScreenPreset(parent, shared)},
    });
}
