#include "tests/ui/frame.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/screens/screensystemsettings.h"
#include "ui/screens/sharedscreens.h"
#include "ui/screensetip.h"

namespace {

QString shown() { return Lcd::rows().join('|'); }

const QString network = QStringLiteral("/MANAGEMENT/NETWORK.");

} // namespace

/// The pages of the device's own settings, opened by the knob.
class SystemScreensTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_wire.connectProgram()); }
    void init();
    void cleanup() { m_lcd.reset(); }
    void networkIsSaved_data();
    void networkIsSaved();
    void staticRowsFollowDhcp();
    void absentFirmwareHasNoRow();
    void powerRedundancyFollowsFrame();
    void boardsFollowFrame();

private:
    Wire m_wire;
    SharedScreens m_shared{};
    std::unique_ptr<Lcd> m_lcd;
};

void SystemScreensTest::init()
{
    m_lcd = std::make_unique<Lcd>();
    m_shared.setIp = new ScreenSetIp(m_lcd.get()); // the LCD's
    (new ScreenSystemSettings(m_lcd.get(), m_shared))->showMe();
}

void SystemScreensTest::networkIsSaved_data()
{
    QTest::addColumn<QString>("values"); // DHCP, address, subnet, gateway; "-" never comes
    QTest::addColumn<bool>("refused");
    QTest::newRow("same subnet") << "false 192.168.1.10 255.255.255.0 192.168.1.1" << false;
    QTest::newRow("other subnet") << "false 192.168.1.10 255.255.255.0 192.168.2.1" << true;
    QTest::newRow("other half of all") << "false 192.0.0.1 128.0.0.0 64.0.0.1" << true;
    QTest::newRow("DHCP in another word") << "YES 192.168.1.10 255.255.255.0 192.168.2.1" << false;
    QTest::newRow("DHCP in no such word") << "only 192.168.1.10 255.255.255.0 192.168.2.1" << true;
    QTest::newRow("gateway unknown") << "- 192.168.1.10 255.255.255.0 -" << true;
    QTest::newRow("odd address, gateway unknown") << "false 1.2.3.4.5 255.255.255.0 -" << false;
    QTest::newRow("subnet unknown") << "false 192.168.1.10 - 192.168.2.1" << false;
}

void SystemScreensTest::networkIsSaved()
{
    QFETCH(const QString, values);
    QFETCH(const bool, refused);
    Lcd::keys("\r");
    const char *names[] = {"DhcpEnabled", "StaticIpAddress", "StaticNetworkMask", "StaticGatewayAddress"};
    for (int i = 0; i < 4; ++i) {
        if (const QString value = values.section(' ', i, i); value != "-")
            m_wire.change(network + names[i], value);
    }
    m_wire.sent();
    Lcd::keys("DDDDDDDDDDDDDDDA\r"); // Save is above Back
    QStringList calls{"CALL /MANAGEMENT/NETWORK:applySettings()", "CALL /MANAGEMENT/NETWORK/SECURITY:applySettings()"};
    if (refused) {
        calls.removeFirst();
        QCOMPARE(Lcd::texts(), "WARNING|Back|Not on the same subnet!");
        Lcd::keys("\r");
    }
    QCOMPARE(shown().startsWith("IP: TBD|Subnet: TBD|"), refused);
    QCOMPARE(m_wire.sent().filter("CALL"), calls);
}

void SystemScreensTest::staticRowsFollowDhcp()
{
    Lcd::keys("\r");
    const struct
    {
        const char *dhcp, *address, *expected;
    } steps[] = {
        // the last two of them by another client
        {"true", "10.0.0.3", "DHCP: Enabled|Security: TBD|"},
        {"false", "", "DHCP: Disabled|Security: TBD|Static IP: 10.0.0.3|Static Subnet: TBD|Static Gateway: TBD|"},
        {"true", "10.0.0.4", "DHCP: Enabled|Security: TBD|"},
        {"false", "", "DHCP: Disabled|Security: TBD|Static IP: 10.0.0.4|Static Subnet: TBD|Static Gateway: TBD|"},
    };
    for (const auto &[dhcp, address, expected] : steps) {
        m_wire.change(network + "DhcpEnabled", dhcp);
        if (*address)
            m_wire.change(network + "StaticIpAddress", address);
        QVERIFY(m_wire.settle());
        QCOMPARE(shown(), QString("IP: TBD|Subnet: TBD|Gateway: TBD|%1Link Status: TBD|MAC: TBD").arg(expected));
    }
    Lcd::keys("DDDDD\r");
    QCOMPARE(Lcd::title(), "STATIC IP"); // its editor
}

void SystemScreensTest::absentFirmwareHasNoRow()
{
    const QString path = "/MANAGEMENT/UID.AdditionalFirmwareVersion%1";
    Lcd::keys("DDDDDD\rDD\r");
    m_wire.answer("/MANAGEMENT/UID.FirmwareVersion", "0.0.0b0");
    for (int component = 1; component <= 10; ++component)
        m_wire.answer(
            path.arg(component), component % 7 == 1 || component == 10 ? "0.0.0b0" : path.arg(component).last(8));
    QVERIFY(m_wire.settle());
    const QString rows = "Package: 0.0.0b0|Menu: Version2|V10 I/O Port: Version3|ControlPanel: Version4|"
                         "Built In Web: Version5|File System: Version6|Bootloader: Version7|VPP RX: Version9";
    QCOMPARE(shown(), rows);
    Lcd::keys("\033\r");
    QCOMPARE(shown(), rows);
}

void SystemScreensTest::powerRedundancyFollowsFrame()
{
    const QString rows = "Network|RS-232|Time and Date|Display Brightness: TBD|Buzzer: TBD|%1Device Info|"
                         "Enter Standby Mode|Restore Factory Defaults";
    identify("47110005", "10"); // two power supplies
    QCOMPARE(shown(), rows.arg("Power redundancy|"));
    identify("47110004", "10");
    QCOMPARE(shown(), rows.arg(""));
    Lcd::keys("DDDDD\r");
    QCOMPARE(Lcd::title(), "DEVICE INFO");
}

void SystemScreensTest::boardsFollowFrame()
{
    const int pending = Screen::pendingEntries();
    identify("47110020", "10 11 12 13 14 15 16 17 18 19 20"); // 16 x 20
    QCOMPARE(Screen::pendingEntries(), pending - 1);
    Lcd::keys("DDDDDD\rD\r");
    const QString rows = "HSMB: %1|CECU: TBD|CPNL: TBD|";
    QCOMPARE(
        shown(), rows.arg("TBD") + "IB1: V10|IB2: V11|IB3: V14|IB4: V15|OB1: V12|OB2: V13|OB3: V16|OB4: V17|OB5: V20");
    m_wire.sent();
    identify("47110011", "30 31 32 33"); // other boards were put in, and the link came back
    m_wire.answer("/MANAGEMENT/UID.HwVersion", "V4_2026");
    QVERIFY(m_wire.settle());
    QCOMPARE(shown(), rows.arg("V4_2026") + "IB1: V30|IB2: V31|OB1: V32|OB2: V33");
}

QTEST_MAIN(SystemScreensTest)
#include "systemscreenstest.moc"
