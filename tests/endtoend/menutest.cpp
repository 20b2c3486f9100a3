#include "tests/endtoend/front.h"

#include <QDeadlineTimer>
#include <QRandomGenerator>
#include <QTest>

using namespace std::chrono_literals;

namespace {

constexpr int enterKey = 28; // as Linux numbers it: the push of the knob

} // namespace

/// The menu of the real program, driven by its knob.
class MenuTest : public QObject
{
    Q_OBJECT
private slots:
    void editorSurvivesALoss();
    void lockWarningLeavesUnderANotice();
    void bootNoticeLeavesWithTheService();
    void knobAlwaysLeadsBack_data();
    void knobAlwaysLeadsBack();

private:
    static void turn(Front &front, int detents) { front.device().bed().turnKnob(detents, 60ms); }
    static void push(Front &front)
    {
        front.device().bed().setKeyboardKey(enterKey, true);
        front.device().bed().setKeyboardKey(enterKey, false);
    }
    /// The operator waits.
    static void pass(int milliseconds)
    {
        const QDeadlineTimer deadline(milliseconds);
        QVERIFY(QTest::qWaitFor([&deadline] { return deadline.hasExpired(); }, milliseconds + 5000));
    }
};

void MenuTest::editorSurvivesALoss()
{
    Front front(1);
    QVERIFY(front.start());
    const QImage menu = front.picture();
    push(front);
    QImage settings, highlight, slider, reconnecting;
    QTRY_VERIFY((settings = front.picture()) != menu);
    turn(front, 3); // Display Brightness
    QTRY_VERIFY((highlight = front.picture()) != settings);
    push(front);
    QTRY_VERIFY((slider = front.picture()) != highlight);
    front.device().core().dropLink();
    QTRY_VERIFY((reconnecting = front.picture()) != slider);
    push(front);
    turn(front, 2);
    QCOMPARE(front.picture(), reconnecting);
    front.takeRequests();
    QVERIFY(front.device().core().restoreLink());
    QTRY_VERIFY(front.picture() == slider);
    QVERIFY(front.requests().contains("OPEN /SYS/CECU/LCD"));
    front.device().core().setProperty("/SYS/CECU/LCD.Brightness", "2"); // it follows the device again
    QTRY_VERIFY(front.picture() != slider);
    front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "true"); // and so does the lock, on that node
    QTRY_COMPARE(front.led(1, 39), 1);
    front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "false");
    QTRY_COMPARE(front.led(1, 39), 0);
    turn(front, 1);
    QTRY_COMPARE(front.device().core().property("/SYS/CECU/LCD.Brightness"), "3");
    push(front);
    const QImage list = front.picture();
    turn(front, 20); // Back
    front.picture();
    push(front);
    QVERIFY(list != menu);
    QTRY_VERIFY(front.picture() == menu);
}

void MenuTest::lockWarningLeavesUnderANotice()
{
    Front front(1);
    QVERIFY(front.start());
    const QImage menu = front.picture();
    front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "true");
    QTRY_COMPARE(front.led(1, 39), 1);
    turn(front, 1);
    QTRY_VERIFY(front.device().bed().lcd() != menu);
    const QImage warning = front.picture();
    front.device().core().dropLink();
    QTRY_VERIFY(front.picture() != warning);
    pass(3000); // the warning's own time
    QVERIFY(front.device().core().restoreLink());
    QTRY_VERIFY(front.picture() == menu);
}

void MenuTest::bootNoticeLeavesWithTheService()
{
    Front front(1);
    const QImage dark = front.device().bed().lcd();
    front.device().startProgram();
    QTRY_VERIFY_WITH_TIMEOUT(front.device().bed().lcd() != dark, 30000);
    const QImage booting = front.picture();
    QCOMPARE(front.device().powerOn(), QString());
    QTRY_VERIFY(front.picture() != booting); // the menu
}

void MenuTest::knobAlwaysLeadsBack_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U})
        QTest::addRow("walk %u", seed) << seed;
}

void MenuTest::knobAlwaysLeadsBack()
{
    QFETCH(const quint32, seed);
    QRandomGenerator random(seed);
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
        case 6: core.startUpgrade(200ms); break;
        case 7:
        case 8:
        case 9: push(front); break;
        case 10: turn(front, -random.bounded(4)); break;
        default: turn(front, random.bounded(5)); break;
        }
        pass(random.bounded(150)); // also in the middle of a slide
    }
    QVERIFY(core.isLinkUp() || core.restoreLink());
    core.setProperty("/SYS/CECU/LCD.ControlLock", "false");
    for (int level = 0; level < 24; ++level) {
        front.picture();
        turn(front, -30);
        if (front.picture() == menu)
            return;
        turn(front, 30); // to Back, where no slider or wheel is in hand
        front.picture();
        push(front); // leaves it, puts down what is in hand, or wakes the device
    }
    front.picture().save(QStringLiteral("menutest-%1.png").arg(QTest::currentDataTag()));
    QFAIL("the menu is not to be reached; what is on the LCD is saved beside the test");
}

QTEST_GUILESS_MAIN(MenuTest)
#include "menutest.moc"
