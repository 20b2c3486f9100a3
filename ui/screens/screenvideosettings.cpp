#include "ui/screens/screenvideosettings.h"

#include "protocol/catalogue.h"
#include "ui/screens/sharedscreens.h"

ScreenInVideoSettings::ScreenInVideoSettings(QWidget *parent, const SharedScreens &shared)
    : PortInfoScreen(parent, QStringLiteral("Settings"))
{
    // Where a caption stands twice, the choices differ.
    addPortRows({
        {{"HDCP", &propPortSettingsHdcpVersionA, shared.choose}, HdmiV1 | DisplayPort},
        {{"HDCP", &propPortSettingsHdcpVersionB, shared.choose}, HdmiV2},
        {{"Hotplug", &propPortSettingsEnableHpdB, shared.choose}, HdmiV2},
        {{"Hotplug", &propPortSettingsEnableHpdA, shared.choose}, HdmiV1},
        {{"Hotplug", &propPortSettingsEnableHpdC, shared.choose}, Never},
        {{"Max lane count", &propPortSettingsDpMaxLaneCount, shared.choose}, DisplayPort},
        {{"Max bandwidth", &propPortSettingsDpMaxLinkRate, shared.choose}, DisplayPort},
        {{"Power enable", &propPortSettingsEnablePower, shared.choose}, DisplayPort},
        {{"Test pattern", &propPortSettingsTpgMode, shared.choose}, DisplayPort},
        {{"Conversion", &propPortSettingsConversionC, shared.choose}, DisplayPort},
        {{"Audio source", &propPortAnalogAudioAudioMode, shared.choose}, AnalogAudio},
        {{"Audio source", &propPortEmbeddedAudioAudioModeA, shared.choose}, NoAnalogAudio},
    });
    showBackButton();
}

ScreenOutVideoSettings::ScreenOutVideoSettings(QWidget *parent, const SharedScreens &shared)
    : PortInfoScreen(parent, QStringLiteral("Settings"))
{
    addPortRows({
        {{"Conversion", &propPortSettingsConversionB, shared.choose}, HdmiV2},
        {{"Conversion", &propPortSettingsConversionA, shared.choose}, HdmiV1},
        {{"Signal Type", &propPortSettingsForcedSignalType, shared.choose}, HdmiV1 | HdmiV2},
        {{"HDCP", &propPortSettingsHdcpMode, shared.choose}, HdmiV1 | HdmiV2},
        {{"Scrambling", &propPortSettingsForcedScrambling, shared.choose}, HdmiV1 | HdmiV2},
        {{"TMDS Clock Rate", &propPortSettingsForcedHdmi2TmdsClockRate, shared.choose}, HdmiV1 | HdmiV2},
        {{"Power enable", &propPortSettingsEnablePower, shared.choose}, DisplayPort},
    });
    showBackButton();
}
