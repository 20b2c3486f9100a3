#include "ui/screens/screensystemsettings.h"

#include "protocol/catalogue.h"
#include "ui/editors.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screenchoose.h"
#include "ui/screenenterstandby.h"
#include "ui/screenresettofactorydefaults.h"
#include "ui/screensetdatetime.h"
#include "ui/screensetip.h"
#include "ui/screenslider.h"
#include "ui/screenwheel.h"
#include "ui/styles.h"

// The pages are owned by the parent, the labels by the rows that they are given to.
// clang-format off

ScreenSystemSettings::ScreenSystemSettings(QWidget *parent, const Editors &editors) : ScreenData(parent)
{
    addLine(QStringLiteral("Network"), new ScreenNetwork(parent, editors));
    addLine(QStringLiteral("RS-232"), new ScreenRs232(parent, editors));
    addLine(QStringLiteral("Time and Date"), new ScreenTimeAndDate(parent, editors));
    DataLine *brightness = addPropertyLine(QStringLiteral("Display Brightness"), &propLcdBrightness, editors.slider);
    brightness->setOption(QStringLiteral("SmallIcon"), Glyph::sun);
    brightness->setOption(QStringLiteral("BigIcon"), Glyph::sun);
    brightness->setOption(QStringLiteral("MinValue"), QStringLiteral("0"));
    brightness->setOption(QStringLiteral("MaxValue"), QStringLiteral("10"));
    brightness->setOption(QStringLiteral("StepSize"), QStringLiteral("1"));
    addPropertyLine(QStringLiteral("Buzzer"), &propBuzzerEnabled, editors.choose);
    addLine(QStringLiteral("Enter Standby Mode"), editors.enterStandby);
    addLine(QStringLiteral("Restore Factory Defaults"), editors.resetToFactoryDefaults);
    showBackButton();
}

ScreenNetwork::ScreenNetwork(QWidget *parent, const Editors &editors) : ScreenData(parent)
{
    addPropertyLine(QStringLiteral("IP"), &propNetworkIpAddress);
    addPropertyLine(QStringLiteral("Subnet"), &propNetworkNetworkMask);
    addPropertyLine(QStringLiteral("Gateway"), &propNetworkGatewayAddress);
    addPropertyLine(QStringLiteral("DHCP"), &propNetworkDhcpEnabled, editors.choose);
    addPropertyLine(QStringLiteral("Security"), &propSecuritySecureMode, editors.choose);
    addPropertyLine(QStringLiteral("Static IP"), &propNetworkStaticIpAddress, editors.setIp);
    addPropertyLine(QStringLiteral("Static Subnet"), &propNetworkStaticNetworkMask, editors.setIp);
    addPropertyLine(QStringLiteral("Static Gateway"), &propNetworkStaticGatewayAddress, editors.setIp);
    addPropertyLine(QStringLiteral("Link Status"), &propNetworkLinkStatus);
    addPropertyLine(QStringLiteral("MAC"), &propNetworkMacAddress);
    showBackButton();
}

ScreenRs232::ScreenRs232(QWidget *parent, const Editors &editors) : ScreenData(parent)
{
    addPropertyLine(QStringLiteral("Control"), &propSerialEnabled, editors.choose);
    addPropertyLine(QStringLiteral("Baud Rate"), &propSerialBaudrate, editors.wheel);
    addPropertyLine(QStringLiteral("Protocol"), &propSerialProtocol, editors.choose);
    showBackButton();
}

ScreenTimeAndDate::ScreenTimeAndDate(QWidget *parent, const Editors &editors) : ScreenData(parent)
{
    addPropertyLine(QStringLiteral("Time"), &propDatetimeCurrentTime, editors.setTime,
        new PropertyDisplayLabelTimeAndDate(this, true));
    addPropertyLine(QStringLiteral("Date"), &propDatetimeCurrentTime, editors.setDate,
        new PropertyDisplayLabelTimeAndDate(this, false));
    showBackButton();
}
