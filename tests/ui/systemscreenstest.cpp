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
    void rowsFollowFrame();

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
    const QString rows = "IP: TBD|Subnet: TBD|Gateway: TBD|DHCP: %1|Security: TBD|%2Link Status: TBD|MAC: TBD";
    m_wire.change(network + "DhcpEnabled", "true");
    m_wire.change(network + "StaticIpAddress", "10.0.0.3");
    QVERIFY(m_wire.settle());
    QCOMPARE(shown(), rows.arg("Enabled", ""));
    m_wire.change(network + "DhcpEnabled", "false");
    QVERIFY(m_wire.settle());
    QCOMPARE(shown(), rows.arg("Disabled", "Static IP: 10.0.0.3|Static Subnet: TBD|Static Gateway: TBD|"));
    Lcd::keys("DDDDD\r");
    QCOMPARE(Lcd::title(), "STATIC IP"); // its editor
}

void SystemScreensTest::absentFirmwareHasNoRow()
{
    const QString version = "/MANAGEMENT/UID.%1FirmwareVersion%2", absent = "0.0.0b0";
    Lcd::keys("DDDDDD\rDD\r");
    m_wire.answer(version.arg("", ""), absent);
    for (int component = 1; component <= 10; ++component)
        m_wire.answer(version.arg("Additional").arg(component),
            QList{1, 8, 10}.contains(component) ? absent : QString::number(component));
    QVERIFY(m_wire.settle());
    const QString rows = "Package: 0.0.0b0|Menu: 2|V10 I/O Port: 3|ControlPanel: 4|Built In Web: 5|File System: 6|"
                         "Bootloader: 7|VPP RX: 9";
    QCOMPARE(shown(), rows);
    Lcd::keys("\033\r");
    QCOMPARE(shown(), rows);
}

void SystemScreensTest::rowsFollowFrame()
{
    const int pending = Screen::pendingEntries();
    const QString rows = "Network|RS-232|Time and Date|Display Brightness: TBD|Buzzer: TBD|%1Device Info|"
                         "Enter Standby Mode|Restore Factory Defaults";
    identify("47110020", "10 11 12 13 14 15 16 17 18 19 20"); // 16 x 20, with two power supplies
    QCOMPARE(Screen::pendingEntries(), pending - 1);
    QCOMPARE(shown(), rows.arg("Power redundancy|"));
    Lcd::keys("DDDDDD\rD\r");
    const QString boards = "HSMB: %1|CECU: TBD|CPNL: TBD|%2";
    QCOMPARE(
        shown(), boards.arg("TBD", "IB1: V10|IB2: V11|IB3: V14|IB4: V15|OB1: V12|OB2: V13|OB3: V16|OB4: V17|OB5: V20"));
    m_wire.sent();
    identify("47110011", "30 31 32 33"); // another device behind the same address
    m_wire.answer("/MANAGEMENT/UID.HwVersion", "V4_2026");
    QVERIFY(m_wire.settle());
    QCOMPARE(shown(), boards.arg("V4_2026", "IB1: V30|IB2: V31|OB1: V32|OB2: V33"));
    Lcd::keys("\033\033");
    QCOMPARE(shown(), rows.arg(""));
}

QTEST_MAIN(SystemScreensTest)
#include "systemscreenstest.moc"
