#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "tests/ui/lcd.h"
#include "tests/ui/wire.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screendata.h"
#include "ui/screens/screensystemsettings.h"
#include "ui/screens/sharedscreens.h"
#include "ui/screensetip.h"

#include <QApplication>
#include <QTest>

namespace {

/// The rows of the open page, from top to bottom: "Network|Buzzer: TBD".
QString shown()
{
    QStringList rows;
    for (const DataLine *row : QApplication::focusWidget()->findChildren<DataLine *>()) {
        const QString text = row->captionLabel()->text();
        if (row->captionLabel()->isVisible())
            rows += row->values().isEmpty() ? text : text + ": " + row->values().first()->text();
    }
    return rows.join('|');
}

/// The labels of the open page: its title comes first, the message of a warning last.
QList<StyledLabel *> labels() { return QApplication::focusWidget()->findChildren<StyledLabel *>(); }

/// Slot 2 has this version, and each further slot the next one.
void identify(const QString &partNumber, int version)
{
    auto *variant = VariantManager::instance();
    variant->connectionStateChanged(false);
    variant->propertyReceived("/.PartNumber", partNumber);
    for (int slot = 2; slot <= 22; ++slot)
        variant->propertyReceived(
            QString("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot), QString("V%1_2026").arg(version + slot - 2));
}

const QString network = QStringLiteral("/MANAGEMENT/NETWORK.");

} // namespace

/// The pages of the device's own settings, opened by the knob.
class SystemScreensTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
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
    ScreenSystemSettings *m_settings = nullptr; ///< The LCD's.
};

void SystemScreensTest::initTestCase()
{
    fillCatalogue();
    Dt3Manager::instance()->connectToDevice();
    QTRY_VERIFY(m_wire.hasClient());
}

void SystemScreensTest::init()
{
    m_lcd = std::make_unique<Lcd>();
    m_shared.setIp = new ScreenSetIp(m_lcd.get()); // the LCD's
    m_settings = new ScreenSystemSettings(m_lcd.get(), m_shared);
    m_settings->showMe();
}

void SystemScreensTest::networkIsSaved_data()
{
    QTest::addColumn<QString>("values"); // DHCP, address, subnet, gateway; "-" never comes
    QTest::addColumn<bool>("refused");
    QTest::newRow("same subnet") << "false 192.168.1.10 255.255.255.0 192.168.1.1" << false;
    QTest::newRow("other subnet") << "false 192.168.1.10 255.255.255.0 192.168.2.1" << true;
    QTest::newRow("other half of all") << "false 192.0.0.1 128.0.0.0 64.0.0.1" << true;
    QTest::newRow("DHCP") << "true 192.168.1.10 255.255.255.0 192.168.2.1" << false;
    QTest::newRow("DHCP in another word") << "YES 192.168.1.10 255.255.255.0 192.168.2.1" << false;
    QTest::newRow("DHCP in no such word") << "only 192.168.1.10 255.255.255.0 192.168.2.1" << true;
    QTest::newRow("DHCP unknown") << "- 192.168.1.10 255.255.255.0 192.168.2.1" << true;
    QTest::newRow("odd gateway") << "false 192.168.1.10 255.255.255.0 none" << true;
    QTest::newRow("gateway unknown") << "false 192.168.1.10 255.255.255.0 -" << true;
    QTest::newRow("odd address, gateway unknown") << "false 1.2.3.4.5 255.255.255.0 -" << false;
    QTest::newRow("subnet unknown") << "false 192.168.1.10 - 192.168.2.1" << false;
    QTest::newRow("nothing known") << "- - - -" << false;
}

void SystemScreensTest::networkIsSaved()
{
    QFETCH(QString, values);
    QFETCH(bool, refused);
    Lcd::keys("\r");
    for (const char *name : {"DhcpEnabled", "StaticIpAddress", "StaticNetworkMask", "StaticGatewayAddress"}) {
        if (const QString value = values.section(' ', 0, 0); value != "-")
            m_wire.change(network + name, value);
        values = values.section(' ', 1);
    }
    m_wire.change(network + "LinkStatus", "last");
    QTRY_VERIFY(shown().contains("Link Status: last"));
    m_wire.takeLines();
    Lcd::keys("DDDDDDDDDDDDDDDA\r"); // Save is above Back
    QStringList calls{"CALL /MANAGEMENT/NETWORK:applySettings()", "CALL /MANAGEMENT/NETWORK/SECURITY:applySettings()"};
    if (refused)
        calls.removeFirst();
    QTRY_VERIFY(m_wire.requests().contains(calls.last()));
    QCOMPARE(m_wire.requests().filter("CALL"), calls);
    QCOMPARE(m_settings->hasFocus(), !refused);
    if (refused) {
        QCOMPARE(labels().last()->text(), "Not on the same subnet!");
        Lcd::keys("\r");
        QVERIFY(shown().contains("Link Status: last"));
    }
}

void SystemScreensTest::staticRowsFollowDhcp()
{
    Lcd::keys("\r");
    m_wire.change(network + "DhcpEnabled", "true");
    m_wire.change(network + "StaticIpAddress", "10.0.0.3");
    m_wire.change(network + "StaticGatewayAddress", "10.0.0.1");
    m_wire.change(network + "MacAddress", "1");
    const QString rows = "IP: TBD|Subnet: TBD|Gateway: TBD|DHCP: %1|Security: TBD|%2Link Status: TBD|MAC: %3";
    QTRY_COMPARE(shown(), rows.arg("Enabled", "", "1"));
    const QString addresses = "Static IP: 10.0.0.%1|Static Subnet: TBD|Static Gateway: 10.0.0.1|";
    m_wire.change(network + "DhcpEnabled", "false"); // by another client
    QTRY_COMPARE(shown(), rows.arg("Disabled", addresses.arg(3), "1"));
    m_wire.change(network + "DhcpEnabled", "true");
    m_wire.change(network + "StaticIpAddress", "10.0.0.4");
    m_wire.change(network + "MacAddress", "2");
    QTRY_COMPARE(shown(), rows.arg("Enabled", "", "2"));
    m_wire.change(network + "DhcpEnabled", "false");
    QTRY_COMPARE(shown(), rows.arg("Disabled", addresses.arg(4), "2"));
    Lcd::keys("DDDDD\r");
    QCOMPARE(labels().first()->text(), "STATIC IP"); // its editor
}

void SystemScreensTest::absentFirmwareHasNoRow()
{
    const QString path = "/MANAGEMENT/UID.AdditionalFirmwareVersion%1";
    Lcd::keys("DDDDDD\rDD\r");
    QTRY_VERIFY(m_wire.requests().contains("GET " + path.arg(10)));
    m_wire.answer("/MANAGEMENT/UID.FirmwareVersion", "0.0.0b0");
    for (const int component : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10})
        m_wire.answer(
            path.arg(component), component % 7 == 1 || component == 10 ? "0.0.0b0" : path.arg(component).last(8));
    const QString rows = "Package: 0.0.0b0|Menu: Version2|V10 I/O Port: Version3|ControlPanel: Version4|"
                         "Built In Web: Version5|File System: Version6|Bootloader: Version7|VPP RX: Version9";
    QTRY_COMPARE(shown(), rows);
    Lcd::keys("\033\r");
    QCOMPARE(shown(), rows);
}

void SystemScreensTest::powerRedundancyFollowsFrame()
{
    const QString rows = "Network|RS-232|Time and Date|Display Brightness: TBD|Buzzer: TBD|%1Device Info|"
                         "Enter Standby Mode|Restore Factory Defaults";
    identify("47110005", 10); // two power supplies
    QCOMPARE(shown(), rows.arg("Power redundancy|"));
    identify("47110004", 10);
    QCOMPARE(shown(), rows.arg(""));
    Lcd::keys("DDDDD\r");
    QCOMPARE(labels().first()->text(), "DEVICE INFO");
}

void SystemScreensTest::boardsFollowFrame()
{
    const int pending = Screen::pendingEntries();
    identify("47110020", 10); // 16 x 20
    QCOMPARE(Screen::pendingEntries(), pending - 1);
    Lcd::keys("DDDDDD\rD\r");
    const QString rows = "HSMB: %1|CECU: TBD|CPNL: TBD|";
    const QString boards = "IB1: V10|IB2: V11|IB3: V14|IB4: V15|OB1: V12|OB2: V13|OB3: V16|OB4: V17|OB5: V20";
    QCOMPARE(shown(), rows.arg("TBD") + boards);
    m_wire.change("/MANAGEMENT/UID.HwVersion", "V3_2026");
    QTRY_COMPARE(shown(), rows.arg("V3_2026") + boards);
    m_wire.takeLines();
    identify("47110011", 30); // other boards were put in, and the link came back
    QTRY_VERIFY(m_wire.requests().contains("GET /MANAGEMENT/UID.HwVersion"));
    m_wire.answer("/MANAGEMENT/UID.HwVersion", "V4_2026");
    QTRY_COMPARE(shown(), rows.arg("V4_2026") + "IB1: V30|IB2: V31|OB1: V32|OB2: V33");
}

QTEST_MAIN(SystemScreensTest)
#include "systemscreenstest.moc"
