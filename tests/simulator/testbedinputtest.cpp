#include "testbedrig.h"

#include <QAbstractEventDispatcher>
#include <QTest>

namespace {

/// Seconds and microseconds of a printed event, in microseconds.
qint64 timeOf(const QString &line)
{
    const QStringList parts = line.section(u' ', 1, 1).split(u'.');
    return parts.value(0).toLongLong() * 1000000 + parts.value(1).toLongLong();
}

/// Nothing is left for the event loop to do.
bool isIdle() { return !QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents); }

} // namespace

/// The input devices of a bed and their LEDs, seen by a program that lives in it.
class TestBedInputTest : public QObject
{
    Q_OBJECT
private slots:
    void keysArriveAsRecords_data();
    void keysArriveAsRecords();
    void knobRecordsCarryTheSpacing();
    void rawBytesPassUnchanged();
    void burstWaitsForASlowProgram();
    void floodIsBoundedAndEndsWithTheProgram();
    void keysAreLostWhileNobodyListens();
    void ledRecordsAreReported();
    void halvedLedRecordIsReassembled();
    void bedWithoutProgramIsQuiet();
};

void TestBedInputTest::keysArriveAsRecords_data()
{
    QTest::addColumn<int>("device"); // 0 is the keyboard
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("code");
    QTest::newRow("first button of the first panel") << 1 << 1 << "/dev/input/event2:16:4" << 704;
    QTest::newRow("last button of the second panel") << 2 << 40 << "/dev/input/event3:16:4" << 743;
    QTest::newRow("a button of the third panel") << 3 << 17 << "/dev/input/event4:16:4" << 720;
    QTest::newRow("Return on the keyboard") << 0 << 28 << "/dev/input/event1:24:4" << 28;
}

void TestBedInputTest::keysArriveAsRecords()
{
    QFETCH(int, device);
    QFETCH(int, key);
    QFETCH(QString, arguments);
    QFETCH(int, code);
    TestBedRig rig;
    rig.start({"events", arguments});
    QVERIFY(rig.waitUntilPrinted("opened " + arguments.section(u':', 0, 0)));
    for (const bool pressed : {true, false}) {
        if (device == 0)
            rig.bed.setKeyboardKey(key, pressed);
        else
            rig.bed.setButton(device, key, pressed);
    }
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.events(), (QStringList{QString("1 %1 1").arg(code), "0 0 0", QString("1 %1 0").arg(code), "0 0 0"}));
    QCOMPARE(rig.printed.last(), "rest 0");
}

void TestBedInputTest::knobRecordsCarryTheSpacing()
{
    using namespace std::chrono_literals;
    TestBedRig rig;
    rig.start({"events", "/dev/input/event0:16:10"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event0"));
    rig.bed.turnKnob(2, 30ms);
    rig.bed.turnKnob(-2, 1200ms);
    rig.bed.turnKnob(1, 60ms);
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.events(),
        (QStringList{"2 0 1", "0 0 0", "2 0 1", "0 0 0", "2 0 -1", "0 0 0", "2 0 -1", "0 0 0", "2 0 1", "0 0 0"}));
    QList<qint64> steps;
    for (int detent = 1; detent < 5; ++detent) // the printed lines begin with that of the opening
        steps << timeOf(rig.printed.value(2 * detent + 2)) - timeOf(rig.printed.value(2 * detent));
    QCOMPARE(steps, (QList<qint64>{30000, 1200000, 1200000, 60000}));
}

void TestBedInputTest::rawBytesPassUnchanged()
{
    // every byte that a terminal could take for something else: interrupt, end of file, flow control, line ends, DEL
    const QByteArray bytes = QByteArray::fromHex("03041113"
                                                 "0a0d0000"
                                                 "1a1c"
                                                 "7f15"
                                                 "16170f00");
    TestBedRig rig;
    rig.start({"events", "/dev/input/event3:16:1", "events", "/dev/input/event0:16:1"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event3"));
    rig.bed.deliverRaw(2, bytes.first(10));
    rig.bed.deliverRaw(2, bytes.mid(10));
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event0"));
    rig.bed.deliverRaw(0, bytes + "tail");
    QVERIFY(rig.waitUntilEnded());
    const QString event = QString("event %1.%2 %3 %4 %5")
                              .arg(0x13110403)
                              .arg(0x0d0a, 6, 10, QChar(u'0'))
                              .arg(0x1c1a)
                              .arg(0x157f)
                              .arg(0x000f1716);
    QCOMPARE(rig.printed,
        (QStringList{"opened /dev/input/event3", event, "rest 0", "opened /dev/input/event0", event, "rest 4"}));
}

void TestBedInputTest::burstWaitsForASlowProgram()
{
    TestBedRig rig;
    rig.start({"events", "/dev/input/event2:16:3600"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event2"));
    QStringList expected;
    for (int i = 0; i < 1800; ++i) { // more than the kernel keeps for a terminal
        rig.bed.setButton(1, 1 + i % 40, i % 3 == 0);
        expected << QString("1 %1 %2").arg(704 + i % 40).arg(i % 3 == 0) << "0 0 0";
    }
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.events(), expected);
}

void TestBedInputTest::floodIsBoundedAndEndsWithTheProgram()
{
    TestBedRig rig;
    rig.start({"open", "/dev/input/event2", "stay"});
    QVERIFY(rig.waitUntilPrinted("staying"));
    QTest::ignoreMessage(QtWarningMsg, "The program does not read its input device: 65504 bytes are lost");
    rig.bed.setButton(1, 1, true);
    rig.bed.deliverRaw(1, QByteArray(65536, '\0'));
    rig.bed.deliverRaw(1, QByteArray(65504, '\0'));
    rig.runner.stop();
    rig.bed.setButton(1, 3, true);

    rig.printed.clear();
    rig.start({"events", "/dev/input/event2:16:2"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event2"));
    rig.bed.setButton(1, 2, true);
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.events(), (QStringList{"1 705 1", "0 0 0"}));
}

void TestBedInputTest::keysAreLostWhileNobodyListens()
{
    TestBedRig rig;
    rig.bed.setButton(2, 1, true);
    rig.start({"events", "/dev/input/event3:16:2", "open", "/dev/input/event3", "stay"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event3"));
    rig.bed.setButton(2, 2, true);
    QVERIFY(rig.waitUntilPrinted("staying"));
    QCOMPARE(rig.events(), (QStringList{"1 705 1", "0 0 0"}));

    rig.bed.setButton(2, 3, true); // not read before the program ends
    rig.runner.stop();
    rig.bed.setButton(2, 4, true);
    rig.printed.clear();
    rig.start({"events", "/dev/input/event3:16:2"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event3"));
    rig.bed.setButton(2, 5, true);
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.events(), (QStringList{"1 708 1", "0 0 0"}));
}

void TestBedInputTest::ledRecordsAreReported()
{
    TestBedRig rig;
    const QSignalSpy written(&rig.bed, &TestBed::ledWritten);
    QCOMPARE(rig.bed.led(3, 2), 0);
    QVERIFY(rig.run({"leds", "/dev/input/event4:0:42", "leds", "/dev/input/event3:5:1"}));
    QTRY_COMPARE(written.count(), 43);
    QList<QVariantList> expected;
    for (int code = 0; code < 42; ++code)
        expected << QVariantList{3, code, code % 3};
    QCOMPARE(QList<QVariantList>(written.mid(0, 42)), expected);
    QCOMPARE(written.last(), (QVariantList{2, 5, 2}));
    QCOMPARE(rig.bed.led(3, 1), 1);
    QCOMPARE(rig.bed.led(3, 40), 1);
    QCOMPARE(rig.bed.led(2, 5), 2);
    QCOMPARE(rig.bed.led(1, 5), 0);

    // the panel keeps its LEDs lit when the program goes, and hears the next one
    QVERIFY(rig.run({"leds", "/dev/input/event4:2:1"}));
    QTRY_COMPARE(written.count(), 44);
    QCOMPARE(rig.bed.led(3, 1), 1);
}

void TestBedInputTest::halvedLedRecordIsReassembled()
{
    TestBedRig rig;
    const QSignalSpy written(&rig.bed, &TestBed::ledWritten);
    rig.start({"halves", "/dev/input/event3:22"});
    QVERIFY(rig.waitUntilPrinted("half"));
    QTRY_VERIFY(isIdle()); // the first half has been read
    rig.bed.setButton(2, 1, true);
    QTRY_COMPARE(written.count(), 1);
    QCOMPARE(written.first(), (QVariantList{2, 22, 1}));
}

void TestBedInputTest::bedWithoutProgramIsQuiet()
{
    TestBedRig rig;
    const QSignalSpy written(&rig.bed, &TestBed::ledWritten);
    QVERIFY(rig.run({"leds", "/dev/input/event2:1:1", "leds", "/dev/input/event4:1:1"}));
    QTRY_COMPARE(written.count(), 2);
    // a terminal without a program is in hang-up all the time: the event loop must not turn for it
    QTRY_VERIFY(isIdle());
}

QTEST_GUILESS_MAIN(TestBedInputTest)
#include "testbedinputtest.moc"
