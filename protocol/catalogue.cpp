#include "protocol/catalogue.h"

#include <algorithm>
#include <iterator>

// clang-format off
Dt3Property propEmpty;
Dt3Property propNetworkDhcpEnabled, propNetworkStaticIpAddress, propNetworkStaticNetworkMask,
    propNetworkStaticGatewayAddress, propNetworkIpAddress, propNetworkNetworkMask, propNetworkGatewayAddress,
    propNetworkMacAddress, propNetworkLinkStatus;
Dt3Property propSecuritySecureMode;
Dt3Property propSerialEnabled, propSerialBaudrate, propSerialProtocol, propSerialNumber;
Dt3Property propDatetimeCurrentTime, propDatetimeUptime;
Dt3Property propLcdBrightness, propLcdMessage, propLcdControlLock, propLcdAutoTake;
Dt3Property propBuzzerEnabled;
Dt3Property propPartNumber;
Dt3Property propUidHwVersion, propUidAddonHwVersion0, propUidAddonHwVersion1, propUidAddonHwVersion2,
    propUidAddonHwVersion3, propUidAddonHwVersion6, propUidAddonHwVersion7, propUidAddonHwVersion10,
    propUidAddonHwVersion11, propUidAddonHwVersion4, propUidAddonHwVersion5, propUidAddonHwVersion8,
    propUidAddonHwVersion9, propUidAddonHwVersion12, propUidAddonHwVersion13, propUidFirmwareVersion;
Dt3Property propUidAdditionalFirmwareVersion1, propUidAdditionalFirmwareVersion2, propUidAdditionalFirmwareVersion3,
    propUidAdditionalFirmwareVersion4, propUidAdditionalFirmwareVersion5, propUidAdditionalFirmwareVersion6,
    propUidAdditionalFirmwareVersion7, propUidAdditionalFirmwareVersion8, propUidAdditionalFirmwareVersion9,
    propUidAdditionalFirmwareVersion10;
Dt3Property propPowerPsu1, propPowerPsu2, propPowerOperation;
Dt3Property propPortAll, propPortStatusAll, propPortEmbeddedAudioAll;
Dt3Property propPortStatusSignalType, propPortStatusColorSpace, propPortStatusColorDepth,
    propPortStatusActiveHdcpVersion, propPortStatusEmbeddedAudioPresent, propPortStatusActiveResolution,
    propPortStatusPixelClock, propPortStatusScrambling, propPortStatusTmdsClockRate;
Dt3Property propPortEmbeddedAudioSignalPresent, propPortEmbeddedAudioAudioType, propPortEmbeddedAudioAudioModeA,
    propPortEmbeddedAudioAudioModeB, propPortEmbeddedAudioAudioModeC;
Dt3Property propPortSettingsConversionA, propPortSettingsConversionB, propPortSettingsForcedSignalType,
    propPortSettingsHdcpVersionA, propPortSettingsHdcpVersionB, propPortSettingsEnableHpdA,
    propPortSettingsEnableHpdB, propPortSettingsEnableHpdC, propPortSettingsDpMaxLaneCount,
    propPortSettingsDpMaxLinkRate, propPortSettingsEnablePower, propPortSettingsTpgMode, propPortSettingsConversionC,
    propPortSettingsForcedScrambling, propPortSettingsForcedHdmi2TmdsClockRate, propPortSettingsHdcpMode;
Dt3Property propPortAnalogAudioAudioMode, propPortAnalogAudioGain, propPortAnalogAudioMute,
    propPortAnalogAudioVolumePercent, propPortAnalogAudioVolumedB, propPortAnalogAudioBalance;
Dt3Property propEdid, propEdidManufacturer, propEdidPreferredResolution, propEdidMonitorName, propEdidAudioInfo;
Dt3Property propBoardTemperature0, propBoardVoltage0_5V0, propBoardVoltage1_5V0, propBoardVoltage2_3V3,
    propBoardVoltage3_1V3, propBoardVoltage4_1V0, propBoardVoltage5_3V3, propBoardVoltage6_1V2, propBoardVoltage7_1V1,
    propBoardVoltage8_1V5, propBoardVoltage9_2V5, propBoardVoltage10_3V3, propBoardVoltage11_3V3;
Dt3Property propCecuVoltage0_5V0, propCecuVoltage2_1V8, propCecuVoltage2_1V2, propCecuTemperature0;
Dt3Property propHsmbVoltage0_3V3, propHsmbVoltage1_2V5, propHsmbVoltage1_12V0, propHsmbTemperature0,
    propHsmbTemperature1, propHsmbTemperature2;
Dt3Property propXpSourcePortStatus, propXpDestinationPortStatus, propXpDestinationConnectionStatus;
Dt3Property propBootloaderStatus, propBootloaderProgress;
std::array<Dt3Property, 8> propButtonAssignedPreset;
// clang-format on

namespace {

/// "/I" and 24 make "/I1" to "/I24".
template <size_t count> std::array<QString, count> numberedNames(const char *stem)
{
    std::array<QString, count> names;
    std::generate(names.begin(), names.end(),
        [&, number = 0]() mutable { return QLatin1StringView(stem) + QString::number(++number); });
    return names;
}

/// One part, or two with the port of the moment between them; none where the prefix is null.
struct Path
{
    const char *prefix = nullptr;
    const char *suffix = nullptr;
};

/// A raw value and what the LCD shows for it; without a caption the value shows as itself.
struct Value
{
    const char *raw = nullptr;
    const char *caption = nullptr;
};

struct Entry
{
    Dt3Property &property;
    Path path;
    Value values[5] = {};
    Path method = {}; ///< Called to write the property, where it is not simply SET.
};

// Descriptors that share a path: the last row of it is the one that captions of a bare path go by.
// clang-format off
const Entry entries[] = {
    {propEmpty, {"/empty.empty"}},
    {propNetworkDhcpEnabled, {"/MANAGEMENT/NETWORK.DhcpEnabled"}, {{"true", "Enabled"}, {"false", "Disabled"}}},
    {propNetworkStaticIpAddress, {"/MANAGEMENT/NETWORK.StaticIpAddress"}},
    {propNetworkStaticNetworkMask, {"/MANAGEMENT/NETWORK.StaticNetworkMask"}},
    {propNetworkStaticGatewayAddress, {"/MANAGEMENT/NETWORK.StaticGatewayAddress"}},
    {propNetworkIpAddress, {"/MANAGEMENT/NETWORK.IpAddress"}},
    {propNetworkNetworkMask, {"/MANAGEMENT/NETWORK.NetworkMask"}},
    {propNetworkGatewayAddress, {"/MANAGEMENT/NETWORK.GatewayAddress"}},
    {propNetworkMacAddress, {"/MANAGEMENT/NETWORK.MacAddress"}},
    {propNetworkLinkStatus, {"/MANAGEMENT/NETWORK.LinkStatus"}},
    {propSecuritySecureMode, {"/MANAGEMENT/NETWORK/SECURITY.SecureMode"}, {{"true", "Enabled"}, {"false", "Disabled"}}},
    {propSerialEnabled, {"/MANAGEMENT/SERIAL.Enabled"}, {{"true", "Enabled"}, {"false", "Disabled"}}},
    {propSerialBaudrate, {"/MANAGEMENT/SERIAL.Baudrate"}, {{"9600"}, {"19200"}, {"38400"}, {"57600"}, {"115200"}}},
    {propSerialProtocol, {"/MANAGEMENT/SERIAL.Protocol"}, {{"DT2"}, {"P#2"}, {"DT3"}}},
    {propDatetimeCurrentTime, {"/MANAGEMENT/DATETIME.CurrentTime"}, {}, {"/MANAGEMENT/DATETIME:setTime"}},
    {propLcdBrightness, {"/SYS/CECU/LCD.Brightness"}, {}, {"/SYS/CECU/LCD:changeBrightness"}},
    {propLcdMessage, {"/SYS/CECU/LCD.Message"}},
    {propBuzzerEnabled, {"/SYS/CECU/BUZZER.Enabled"}, {{"true", "On"}, {"false", "Off"}}},
    {propSerialNumber, {"/.SerialNumber"}},
    {propPartNumber, {"/.PartNumber"}},
    {propUidHwVersion, {"/MANAGEMENT/UID.HwVersion"}},
    {propUidAddonHwVersion0, {"/MANAGEMENT/UID.AddonHwVersion0"}},
    {propUidAddonHwVersion1, {"/MANAGEMENT/UID.AddonHwVersion1"}},
    {propUidAddonHwVersion2, {"/MANAGEMENT/UID.AddonHwVersion2"}},
    {propUidAddonHwVersion3, {"/MANAGEMENT/UID.AddonHwVersion3"}},
    {propUidAddonHwVersion6, {"/MANAGEMENT/UID.AddonHwVersion6"}},
    {propUidAddonHwVersion7, {"/MANAGEMENT/UID.AddonHwVersion7"}},
    {propUidAddonHwVersion10, {"/MANAGEMENT/UID.AddonHwVersion10"}},
    {propUidAddonHwVersion11, {"/MANAGEMENT/UID.AddonHwVersion11"}},
    {propUidAddonHwVersion4, {"/MANAGEMENT/UID.AddonHwVersion4"}},
    {propUidAddonHwVersion5, {"/MANAGEMENT/UID.AddonHwVersion5"}},
    {propUidAddonHwVersion8, {"/MANAGEMENT/UID.AddonHwVersion8"}},
    {propUidAddonHwVersion9, {"/MANAGEMENT/UID.AddonHwVersion9"}},
    {propUidAddonHwVersion12, {"/MANAGEMENT/UID.AddonHwVersion12"}},
    {propUidAddonHwVersion13, {"/MANAGEMENT/UID.AddonHwVersion13"}},
    {propUidFirmwareVersion, {"/MANAGEMENT/UID.FirmwareVersion"}},
    {propUidAdditionalFirmwareVersion1, {"/MANAGEMENT/UID.AdditionalFirmwareVersion1"}},
    {propUidAdditionalFirmwareVersion2, {"/MANAGEMENT/UID.AdditionalFirmwareVersion2"}},
    {propUidAdditionalFirmwareVersion3, {"/MANAGEMENT/UID.AdditionalFirmwareVersion3"}},
    {propUidAdditionalFirmwareVersion4, {"/MANAGEMENT/UID.AdditionalFirmwareVersion4"}},
    {propUidAdditionalFirmwareVersion5, {"/MANAGEMENT/UID.AdditionalFirmwareVersion5"}},
    {propUidAdditionalFirmwareVersion6, {"/MANAGEMENT/UID.AdditionalFirmwareVersion6"}},
    {propUidAdditionalFirmwareVersion7, {"/MANAGEMENT/UID.AdditionalFirmwareVersion7"}},
    {propUidAdditionalFirmwareVersion8, {"/MANAGEMENT/UID.AdditionalFirmwareVersion8"}},
    {propUidAdditionalFirmwareVersion9, {"/MANAGEMENT/UID.AdditionalFirmwareVersion9"}},
    {propUidAdditionalFirmwareVersion10, {"/MANAGEMENT/UID.AdditionalFirmwareVersion10"}},
    {propPowerPsu1, {"/MANAGEMENT/POWER.Psu1"}},
    {propPowerPsu2, {"/MANAGEMENT/POWER.Psu2"}},
    {propPortAll, {"/MEDIA/PORTS/VIDEO", ".*"}},
    {propPortStatusAll, {"/MEDIA/PORTS/VIDEO", "/STATUS.*"}},
    {propPortEmbeddedAudioAll, {"/MEDIA/PORTS/VIDEO", "/EMBEDDEDAUDIO.*"}},
    {propPortStatusSignalType, {"/MEDIA/PORTS/VIDEO", "/STATUS.SignalType"}},
    {propPortStatusColorSpace, {"/MEDIA/PORTS/VIDEO", "/STATUS.ColorSpace"}},
    {propPortStatusColorDepth, {"/MEDIA/PORTS/VIDEO", "/STATUS.ColorDepth"}},
    {propPortStatusActiveHdcpVersion, {"/MEDIA/PORTS/VIDEO", "/STATUS.ActiveHdcpVersion"}, {{"0", "Off"}, {"1", "HDCP 1.4"}, {"2", "HDCP 2.3"}}},
    {propPortStatusEmbeddedAudioPresent, {"/MEDIA/PORTS/VIDEO", "/STATUS.EmbeddedAudioPresent"}},
    {propPortStatusActiveResolution, {"/MEDIA/PORTS/VIDEO", "/STATUS.ActiveResolution"}},
    {propPortStatusPixelClock, {"/MEDIA/PORTS/VIDEO", "/STATUS.PixelClock"}},
    {propPortStatusScrambling, {"/MEDIA/PORTS/VIDEO", "/STATUS.Scrambling"}},
    {propPortStatusTmdsClockRate, {"/MEDIA/PORTS/VIDEO", "/STATUS.TmdsClockRate"}, {{"false", "1/10"}, {"true", "1/40"}}},
    {propPortEmbeddedAudioSignalPresent, {"/MEDIA/PORTS/VIDEO", "/EMBEDDEDAUDIO.SignalPresent"}},
    {propPortEmbeddedAudioAudioType, {"/MEDIA/PORTS/VIDEO", "/EMBEDDEDAUDIO.AudioType"}},
    {propPortSettingsConversionA, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.Conversion"}, {{"OFF", "Passthrough"}, {"420", "4:4:4 to 4:2:0"}, {"LEFT", "Left part"}, {"RIGHT", "Right part"}}},
    {propPortSettingsConversionB, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.Conversion"}, {{"OFF", "Passthrough"}, {"422", "4:4:4 to 4:2:2"}}},
    {propPortSettingsForcedSignalType, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.ForcedSignalType"}, {{"AUTO", "Auto"}, {"HDMI"}, {"DVI"}}},
    {propPortSettingsHdcpVersionA, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.HdcpVersion"}, {{"0", "Disable"}, {"1", "HDCP 1.4 only"}, {"2", "HDCP 2.3 or HDCP 1.4"}, {"3", "High Value mode"}}},
    {propPortSettingsHdcpVersionB, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.HdcpVersion"}, {{"0", "Disable"}, {"2", "HDCP 2.3 or HDCP 1.4"}, {"3", "High Value mode"}}},
    {propPortSettingsEnableHpdA, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.EnableHPD"}, {{"AUTO", "Auto"}, {"ON", "Forced On"}, {"OFF", "Forced Off"}}},
    {propPortSettingsEnableHpdB, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.EnableHPD"}, {{"AUTO", "Auto"}, {"OFF", "Forced Off"}}},
    {propPortSettingsEnableHpdC, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.EnableHPD"}, {{"ON", "Forced On"}, {"OFF", "Forced Off"}}},
    {propPortSettingsDpMaxLaneCount, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.DpMaxLaneCount"}, {{"1"}, {"2"}, {"4"}}},
    {propPortSettingsDpMaxLinkRate, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.DpMaxLinkRate"}, {{"RBR"}, {"HBR"}, {"HBR2"}}},
    {propPortSettingsEnablePower, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.EnablePower"}, {{"true", "Enable"}, {"false", "Disable"}}},
    {propPortSettingsTpgMode, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.TpgMode"}, {{"0", "Off"}, {"1", "On"}}},
    {propPortSettingsConversionC, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.Conversion"}, {{"OFF", "Off"}, {"422", "RGB to YUV422"}, {"420", "RGB to YUV420"}}},
    {propPortAnalogAudioAudioMode, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO.AudioMode"}, {{"OFF", "Disable"}, {"HDMI", "Video"}, {"ANALOG", "Analog input"}}},
    {propPortEmbeddedAudioAudioModeA, {"/MEDIA/PORTS/VIDEO", "/EMBEDDEDAUDIO.AudioMode"}, {{"OFF", "Disable"}, {"HDMI", "Video"}}},
    {propPortAnalogAudioGain, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO.Gain"}},
    {propPortSettingsForcedScrambling, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.ForcedScrambling"}, {{"AUTO", "Auto"}, {"ON", "Forced On"}, {"OFF", "Forced Off"}}},
    {propPortSettingsForcedHdmi2TmdsClockRate, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.ForcedHdmi2TmdsClockRate"}, {{"AUTO", "Auto"}, {"OFF", "Forced 1/10"}, {"ON", "Forced 1/40"}}},
    {propPortSettingsHdcpMode, {"/MEDIA/PORTS/VIDEO", "/SETTINGS.HdcpMode"}, {{"AUTO", "Depends on input"}, {"ALWAYS", "Max. possible"}}},
    {propPortEmbeddedAudioAudioModeB, {"/MEDIA/PORTS/VIDEO", "/EMBEDDEDAUDIO.AudioMode"}, {{"OFF", "Off"}, {"HDMI", "HDMI Only"}, {"ANALOG", "Analog Only"}, {"HDMI+ANALOG", "HDMI and Analog"}}},
    {propPortEmbeddedAudioAudioModeC, {"/MEDIA/PORTS/VIDEO", "/EMBEDDEDAUDIO.AudioMode"}, {{"OFF", "Off"}, {"HDMI", "DP Only"}, {"ANALOG", "Analog Only"}, {"HDMI+ANALOG", "DP and Analog"}}},
    {propPortAnalogAudioMute, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO.Mute"}, {{"false", "Unmuted"}, {"true", "Muted"}}},
    {propPortAnalogAudioVolumePercent, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO.VolumePercent"}, {}, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO:stepVolumePercent"}},
    {propPortAnalogAudioVolumedB, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO.VolumedB"}, {}, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO:stepVolumedB"}},
    {propPortAnalogAudioBalance, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO.Balance"}, {}, {"/MEDIA/PORTS/VIDEO", "/ANALOGAUDIO:stepBalance"}},
    {propDatetimeUptime, {"/MANAGEMENT/DATETIME.Uptime"}},
    {propEdid, {"/EDID", ""}},
    {propEdidManufacturer, {"", ".Manufacturer"}},
    {propEdidPreferredResolution, {"", ".PreferredResolution"}},
    {propEdidMonitorName, {"", ".MonitorName"}},
    {propEdidAudioInfo, {"", ".AudioInfo"}},
    {propBoardTemperature0, {"/SYS", "/HEALTH.Temperature0"}},
    {propBoardVoltage0_5V0, {"/SYS", "/HEALTH.Voltage0_5V0"}},
    {propBoardVoltage1_5V0, {"/SYS", "/HEALTH.Voltage1_5V0"}},
    {propBoardVoltage2_3V3, {"/SYS", "/HEALTH.Voltage2_3V3"}},
    {propBoardVoltage3_1V3, {"/SYS", "/HEALTH.Voltage3_1V3"}},
    {propBoardVoltage4_1V0, {"/SYS", "/HEALTH.Voltage4_1V0"}},
    {propBoardVoltage5_3V3, {"/SYS", "/HEALTH.Voltage5_3V3"}},
    {propBoardVoltage6_1V2, {"/SYS", "/HEALTH.Voltage6_1V2"}},
    {propBoardVoltage7_1V1, {"/SYS", "/HEALTH.Voltage7_1V1"}},
    {propBoardVoltage8_1V5, {"/SYS", "/HEALTH.Voltage8_1V5"}},
    {propBoardVoltage9_2V5, {"/SYS", "/HEALTH.Voltage9_2V5"}},
    {propBoardVoltage10_3V3, {"/SYS", "/HEALTH.Voltage10_3V3"}},
    {propBoardVoltage11_3V3, {"/SYS", "/HEALTH.Voltage11_3V3"}},
    {propCecuVoltage0_5V0, {"/SYS/CECU/HEALTH.Voltage0_5V0"}},
    {propCecuVoltage2_1V8, {"/SYS/CECU/HEALTH.Voltage2_1V8"}},
    {propCecuVoltage2_1V2, {"/SYS/CECU/HEALTH.Voltage2_1V2"}},
    {propCecuTemperature0, {"/SYS/CECU/HEALTH.Temperature0"}},
    {propHsmbVoltage0_3V3, {"/SYS/HSMB/HEALTH.Voltage0_3V3"}},
    {propHsmbVoltage1_2V5, {"/SYS/HSMB/HEALTH.Voltage1_2V5"}},
    {propHsmbVoltage1_12V0, {"/SYS/HSMB/HEALTH.Voltage1_12V0"}},
    {propHsmbTemperature0, {"/SYS/HSMB/HEALTH.Temperature0"}},
    {propHsmbTemperature1, {"/SYS/HSMB/HEALTH.Temperature1"}},
    {propHsmbTemperature2, {"/SYS/HSMB/HEALTH.Temperature2"}},
    {propXpSourcePortStatus, {"/MEDIA/XP/VIDEO.SourcePortStatus"}},
    {propXpDestinationPortStatus, {"/MEDIA/XP/VIDEO.DestinationPortStatus"}},
    {propXpDestinationConnectionStatus, {"/MEDIA/XP/VIDEO.DestinationConnectionStatus"}},
    {propLcdControlLock, {"/SYS/CECU/LCD.ControlLock"}},
    {propLcdAutoTake, {"/SYS/CECU/LCD.AutoTake"}},
    {propPowerOperation, {"/MANAGEMENT/POWER.Operation"}},
    {propBootloaderStatus, {"/MANAGEMENT/BOOTLOADER.Status"}},
    {propBootloaderProgress, {"/MANAGEMENT/BOOTLOADER.Progress"}},};
// clang-format on
static_assert(std::size(entries) + propButtonAssignedPreset.size() == 132);

} // namespace

const std::array<QString, 24> outputPortNames = numberedNames<24>("/O");
const std::array<QString, 24> inputPortNames = numberedNames<24>("/I");
const std::array<QString, 4> portNames = numberedNames<4>("/PORT");
const std::array<QString, 6> inputBoardNames = numberedNames<6>("/IB");
const std::array<QString, 6> outputBoardNames = numberedNames<6>("/OB");
const std::array<QString, 4> edidGroupNames
    = {QStringLiteral("/F"), QStringLiteral("/D"), QStringLiteral("/U"), QStringLiteral("/E")};

void fillCatalogue()
{
    for (const Entry &entry : entries) {
        const auto text = [](const char *latin1) { return QString::fromLatin1(latin1); };
        if (entry.path.suffix)
            entry.property.setPath(text(entry.path.prefix), text(entry.path.suffix));
        else
            entry.property.setPath(text(entry.path.prefix));
        if (entry.method.suffix)
            entry.property.setMethodPath(text(entry.method.prefix), text(entry.method.suffix));
        else if (entry.method.prefix)
            entry.property.setMethodPath(text(entry.method.prefix));
        for (const Value &value : entry.values) {
            if (value.raw)
                entry.property.addMapping(text(value.raw), text(value.caption ? value.caption : value.raw));
        }
    }
    int button = 0;
    for (Dt3Property &property : propButtonAssignedPreset)
        property.setPath(QStringLiteral("/MEDIA/PRESET.Button%1AssignedPreset").arg(++button));
}
