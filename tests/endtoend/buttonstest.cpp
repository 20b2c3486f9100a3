#include "tests/endtoend/front.h"

#include <QTest>

/// Buttons pressed on the device switch the matrix, and the LEDs tell.
class ButtonsTest : public QObject
{
    Q_OBJECT
private slots:
    void takesARouteAndLocks();
    void autotakeFollowsTheDevice();
    void lockedPanelOnlyUnlocks();
    void standbyWakesUpOnReturn();
    void upgradeShowsItsProgress();
};

void ButtonsTest::takesARouteAndLocks()
{
    Front front(1);
    QVERIFY(front.start());
    const auto tap = [&front](std::initializer_list<int> buttons) {
        front.takeRequests();
        for (const int button : buttons)
            front.tap(1, button);
    };
    tap({3, 17, 24, 33}); // source 3, destinations 1 and 8, Take
    QTRY_COMPARE(front.requests(), QStringList{"CALL /MEDIA/XP/VIDEO:connect(I3:-O1;I3:-O8;)"});
    QTRY_COMPARE(front.led(1, 33), 0); // lit for a moment
    for (const char *led : {"1.3=1", "1.17=2", "1.24=2", "1.33=1"})
        QVERIFY2(front.leds().contains(led), led);
    tap({40, 20, 33}); // destination lock, destination 4, Take
    QTRY_COMPARE(front.requests(), QStringList{"CALL /MEDIA/XP/VIDEO:lockDestination(O4;)"});
    QTRY_COMPARE(front.led(1, 33), 0);
    QVERIFY(front.leds().contains("1.20=2") && front.leds().contains("1.40=2"));
    tap({40});
    QTRY_COMPARE(front.led(1, 20), 1);
    tap({20, 33});
    QTRY_COMPARE(front.requests(), QStringList{"CALL /MEDIA/XP/VIDEO:unlockDestination(O4;)"});
}

void ButtonsTest::autotakeFollowsTheDevice()
{
    Front front(1);
    QVERIFY(front.start());
    front.hold(1, 33, true);
    QTRY_COMPARE(front.requests(), QStringList{"SET /SYS/CECU/LCD.AutoTake=1"}); // after a second and a half
    front.hold(1, 33, false);
    QTRY_COMPARE(front.led(1, 33), 1);
    QTRY_COMPARE(front.led(1, 17), 1); // destination 1 is selected
    front.tap(1, 5);
    QTRY_COMPARE(front.requests().last(), "CALL /MEDIA/XP/VIDEO:connect(I5:-O1;)");
    QTRY_COMPARE(front.led(1, 5), 1);                                              // when the device has switched
    QVERIFY(front.device().core().setProperty("/SYS/CECU/LCD.AutoTake", "false")); // switched off elsewhere
    QTRY_COMPARE(front.led(1, 33), 0);
    QCOMPARE(front.led(1, 5), 0);
}

void ButtonsTest::lockedPanelOnlyUnlocks()
{
    Front front(17);
    QVERIFY(front.start());
    QVERIFY(front.device().core().setProperty("/SYS/CECU/LCD.ControlLock", "true"));
    QTRY_COMPARE(front.led(1, 39), 1);
    front.takeLeds();
    for (const int button : {3, 17, 33})
        front.tap(1, button);
    front.hold(1, 39, true);
    QTRY_COMPARE(front.requests(), QStringList{"SET /SYS/CECU/LCD.ControlLock=0"});
    front.hold(1, 39, false);
    QTRY_COMPARE(front.led(1, 39), 0);
    QCOMPARE(front.leds(), QStringList{"1.39=0"}); // nothing else has reached the buttons' logic
}

void ButtonsTest::standbyWakesUpOnReturn()
{
    Front front(1);
    QVERIFY(front.start());
    QCOMPARE(front.device().core().callMethod("/MANAGEMENT/POWER:standby", QString()), QString());
    QTRY_VERIFY(front.leds().contains("1.33=0"));
    front.takeLeds();
    front.tap(1, 3);
    front.turn(1);
    front.tapKey(TestBed::pushKey);
    QTRY_COMPARE(front.requests(), QStringList{"CALL /MANAGEMENT/POWER:wakeUp()"}); // once, and nothing before it
    QTRY_VERIFY(front.leds().contains("1.33=0"));
    front.tap(1, 3);
    QTRY_COMPARE(front.led(1, 3), 1);
    QCOMPARE(front.requests().size(), 1);
}

void ButtonsTest::upgradeShowsItsProgress()
{
    Front front(1);
    QVERIFY(front.start());
    front.device().core().startUpgrade(std::chrono::milliseconds(1500));
    QTRY_VERIFY(front.leds().contains("1.1=2")); // the bar begins at the first source
    front.tap(1, 3);                             // swallowed
    QTRY_COMPARE(front.led(1, 24), 1);           // beyond the last destination, all are lit
    QTRY_COMPARE(front.led(1, 1), 0);
    front.tap(1, 3);
    QTRY_COMPARE(front.led(1, 3), 1);
}

QTEST_GUILESS_MAIN(ButtonsTest)
#include "buttonstest.moc"
