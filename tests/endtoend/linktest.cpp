#include "tests/endtoend/front.h"
#include "tests/support/scriptedservice.h"

#include <QRandomGenerator>
#include <QTest>

/// The program and its one connection: late, lost while the operator is at work, or full of nonsense.
class LinkTest : public QObject
{
    Q_OBJECT
private slots:
    void serviceStartsLate();
    void stateIsTheDevicesAfterALoss();
    void editorSurvivesALoss();
    void lockWarningLeavesUnderANotice();
    void knobAlwaysLeadsBack();
    void malformedLinesChangeNothing();
};

void LinkTest::serviceStartsLate()
{
    Front front(1);
    front.device().startProgram();
    QTRY_VERIFY(front.messages().join('\n').contains("Connecting to 127.0.0.1:6107 ..."));
    front.tap(1, 3);                       // swallowed: nobody is there to switch
    const QImage notice = front.picture(); // the key has been read by the time that it has slid in
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
    QTRY_VERIFY(front.picture() != notice); // the menu
}

void LinkTest::stateIsTheDevicesAfterALoss()
{
    Front front(1);
    QVERIFY(front.start());
    CoreService &core = front.device().core();
    core.dropLink();
    QVERIFY(core.restoreLink());
    QTRY_COMPARE(front.messages().count("Connected."), 2);
    core.dropLink();
    QTRY_COMPARE(front.messages().count("Disonnected."), 2);
    front.tap(1, 3);
    QVERIFY(core.setProperty("/SYS/CECU/LCD.ControlLock", "true"));
    QVERIFY(core.setProperty("/SYS/CECU/LCD.AutoTake", "true"));
    QVERIFY(core.restoreLink());
    QTRY_COMPARE(front.led(1, 39), 1);
    QTRY_COMPARE(front.led(1, 33), 1);
    QVERIFY(core.setProperty("/SYS/CECU/LCD.ControlLock", "false")); // the subscriptions are back
    QTRY_COMPARE(front.led(1, 39), 0);
    front.tap(1, 6);
    QTRY_VERIFY(front.requests().contains("CALL /MEDIA/XP/VIDEO:connect(I6:-O1;)"));
}

void LinkTest::editorSurvivesALoss()
{
    Front front(1);
    QVERIFY(front.start());
    CoreService &core = front.device().core();
    const QImage menu = front.picture();
    front.tapKey(TestBed::pushKey);
    const QImage settings = front.picture();
    front.turn(3); // Display Brightness
    const QImage highlight = front.picture();
    front.tapKey(TestBed::pushKey);
    const QImage slider = front.picture();
    QVERIFY(settings != menu && highlight != settings && slider != highlight);
    core.dropLink();
    QImage reconnecting;
    QTRY_VERIFY((reconnecting = front.picture()) != slider);
    front.tapKey(TestBed::pushKey);
    front.turn(2);
    QCOMPARE(front.picture(), reconnecting);
    QVERIFY(core.restoreLink());
    QTRY_VERIFY(front.picture() == slider);
    core.setProperty("/SYS/CECU/LCD.Brightness", "2"); // it follows the device again
    QTRY_VERIFY(front.picture() != slider);
    core.setProperty("/SYS/CECU/LCD.ControlLock", "true"); // and so does the lock, on that node
    QTRY_COMPARE(front.led(1, 39), 1);
    core.setProperty("/SYS/CECU/LCD.ControlLock", "false");
    QTRY_COMPARE(front.led(1, 39), 0);
    front.turn(1);
    QTRY_COMPARE(core.property("/SYS/CECU/LCD.Brightness"), "3");
    front.tapKey(TestBed::pushKey);
    front.picture();
    front.turn(20); // Back
    QVERIFY(front.picture() != menu);
    front.tapKey(TestBed::pushKey);
    QTRY_VERIFY(front.picture() == menu);
}

void LinkTest::lockWarningLeavesUnderANotice()
{
    Front front(1);
    QVERIFY(front.start());
    const QImage menu = front.picture();
    front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "true");
    QTRY_COMPARE(front.led(1, 39), 1);
    front.turn(1);
    QTRY_VERIFY(front.device().bed().lcd() != menu);
    const QImage warning = front.picture();
    front.device().core().dropLink();
    QTRY_VERIFY(front.picture() != warning);
    Front::pass(3000); // the warning's own time
    QVERIFY(front.device().core().restoreLink());
    QTRY_VERIFY(front.picture() == menu);
}

/// Whatever happens, the knob alone leads back to the menu.
void LinkTest::knobAlwaysLeadsBack()
{
    QRandomGenerator random(1);
    Front front(1);
    QVERIFY(front.start());
    CoreService &core = front.device().core();
    const QImage menu = front.picture();
    for (int step = 0; step < 100; ++step) {
        switch (random.bounded(14)) {
        case 0: core.dropLink(); break;
        case 1:
        case 2: QVERIFY(core.isLinkUp() || core.restoreLink()); break;
        case 3: core.setProperty("/SYS/CECU/LCD.ControlLock", random.bounded(3) ? "false" : "true"); break;
        case 4: core.setProperty("/SYS/CECU/LCD.Message", random.bounded(2) ? "<b>" : "a message to everybody"); break;
        case 5: core.setProperty("/SYS/CECU/LCD.Brightness", random.bounded(2) ? "4" : "9"); break;
        case 6: core.startUpgrade(std::chrono::milliseconds(200)); break;
        case 7:
        case 8:
        case 9: front.tapKey(TestBed::pushKey); break;
        default: front.turn(random.bounded(-4, 5)); break;
        }
        Front::pass(random.bounded(150)); // also in the middle of a slide
    }
    QVERIFY(core.isLinkUp() || core.restoreLink());
    core.setProperty("/SYS/CECU/LCD.ControlLock", "false");
    for (int level = 0; level < 24; ++level) {
        front.picture();
        front.turn(-30);
        if (front.picture() == menu)
            return;
        front.turn(30); // to Back, where no slider or wheel is in hand
        front.picture();
        front.tapKey(TestBed::pushKey); // leaves it, puts down what is in hand, or wakes the device
    }
    front.picture().save("linktest.png");
    QFAIL("the menu is not to be reached; what is on the LCD is saved beside the test");
}

void LinkTest::malformedLinesChangeNothing()
{
    Front front(1);
    ScriptedService service(6107);
    front.device().startProgram();
    QTRY_VERIFY(service.lines().size() >= 15);
    for (const char *node : {"/MEDIA/XP/VIDEO", "/SYS/CECU/LCD", "/MANAGEMENT/POWER", "/MANAGEMENT/BOOTLOADER"})
        service.sendLines({QString("o- %1").arg(node)});
    service.send("\xff\xfe\r\n{\r\n{99999\r\n}\r\n}}}\r\nCHG\r\nCHG \r\nCHG =\r\nCHG /.=\r\npr\r\ne- no\r\nNEW \r\nNEW "
                 "/\r\nDEL\r\n"
                 "o-\r\no- \r\n\r\n\r\n"
                 "CHG /MEDIA/XP/VIDEO.DestinationConnectionStatus=I99999999999;x;;;-1;I;\\\r\n"
                 "CHG /MEDIA/XP/VIDEO.DestinationPortStatus=;;;L\r\n"
                 "CHG /MANAGEMENT/BOOTLOADER.Progress=99999999999999999999\r\n{1000\r\n{1001\r\n");
    service.sendLines(
        {"CHG /MEDIA/XP/VIDEO.DestinationConnectionStatus=I2;0;I300;", "CHG /SYS/CECU/LCD.AutoTake=true"});
    QTRY_COMPARE(front.led(1, 2), 1); // what feeds destination 1
    QVERIFY(service.hasClient());
    front.tap(1, 18);
    front.tap(1, 7);
    QTRY_COMPARE(service.requests().last(), "CALL /MEDIA/XP/VIDEO:connect(I7:-O2;)");
}

QTEST_GUILESS_MAIN(LinkTest)
#include "linktest.moc"
