#include "simulator/coreservice/systemproperties.h"

#include "simulator/coreservice/valuerule.h"

#include <algorithm>

namespace {

constexpr const char *network = "/MANAGEMENT/NETWORK";
constexpr const char *security = "/MANAGEMENT/NETWORK/SECURITY";
constexpr const char *power = "/MANAGEMENT/POWER";
constexpr const char *lcd = "/SYS/CECU/LCD";
constexpr const char *uid = "/MANAGEMENT/UID";

using namespace ValueRule;

// clang-format off
constexpr PropertyRow rows[] = {
    {"/",                     "SerialNumber",         fixed,     "00A1B2C3"},
    {uid,                     "HwVersion",            fixed,     "V12_HSMB"},
    {uid,                     "FirmwareVersion",      fixed,     "2.4.1b7"},
    {network,                 "DhcpEnabled",          boolean,   "false"},
    {network,                 "StaticIpAddress",      ipAddress, "192.168.0.100"},
    {network,                 "StaticNetworkMask",    ipAddress, "255.255.255.0"},
    {network,                 "StaticGatewayAddress", ipAddress, "192.168.0.1"},
    {network,                 "IpAddress",            byMethod,  "192.168.0.100"},
    {network,                 "NetworkMask",          byMethod,  "255.255.255.0"},
    {network,                 "GatewayAddress",       byMethod,  "192.168.0.1"},
    {network,                 "MacAddress",           fixed,     "02:00:5E:10:20:30"},
    {network,                 "LinkStatus",           fixed,     "1000 Mbps"},
    {security,                "SecureMode",           boolean,   "false"},
    {"/MANAGEMENT/SERIAL",    "Enabled",              boolean,   "true"},
    {"/MANAGEMENT/SERIAL",    "Baudrate",             "9600|19200|38400|57600|115200", "57600"},
    {"/MANAGEMENT/SERIAL",    "Protocol",             "DT2|P#2|DT3", "DT3"},
    {lcd,                     "Brightness",           "0..10",   "7"},
    {lcd,                     "Message",              anyText,   ""},
    {lcd,                     "ControlLock",          boolean,   "false"},
    {lcd,                     "AutoTake",             boolean,   "false"},
    {"/SYS/CECU/BUZZER",      "Enabled",              boolean,   "true"},
    {power,                   "Psu1",                 fixed,     "running"},
    {power,                   "Operation",            byMethod,  "ON"},
};

/// The active addresses: where a lease comes from with DHCP, and which setting they follow without.
constexpr struct { const char *active, *setting, *leased; } addresses[] = {
    {"IpAddress",      "StaticIpAddress",      "192.168.0.57"},
    {"NetworkMask",    "StaticNetworkMask",    "255.255.255.0"},
    {"GatewayAddress", "StaticGatewayAddress", "192.168.0.1"},
};
// clang-format on

constexpr const char *absentFirmware = "0.0.0b0";

/// Hardware version of add-on slot 2 to 22. Input boards of this device are V20, output boards V12.
/// Frames of type 0 to 2 fill their slots in groups of four, two inputs and two outputs; those of type 3 report
/// five kinds of input boards, then five of output boards.
const char *slotVersion(const FrameDescriptor &frame, int slot)
{
    const int index = slot - 2;
    const bool isBig = frame.frameType == 3;
    const bool isOutput = isBig ? index >= 5 : index % 4 >= 2;
    const int card = index % 2 + 2 * (index / 4);
    const int cards = isOutput ? frame.outputCardCount() : frame.inputCardCount();
    const bool isFilled = isBig ? index < 10 : card < cards;
    return !isFilled ? "-" : isOutput ? "V12_OUTPUT" : "V20_INPUT";
}

void addVersions(PropertyTree &tree, const FrameDescriptor &frame)
{
    tree.addProperty(uid, "AddonHwVersion0", fixed, "V11_CECU");
    tree.addProperty(uid, "AddonHwVersion1", fixed, "V10_CPNL");
    for (int slot = 2; slot <= 22; ++slot)
        tree.addProperty(uid, "AddonHwVersion" + QString::number(slot), fixed, slotVersion(frame, slot));
    const char *versions[] = {
        "2.4.1b7",                                  // core
        "2.4.0b3",                                  // menu
        "1.8.2b1",                                  // V10 I/O port
        "1.3.0b4",                                  // control panel
        "2.4.1b2",                                  // built-in web
        "1.1.0b9",                                  // file system
        "1.0.3b0",                                  // bootloader
        "2.2.5b6",                                  // V20 I/O port
        frame.inputsC ? "1.0.7b2" : absentFirmware, // receiver of the DisplayPort boards
        frame.outputsC ? "1.0.6b5" : absentFirmware // their transmitter
    };
    int number = 0;
    for (const char *version : versions)
        tree.addProperty(uid, "AdditionalFirmwareVersion" + QString::number(++number), fixed, version);
}

void takeAddressesIntoUse(PropertyTree &tree)
{
    const QString node = QString(network) + '.';
    const bool isDhcpOn = tree.value(node + "DhcpEnabled") == "true";
    for (const auto &row : addresses)
        tree.setValue(node + row.active, isDhcpOn ? QString(row.leased) : tree.value(node + row.setting));
}

QString changeBrightness(PropertyTree &tree, const QString &step)
{
    bool isNumber = false;
    const int by = step.toInt(&isNumber);
    if (!isNumber)
        return "not a step: " + step;
    const QString path = QString(lcd) + ".Brightness";
    tree.setValue(path, QString::number(std::clamp(tree.value(path).toInt() + by, 0, 10)));
    return {};
}

} // namespace

void addSystemProperties(PropertyTree &tree, const FrameDescriptor &frame)
{
    tree.addProperty("/", "PartNumber", fixed, QString::number(frame.partNumber).rightJustified(8, '0'));
    tree.addProperties(rows);
    tree.addProperty(power, "Psu2", fixed, frame.flag ? "running" : "stopped");
    addVersions(tree, frame);

    tree.addMethod(network, "applySettings", [&tree](const QString &) {
        takeAddressesIntoUse(tree);
        return QString();
    });
    tree.addMethod(security, "applySettings", [](const QString &) { return QString(); }); // has nothing to wait for
    tree.addMethod(lcd, "changeBrightness", [&tree](const QString &step) { return changeBrightness(tree, step); });
    tree.addMethod(power, "standby", [&tree](const QString &) {
        tree.setValue(QString(power) + ".Operation", "STANDBY");
        return QString();
    });
    tree.addMethod(power, "wakeUp", [&tree](const QString &) {
        tree.setValue(QString(power) + ".Operation", "ON");
        return QString();
    });
}
