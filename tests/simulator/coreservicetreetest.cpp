#include "simulator/coreservice/coreservice.h"
#include "tests/simulator/coreserviceclient.h"

#include <QRegularExpression>
#include <QTest>

namespace {

/// Every property the front panel reads: a node and its properties' names. "<in>" and "<out>" stand for a port of that
/// side, "<port>" for one of either, "<board>" for a port of a board, "<edid>" for a memory, "<button>" for a button.
constexpr struct
{
    const char *node;
    const char *names;
} patterns[] = {
    {"/", "SerialNumber PartNumber"},
    {"/MANAGEMENT/NETWORK",
        "DhcpEnabled StaticIpAddress StaticNetworkMask StaticGatewayAddress IpAddress NetworkMask GatewayAddress "
        "MacAddress LinkStatus"},
    {"/MANAGEMENT/NETWORK/SECURITY", "SecureMode"},
    {"/MANAGEMENT/SERIAL", "Enabled Baudrate Protocol"},
    {"/MANAGEMENT/DATETIME", "CurrentTime Uptime"},
    {"/MANAGEMENT/UID", "HwVersion FirmwareVersion AddonHwVersion<0-22> AdditionalFirmwareVersion<1-10>"},
    {"/MANAGEMENT/POWER", "Psu1 Psu2 Operation"},
    {"/MANAGEMENT/BOOTLOADER", "Status Progress"},
    {"/SYS/CECU/LCD", "Brightness Message ControlLock AutoTake"},
    {"/SYS/CECU/BUZZER", "Enabled"},
    {"/SYS/CECU/HEALTH", "Voltage0_5V0 Voltage2_1V8 Voltage2_1V2 Temperature0"},
    {"/SYS/HSMB/HEALTH", "Voltage0_3V3 Voltage1_2V5 Voltage1_12V0 Temperature<0-2>"},
    {"/SYS/<board>/HEALTH",
        "Voltage0_5V0 Voltage1_5V0 Voltage2_3V3 Voltage3_1V3 Voltage4_1V0 Voltage5_3V3 Voltage6_1V2 Voltage7_1V1 "
        "Voltage8_1V5 Voltage9_2V5 Voltage10_3V3 Voltage11_3V3 Temperature0"},
    {"/MEDIA/XP/VIDEO", "SourcePortStatus DestinationPortStatus DestinationConnectionStatus"},
    {"/MEDIA/PRESET", "Button<button>AssignedPreset"},
    {"/MEDIA/PORTS/VIDEO/<port>", "PortType PortVersion"},
    {"/MEDIA/PORTS/VIDEO/<port>/STATUS",
        "Connected SignalPresent SignalType ColorSpace ColorDepth ActiveHdcpVersion Hdcp2StreamType "
        "EmbeddedAudioPresent ActiveResolution TotalResolution PixelClock Scrambling TmdsClockRate DpLinkRate "
        "DpLaneCount"},
    {"/MEDIA/PORTS/VIDEO/<port>/SETTINGS", "EnablePower Conversion"},
    {"/MEDIA/PORTS/VIDEO/<in>/SETTINGS", "HdcpVersion EnableHPD DpMaxLaneCount DpMaxLinkRate TpgMode"},
    {"/MEDIA/PORTS/VIDEO/<out>/SETTINGS", "ForcedSignalType HdcpMode ForcedScrambling ForcedHdmi2TmdsClockRate"},
    {"/MEDIA/PORTS/VIDEO/<port>/EMBEDDEDAUDIO", "SignalPresent AudioType SamplingFreq AudioMode"},
    {"/MEDIA/PORTS/VIDEO/<port>/ANALOGAUDIO", "VolumePercent VolumedB Balance"},
    {"/MEDIA/PORTS/VIDEO/<in>/ANALOGAUDIO", "AudioMode Gain"},
    {"/MEDIA/PORTS/VIDEO/<out>/ANALOGAUDIO", "Mute"},
    {"/EDID/<edid>", "Manufacturer PreferredResolution MonitorName AudioInfo"},
};

/// Every path that the patterns stand for. @param meanings what their placeholders stand for.
QStringList expanded(const QMap<QString, QStringList> &meanings)
{
    static const QRegularExpression placeholder("<[^>]*>");
    QStringList paths;
    for (const auto &pattern : patterns) {
        const QStringList names = QString(pattern.names).split(' ');
        for (const QString &name : names) {
            const QString path = QString("%1.%2").arg(pattern.node, name);
            const QString found = placeholder.match(path).captured();
            for (const QString &meaning : meanings.value(found, {""}))
                paths.append(found.isEmpty() ? path : QString(path).replace(found, meaning));
        }
    }
    return paths;
}

QStringList numbered(const QString &prefix, int first, int last)
{
    QStringList names;
    for (int i = first; i <= last; ++i)
        names.append(prefix + QString::number(i));
    return names;
}

QStringList boardPorts(const QString &prefix, int boards)
{
    QStringList names;
    for (int board = 1; board <= boards; ++board)
        names += numbered(QString("%1%2/PORT").arg(prefix).arg(board), 1, 4);
    return names;
}

} // namespace

/// What the frames the service plays consist of.
class CoreServiceTreeTest : public QObject
{
    Q_OBJECT

private slots:
    void hasEveryPath_data() { addFrames(); }
    void hasEveryPath();
    void valuesHaveTheShapesThatPagesRead_data() { addFrames(); }
    void valuesHaveTheShapesThatPagesRead();
    void hasNoMoreThanTheFrame_data() { addFrames(); }
    void hasNoMoreThanTheFrame();
    void namesPortTypes_data();
    void namesPortTypes();
    void reportsBoardVersions();

private:
    static void addFrames();
};

void CoreServiceTreeTest::addFrames()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("inputs");
    QTest::addColumn<int>("outputs");
    QTest::addColumn<int>("buttons");
    QTest::newRow("8 x 8") << 1 << 8 << 8 << 8;
    QTest::newRow("16 x 16 and 4 audio outputs") << 7 << 16 << 20 << 8;
    QTest::newRow("48 x 48") << 17 << 48 << 48 << 48;
    QTest::newRow("48 x 48 with DisplayPort") << 23 << 48 << 48 << 48;
    QTest::newRow("16 x 8 and 4 audio outputs") << 27 << 16 << 12 << 8;
}

void CoreServiceTreeTest::hasEveryPath()
{
    QFETCH(const int, row);
    QFETCH(const int, inputs);
    QFETCH(const int, outputs);
    QFETCH(const int, buttons);
    const QStringList ins = numbered("I", 1, inputs);
    const QStringList outs = numbered("O", 1, outputs);
    const QMap<QString, QStringList> meanings = {
        {"<in>", ins},
        {"<out>", outs},
        {"<port>", ins + outs},
        {"<board>", boardPorts("IB", inputs / 4) + boardPorts("OB", outputs / 4)},
        {"<edid>", QStringList{"F/F1", "U/U1"} + numbered("D/D", 1, outputs) + numbered("E/E", 1, inputs)},
        {"<button>", numbered("", 1, buttons)},
        {"<0-22>", numbered("", 0, 22)},
        {"<1-10>", numbered("", 1, 10)},
        {"<0-2>", numbered("", 0, 2)},
    };
    CoreService service(frameDescriptors()[static_cast<size_t>(row - 1)]);
    QVERIFY(service.listen(0));
    CoreServiceClient client(service.port());
    const QStringList paths = expanded(meanings);
    QVERIFY(paths.size() > 26 * (inputs + outputs)); // the placeholders were understood
    for (const QString &path : paths) {
        const QString line = client.request("GET " + path).value(0);
        QVERIFY2(line.startsWith("pr " + path + '=') || line.startsWith("pw " + path + '='), qPrintable(line));
    }
}

void CoreServiceTreeTest::valuesHaveTheShapesThatPagesRead()
{
    QFETCH(const int, row);
    QFETCH(const int, inputs);
    QFETCH(const int, outputs);
    const CoreService service(frameDescriptors()[static_cast<size_t>(row - 1)]);
    const QString field = "[TLMU][0-9A-F]{2}";
    const QString volts = "\\d+\\.\\d\\d V(;\\d+\\.\\d\\d){6}";
    const QString celsius = "\\d+\\.\\d C(;\\d+\\.\\d){6}";
    const std::pair<QString, QString> shapes[] = {
        {"/.PartNumber", "\\d{8}"},
        {"/MEDIA/XP/VIDEO.SourcePortStatus", QString("%1(;%1){%2}").arg(field).arg(inputs - 1)},
        {"/MEDIA/XP/VIDEO.DestinationPortStatus", QString("%1(;%1){%2}").arg(field).arg(outputs - 1)},
        {"/MEDIA/XP/VIDEO.DestinationConnectionStatus", QString("(0|I\\d+)(;(0|I\\d+)){%1}").arg(outputs - 1)},
        {"/MANAGEMENT/DATETIME.CurrentTime", "\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d"},
        {"/MANAGEMENT/DATETIME.Uptime", "0d 00:\\d\\d:\\d\\d"},
        {"/MANAGEMENT/BOOTLOADER.Progress", "\\d+ \\w+"},
        {"/SYS/CECU/HEALTH.Voltage2_1V8", volts},
        {"/SYS/HSMB/HEALTH.Voltage1_12V0", volts},
        {"/SYS/IB1/PORT3/HEALTH.Voltage4_1V0", volts},
        {"/SYS/OB2/PORT4/HEALTH.Temperature0", celsius},
    };
    for (const auto &[path, shape] : shapes) {
        const QString value = service.property(path).value_or("nothing");
        QVERIFY2(QRegularExpression("^" + shape + "$").match(value).hasMatch(), qPrintable(path + " is " + value));
    }
    const QStringList sensor = service.property("/SYS/IB1/PORT1/HEALTH.Voltage0_5V0")->split(';');
    const double reading = sensor[0].chopped(2).toDouble();
    QVERIFY(sensor[3].toDouble() < sensor[1].toDouble() && sensor[1].toDouble() < reading);
    QVERIFY(reading < sensor[2].toDouble() && sensor[2].toDouble() < sensor[4].toDouble());
}

void CoreServiceTreeTest::hasNoMoreThanTheFrame()
{
    QFETCH(const int, row);
    QFETCH(const int, inputs);
    QFETCH(const int, outputs);
    CoreService service(frameDescriptors()[static_cast<size_t>(row - 1)]);
    QVERIFY(service.listen(0));
    CoreServiceClient client(service.port());
    QCOMPARE(client.request("GET /MEDIA/PORTS/VIDEO").size(), inputs + outputs);
    QCOMPARE(client.request("GET /EDID/E").size(), inputs);
    QCOMPARE(client.request("GET /EDID/D").size(), outputs);
    QCOMPARE(client.request("GET /SYS").size(), 2 + inputs / 4 + outputs / 4);
}

void CoreServiceTreeTest::namesPortTypes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("type");
    QTest::newRow("HDMI with analog audio") << 1 << "I1"
                                            << "HDMI_AUDIO";
    QTest::newRow("plain HDMI") << 7 << "I5"
                                << "HDMI";
    QTest::newRow("audio output") << 7 << "O17"
                                  << "AUDIO";
    QTest::newRow("audio output of the small one") << 27 << "O12"
                                                   << "AUDIO";
    QTest::newRow("DisplayPort with analog audio") << 23 << "I1"
                                                   << "DP_AUDIO";
    QTest::newRow("plain DisplayPort") << 23 << "I24"
                                       << "DP";
    QTest::newRow("HDMI behind DisplayPort") << 23 << "I25"
                                             << "HDMI_AUDIO";
}

void CoreServiceTreeTest::namesPortTypes()
{
    QFETCH(const int, row);
    QFETCH(const QString, port);
    QFETCH(const QString, type);
    const CoreService service(frameDescriptors()[static_cast<size_t>(row - 1)]);
    QCOMPARE(service.property("/MEDIA/PORTS/VIDEO/" + port + ".PortType"), type);
}

void CoreServiceTreeTest::reportsBoardVersions()
{
    const CoreService small(frameDescriptors()[0]); // two input boards in slots 2 and 3, two output boards in 4 and 5
    const CoreService big(frameDescriptors()[16]);
    const auto version = [](const CoreService &service, int slot) {
        return service.property("/MANAGEMENT/UID.AddonHwVersion" + QString::number(slot)).value_or("");
    };
    for (const int slot : {2, 3})
        QVERIFY(version(small, slot).startsWith("V20_"));
    for (const int slot : {4, 5})
        QVERIFY(version(small, slot).startsWith("V12_"));
    for (int slot = 6; slot <= 22; ++slot)
        QVERIFY(!version(small, slot).startsWith('V'));
    QVERIFY(version(big, 2).startsWith("V20_"));
    QVERIFY(version(big, 7).startsWith("V12_"));
    QCOMPARE(small.property("/MEDIA/PORTS/VIDEO/I1.PortVersion"), "V20"); // as its board says
    QCOMPARE(small.property("/MEDIA/PORTS/VIDEO/O1.PortVersion"), "V12");
}

QTEST_GUILESS_MAIN(CoreServiceTreeTest)
#include "coreservicetreetest.moc"
