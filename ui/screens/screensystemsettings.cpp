#include "ui/screens/screensystemsettings.h"

#include "hardware/framedescriptor.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screens/screendeviceinfo.h"
#include "ui/screens/screennetwork.h"
#include "ui/screens/sharedscreens.h"
#include "ui/styles.h"

// The pages are owned by the parent, the labels by the rows that they are given to.

namespace {

constexpr int powerRedundancyRow = 5;

QMap<QString, QString> brightnessOptions()
{
    return {
        {"SmallIcon", Glyph::sun},
        {"BigIcon", Glyph::sun},
        {"MinValue", "0"},
        {"MaxValue", "10"},
        {"StepSize", "1"},
    };
}

} // namespace

ScreenSystemSettings::ScreenSystemSettings(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"Network", new ScreenNetwork(parent, shared)},
        {"RS-232", new ScreenRs232(parent, shared)},
        {"Time and Date", new ScreenTimeAndDate(parent, shared)},
        {"Display Brightness", &propLcdBrightness, shared.slider, brightnessOptions()},
        {"Buzzer", &propBuzzerEnabled, shared.choose},
        {"Power redundancy", new ScreenPowerSupplyState(parent)},
        {"Device Info", new ScreenDeviceInfo(parent, shared)},
        {"Enter Standby Mode", shared.enterStandby},
        {"Restore Factory Defaults", shared.resetToFactoryDefaults},
    });
    showBackButton();
    connect(
        VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenSystemSettings::variantIdentified);
}

void ScreenSystemSettings::variantIdentified()
{
    if (!VariantManager::instance()->frameDescriptor()->flag)
        hideLine(lines()[powerRedundancyRow]);
}

ScreenRs232::ScreenRs232(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"Control", &propSerialEnabled, shared.choose},
        {"Baud Rate", &propSerialBaudrate, shared.choose},
        {"Protocol", &propSerialProtocol, shared.choose},
    });
    showBackButton();
}

ScreenTimeAndDate::ScreenTimeAndDate(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"Time", &propDatetimeCurrentTime, shared.setTime, new PropertyDisplayLabelTimeAndDate(this, true)},
        {"Date", &propDatetimeCurrentTime, shared.setDate, new PropertyDisplayLabelTimeAndDate(this, false)},
    });
    showBackButton();
}

ScreenPowerSupplyState::ScreenPowerSupplyState(QWidget *parent)
    : ScreenData(parent)
{
    addRows({
        {"PSU1", &propPowerPsu1, nullptr, new PropertyDisplayLabelPowerSupplyState(this)},
        {"PSU2", &propPowerPsu2, nullptr, new PropertyDisplayLabelPowerSupplyState(this)},
    });
    for (DataLine *line : lines()) {
        line->values().first()->setAlignment(Qt::AlignCenter);
        showDisplayOnly(line);
    }
    showBackButton();
}
