#include "tests/endtoend/front.h"

#include <QTest>

/// Buttons pressed on the device switch the matrix, and the LEDs tell.
class ButtonsTest : public QObject
{
    Q_OBJECT
private slots:
    void takesARoute_data();
    void takesARoute();
    void locksAndUnlocks();
    void autotakeFollowsTheDevice();
    void lockedPanelOnlyUnlocks();
    void standbyWakesUpOnReturn();
    void upgradeShowsItsProgress();
    void lcdShowsTheStart();
};

void ButtonsTest::takesARoute_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("source"); // panel.button
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<int>("take");
    QTest::addColumn<QString>("route");

    QTest::newRow("8 x 8") << 1 << "1.3"
                           << "1.17"
                           << "1.24" << 33 << "I3:-O1;I3:-O8;";
    QTest::newRow("16 x 16") << 4 << "1.16"
                             << "1.17"
                             << "1.31" << 33 << "I16:-O1;I16:-O15;";
    QTest::newRow("16 x 20 with audio") << 20 << "1.17"
                                        << "2.1"
                                        << "2.28" << 36 << "I9:-O1;I9:-O20;";
    QTest::newRow("24 x 24") << 8 << "2.1"
                             << "2.17"
                             << "3.24" << 33 << "I17:-O1;I17:-O24;";
    QTest::newRow("32 x 40 with audio") << 21 << "1.32"
                                        << "2.1"
                                        << "3.8" << 33 << "I32:-O1;I32:-O40;";
    QTest::newRow("48 x 48") << 17 << "2.1"
                             << "2.17"
                             << "3.32" << 33 << "I33:-O1;I33:-O48;";
}

void ButtonsTest::takesARoute()
{
    QFETCH(int, row);
    QFETCH(QString, source);
    QFETCH(QString, first);
    QFETCH(QString, last);
    QFETCH(int, take);
    QFETCH(QString, route);

    Front front(row);
    QVERIFY(front.start());
    const auto tap = [&front](const QString &button) {
        front.tap(button.section('.', 0, 0).toInt(), button.section('.', 1).toInt());
    };
    tap(source);
    tap(first);
    tap(last);
    QTRY_VERIFY(front.leds().contains(last + "=2"));
    QVERIFY(front.leds().contains(source + "=1"));
    QVERIFY(front.leds().contains(first + "=2"));
    front.tap(1, take);
    QTRY_COMPARE(front.requests(), QStringList{"CALL /MEDIA/XP/VIDEO:connect(" + route + ")"});
    QTRY_COMPARE(front.led(1, take), 0); // lit for a moment
    QVERIFY(front.leds().contains(QString("1.%1=1").arg(take)));

    front.takeLeds();
    tap(last); // what feeds it now?
    QTRY_VERIFY(front.leds().contains(source + "=1"));
    tap(last);
    front.tap(1, take); // only leaves the selection
    QTRY_VERIFY(front.leds().count(source + "=0") > 0);
    QCOMPARE(front.requests().size(), 1);
}

void ButtonsTest::locksAndUnlocks()
{
    Front front(1);
    QVERIFY(front.start());
    front.tap(1, 40); // destination lock
    front.tap(1, 20); // destination 4
    QTRY_COMPARE(front.led(1, 20), 2);
    QCOMPARE(front.led(1, 40), 2);
    front.tap(1, 33);
    QTRY_COMPARE(front.requests(), QStringList{"CALL /MEDIA/XP/VIDEO:lockDestination(O4;)"});
    QTRY_COMPARE(front.led(1, 33), 0);

    front.takeLeds();
    front.tap(1, 1); // source 1 cannot take destination 4 any more
    front.tap(1, 20);
    QTRY_VERIFY(front.leds().contains("1.40=1"));
    QTRY_COMPARE(front.led(1, 40), 0);
    QCOMPARE(front.led(1, 20), 0);

    front.tap(1, 40);
    QTRY_COMPARE(front.led(1, 20), 1);
    front.tap(1, 20);
    front.tap(1, 33);
    QTRY_COMPARE(front.requests().last(), "CALL /MEDIA/XP/VIDEO:unlockDestination(O4;)");
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
    front.tap(1, 3);
    front.tap(2, 17);
    front.tap(1, 33);
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
    front.device().bed().turnKnob(1, std::chrono::milliseconds(100));
    constexpr int returnKey = 28;
    front.device().bed().setKeyboardKey(returnKey, true);
    front.device().bed().setKeyboardKey(returnKey, false);
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

void ButtonsTest::lcdShowsTheStart()
{
    Front front(1);
    QVERIFY(front.start());
    const QImage lcd = front.device().bed().lcd();
    int bright = 0;
    for (int y = 0; y < lcd.height(); ++y) {
        for (int x = 0; x < lcd.width(); ++x)
            bright += qGray(lcd.pixel(x, y)) > 200;
    }
    QCOMPARE(lcd.size(), QSize(320, 240));
    QVERIFY2(bright > 500 && bright < 10000, qPrintable(QString::number(bright))); // white text on black
}

QTEST_GUILESS_MAIN(ButtonsTest)
#include "buttonstest.moc"
