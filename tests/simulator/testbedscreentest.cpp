#include "testbedrig.h"

#include <QTest>

#include <linux/input-event-codes.h>

/// Qt's own screen and keyboard in a bed.
class TestBedScreenTest : public QObject
{
    Q_OBJECT
private slots:
    void widgetIsShownAndHearsTheKeyboard();
};

void TestBedScreenTest::widgetIsShownAndHearsTheKeyboard()
{
    TestBedRig rig;
    QImage green(320, 240, QImage::Format_RGB32), blue = green;
    green.fill(QColor(0x44, 0xda, 0x6e));
    blue.fill(QColor(0x2d, 0x96, 0xe9));
    rig.start({}, "bedwidget");
    QTRY_COMPARE_WITH_TIMEOUT(rig.bed.lcd(), green, 30000);
    rig.bed.setKeyboardKey(KEY_ENTER, true);
    rig.bed.setKeyboardKey(KEY_ENTER, false);
    QTRY_COMPARE(rig.bed.lcd(), blue);
    rig.bed.setKeyboardKey(KEY_ESC, true);
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.ended.first(), (QVariantList{0, false}));
    QCOMPARE(rig.printed, QStringList()); // Qt has nothing to complain about its devices
}

QTEST_GUILESS_MAIN(TestBedScreenTest)
#include "testbedscreentest.moc"
