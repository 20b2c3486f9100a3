#include "tests/endtoend/front.h"
#include "tests/support/scriptedservice.h"

#include <QTest>

/// The program and its one connection: late, lost, flooded, gone for good.
class LinkTest : public QObject
{
    Q_OBJECT
private slots:
    void serviceStartsLate();
    void stateIsTheDevicesAfterALoss();
    void survivesHostileBytes();
};

namespace {

// Bytes that no service should send, in the order in which they hurt most.
QByteArray hostileBytes()
{
    QByteArray bytes("\xff\xfe\0\r\n", 5);
    bytes += "{\r\n{99999\r\n}\r\n}}}\r\nCHG\r\nCHG \r\nCHG =\r\nCHG /.=\r\npr\r\ne- no\r\nNEW \r\nNEW "
             "/\r\nDEL\r\no-\r\no- "
             "\r\n\r\n\r\n";
    bytes += "CHG /MEDIA/XP/VIDEO.DestinationConnectionStatus=I99999999999;x;;;-1;I;\\\r\n";
    bytes += "CHG /MEDIA/XP/VIDEO.DestinationPortStatus=;;;L\r\n";
    bytes += "CHG /MANAGEMENT/BOOTLOADER.Progress=99999999999999999999\r\n";
    for (int i = 0; i < 2000; ++i)
        bytes += "{" + QByteArray::number(1000 + i) + "\r\n";
    bytes += QByteArray(3 << 20, 'x') + "\r\n";
    return bytes;
}

} // namespace

void LinkTest::serviceStartsLate()
{
    Front front(1);
    front.device().startProgram();
    QTRY_VERIFY(front.messages().join('\n').contains("Connecting to 127.0.0.1:6107 ..."));
    front.tap(1, 3); // swallowed: nobody is there to switch
    front.picture(); // it has been read by the time that the notice has slid in
    QCOMPARE(front.device().powerOn(), QString());
    const QStringList first{"GET /.PartNumber", "OPEN /SYS/CECU/LCD", "OPEN /MEDIA/XP/VIDEO", "OPEN /MEDIA/XP/VIDEO",
        "GET /MEDIA/XP/VIDEO.DestinationConnectionStatus", "GET /MEDIA/XP/VIDEO.DestinationPortStatus",
        "OPEN /SYS/CECU/LCD", "OPEN /SYS/CECU/LCD", "GET /SYS/CECU/LCD.ControlLock", "GET /SYS/CECU/LCD.AutoTake",
        "OPEN /MANAGEMENT/POWER", "GET /MANAGEMENT/POWER.Operation", "OPEN /MANAGEMENT/BOOTLOADER",
        "OPEN /MANAGEMENT/BOOTLOADER", "GET /MANAGEMENT/BOOTLOADER.Status", "GET /MANAGEMENT/BOOTLOADER.Progress"};
    QTRY_COMPARE(front.requests().mid(0, first.size()), first);
    front.tap(1, 4);
    QTRY_COMPARE(front.led(1, 4), 1);
    QVERIFY(!front.leds().contains("1.3=1"));
}

void LinkTest::stateIsTheDevicesAfterALoss()
{
    Front front(1);
    QVERIFY(front.start());
    front.device().core().dropLink();
    QVERIFY(front.device().core().restoreLink());
    QTRY_COMPARE(front.messages().count("Connected."), 2);
    front.device().core().dropLink();
    QTRY_COMPARE(front.messages().count("Disonnected."), 2);
    front.tap(1, 3);
    QVERIFY(front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "true"));
    QVERIFY(front.device().core().setProperty("/SYS/CECU/LCD.AutoTake", "true"));
    QVERIFY(front.device().core().restoreLink());
    QTRY_COMPARE(front.led(1, 39), 1);
    QTRY_COMPARE(front.led(1, 33), 1);
    QVERIFY(front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "false")); // the subscriptions are back
    QTRY_COMPARE(front.led(1, 39), 0);
    front.tap(1, 6);
    QTRY_VERIFY(front.requests().contains("CALL /MEDIA/XP/VIDEO:connect(I6:-O1;)"));
}

void LinkTest::survivesHostileBytes()
{
    Front front(1);
    ScriptedService service(6107);
    front.device().startProgram();
    QTRY_VERIFY(service.lines().size() >= 15);
    for (const char *node : {"/MEDIA/XP/VIDEO", "/SYS/CECU/LCD", "/MANAGEMENT/POWER", "/MANAGEMENT/BOOTLOADER"})
        service.sendLines({QString("o- %1").arg(node)});
    service.send(hostileBytes());
    service.sendLines(
        {"CHG /MEDIA/XP/VIDEO.DestinationConnectionStatus=I2;0;I300;", "CHG /SYS/CECU/LCD.AutoTake=true"});
    QTRY_COMPARE(front.led(1, 2), 1); // what feeds destination 1
    QVERIFY(service.hasClient());
    front.tap(1, 18);
    front.tap(1, 7);
    QTRY_COMPARE(service.lines().last().section('#', 1), "CALL /MEDIA/XP/VIDEO:connect(I7:-O2;)");
    QVERIFY(!front.device().programEnd());
}

QTEST_GUILESS_MAIN(LinkTest)
#include "linktest.moc"
