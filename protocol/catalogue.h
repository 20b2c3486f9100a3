#pragma once

#include "protocol/dt3property.h"

#include <array>

// Everything the front panel reads or writes, by name.

/// Gives every descriptor below its path, method and captions. Called once, before any is used or copied.
void fillCatalogue();

// clang-format off
extern Dt3Property propEmpty;
extern Dt3Property propNetworkDhcpEnabled, propNetworkStaticIpAddress, propNetworkStaticNetworkMask,
    propNetworkStaticGatewayAddress, propNetworkIpAddress, propNetworkNetworkMask, propNetworkGatewayAddress,
    propNetworkMacAddress, propNetworkLinkStatus;
extern Dt3Property propSecuritySecureMode;
extern Dt3Property propSerialEnabled, propSerialBaudrate, propSerialProtocol, propSerialNumber;
extern Dt3Property propDatetimeCurrentTime, propDatetimeUptime;
extern Dt3Property propLcdBrightness, propLcdMessage, propLcdControlLock, propLcdAutoTake;
extern Dt3Property propBuzzerEnabled;
extern Dt3Property propPartNumber;
extern Dt3Property propUidHwVersion, propUidAddonHwVersion0, propUidAddonHwVersion1, propUidAddonHwVersion2,
    propUidAddonHwVersion3, propUidAddonHwVersion6, propUidAddonHwVersion7, propUidAddonHwVersion10,
    propUidAddonHwVersion11, propUidAddonHwVersion4, propUidAddonHwVersion5, propUidAddonHwVersion8,
    propUidAddonHwVersion9, propUidAddonHwVersion12, propUidAddonHwVersion13, propUidFirmwareVersion;
extern Dt3Property propUidAdditionalFirmwareVersion1, propUidAdditionalFirmwareVersion2,
    propUidAdditionalFirmwareVersion3, propUidAdditionalFirmwareVersion4, propUidAdditionalFirmwareVersion5,
    propUidAdditionalFirmwareVersion6, propUidAdditionalFirmwareVersion7, propUidAdditionalFirmwareVersion8,
    propUidAdditionalFirmwareVersion9, propUidAdditionalFirmwareVersion10;
extern Dt3Property propPowerPsu1, propPowerPsu2, propPowerOperation;
extern Dt3Property propPortAll, propPortStatusAll, propPortEmbeddedAudioAll;
extern Dt3Property propPortStatusSignalType, propPortStatusColorSpace, propPortStatusColorDepth,
    propPortStatusActiveHdcpVersion, propPortStatusEmbeddedAudioPresent, propPortStatusActiveResolution,
    propPortStatusPixelClock, propPortStatusScrambling, propPortStatusTmdsClockRate;
extern Dt3Property propPortEmbeddedAudioSignalPresent, propPortEmbeddedAudioAudioType,
    propPortEmbeddedAudioAudioModeA, propPortEmbeddedAudioAudioModeB, propPortEmbeddedAudioAudioModeC;
extern Dt3Property propPortSettingsConversionA, propPortSettingsConversionB, propPortSettingsForcedSignalType,
    propPortSettingsHdcpVersionA, propPortSettingsHdcpVersionB, propPortSettingsEnableHpdA,
    propPortSettingsEnableHpdB, propPortSettingsEnableHpdC, propPortSettingsDpMaxLaneCount,
    propPortSettingsDpMaxLinkRate, propPortSettingsEnablePower, propPortSettingsTpgMode, propPortSettingsConversionC,
    propPortSettingsForcedScrambling, propPortSettingsForcedHdmi2TmdsClockRate, propPortSettingsHdcpMode;
extern Dt3Property propPortAnalogAudioAudioMode, propPortAnalogAudioGain, propPortAnalogAudioMute,
    propPortAnalogAudioVolumePercent, propPortAnalogAudioVolumedB, propPortAnalogAudioBalance;
extern Dt3Property propEdid, propEdidManufacturer, propEdidPreferredResolution, propEdidMonitorName,
    propEdidAudioInfo;
extern Dt3Property propBoardTemperature0, propBoardVoltage0_5V0, propBoardVoltage1_5V0, propBoardVoltage2_3V3,
    propBoardVoltage3_1V3, propBoardVoltage4_1V0, propBoardVoltage5_3V3, propBoardVoltage6_1V2, propBoardVoltage7_1V1,
    propBoardVoltage8_1V5, propBoardVoltage9_2V5, propBoardVoltage10_3V3, propBoardVoltage11_3V3;
extern Dt3Property propCecuVoltage0_5V0, propCecuVoltage2_1V8, propCecuVoltage2_1V2, propCecuTemperature0;
extern Dt3Property propHsmbVoltage0_3V3, propHsmbVoltage1_2V5, propHsmbVoltage1_12V0, propHsmbTemperature0,
    propHsmbTemperature1, propHsmbTemperature2;
extern Dt3Property propXpSourcePortStatus, propXpDestinationPortStatus, propXpDestinationConnectionStatus;
extern Dt3Property propBootloaderStatus, propBootloaderProgress;
/// The preset assigned to source button 1 to 8, at index button - 1.
extern std::array<Dt3Property, 8> propButtonAssignedPreset;

// Methods, for CALL. %1 stands for a preset's node name.
inline const QString methodNetworkApplySettings = QStringLiteral("/MANAGEMENT/NETWORK:applySettings");
inline const QString methodFactoryDefaults = QStringLiteral("/SYS:factoryDefaults");
inline const QString methodStandby = QStringLiteral("/MANAGEMENT/POWER:standby");
inline const QString methodEdidSwitch = QStringLiteral("/EDID:switch");
inline const QString methodEdidSwitchAll = QStringLiteral("/EDID:switchAll");
inline const QString methodEdidCopy = QStringLiteral("/EDID:copy");
inline const QString methodXpConnect = QStringLiteral("/MEDIA/XP/VIDEO:connect");
inline const QString methodXpLockDestination = QStringLiteral("/MEDIA/XP/VIDEO:lockDestination");
inline const QString methodXpUnlockDestination = QStringLiteral("/MEDIA/XP/VIDEO:unlockDestination");
inline const QString methodWakeUp = QStringLiteral("/MANAGEMENT/POWER:wakeUp");
inline const QString methodPresetCreateButtonAssigned = QStringLiteral("/MEDIA/PRESET:createButtonAssignedPreset");
inline const QString methodPresetCreate = QStringLiteral("/MEDIA/PRESET:create");
inline const QString methodPresetLoad = QStringLiteral("/MEDIA/PRESET/%1:load");
inline const QString methodPresetSave = QStringLiteral("/MEDIA/PRESET/%1:save");
inline const QString methodSecurityApplySettings = QStringLiteral("/MANAGEMENT/NETWORK/SECURITY:applySettings");
inline const QString presetNodePath = QStringLiteral("/MEDIA/PRESET");

// Names of ports and boards, the middle of a two-part path.
extern const std::array<QString, 24> outputPortNames; ///< "/O1" to "/O24".
extern const std::array<QString, 24> inputPortNames;  ///< "/I1" to "/I24".
extern const std::array<QString, 4> portNames;        ///< "/PORT1" to "/PORT4".
extern const std::array<QString, 6> inputBoardNames;  ///< "/IB1" to "/IB6".
extern const std::array<QString, 6> outputBoardNames; ///< "/OB1" to "/OB6".
extern const std::array<QString, 4> edidGroupNames;   ///< "/F", "/D", "/U", "/E": factory, dynamic, user, emulated.
inline const QString cecuNodeName = QStringLiteral("/CECU");
inline const QString hsmbNodeName = QStringLiteral("/HSMB");
// clang-format on
