#include "testbedrig.h"

#include <QTest>

namespace {

HardwareFaults faultyI2c(HardwareFaults::I2c fault)
{
    HardwareFaults faults;
    faults.i2c = fault;
    return faults;
}

/// Seconds and microseconds of a printed event, in microseconds.
qint64 timeOf(const QString &line)
{
    const QStringList parts = line.section(u' ', 1, 1).split(u'.');
    return parts.value(0).toLongLong() * 1000000 + parts.value(1).toLongLong();
}

QStringList eventsOf(const QStringList &printed)
{
    QStringList events;
    for (const QString &line : printed) {
        if (line.startsWith(u"event "))
            events << line.section(u' ', 2);
    }
    return events;
}

} // namespace

/// The devices of a bed, seen by a program that lives in it.
class TestBedTest : public QObject
{
    Q_OBJECT
private slots:
    void eepromCarriesPartNumber_data();
    void eepromCarriesPartNumber();
    void eepromIsA24xxChip_data();
    void eepromIsA24xxChip();
    void processorIsNamed_data();
    void processorIsNamed();
    void alphaRequestIsReported();
    void missingDevicesCannotBeOpened_data();
    void missingDevicesCannotBeOpened();
    void keysArriveAsRecords_data();
    void keysArriveAsRecords();
    void knobRecordsCarryTheSpacing();
    void rawBytesPassUnchanged();
    void burstWaitsForASlowProgram();
    void floodIsBoundedAndEndsWithTheProgram();
    void keysAreLostWhileNobodyListens();
    void ledRecordsAreReassembled();
    void lcdShowsWhatWasPainted();
    void bedsDoNotMeet();
};

void TestBedTest::eepromCarriesPartNumber_data()
{
    using I2c = HardwareFaults::I2c;
    HardwareFaults blank;
    blank.eepromBlank = true;
    QTest::addColumn<HardwareFaults>("faults");
    QTest::addColumn<QString>("identified");
    QTest::addColumn<QString>("read");
    QTest::newRow("in order") << HardwareFaults{} << "identified 0 1234"
                              << "read 0 00001234";
    QTest::newRow("blank EEPROM") << blank << "identified 0 0"
                                  << "read 0 ........";
    QTest::newRow("no bus") << faultyI2c(I2c::Missing) << "identified -1 0"
                            << "read 3 ........";
    QTest::newRow("nobody acknowledges") << faultyI2c(I2c::Nack) << "identified 0 0"
                                         << "read 1 ........";
    QTest::newRow("bus hangs") << faultyI2c(I2c::Timeout) << "identified 0 0"
                               << "read 2 ........";
}

void TestBedTest::eepromCarriesPartNumber()
{
    QFETCH(HardwareFaults, faults);
    TestBedRig rig(faults, 1234);
    QCOMPARE(rig.bed.errorString(), QString());
    QVERIFY(rig.run({"identify", "read", "57:244:8"}));
    QTEST(rig.printed.value(0), "identified");
    QTEST(rig.printed.value(1), "read");
}

void TestBedTest::eepromIsA24xxChip_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("printed");
    QTest::newRow("a write wraps round in its page") << QStringList{"write", "254:abcd", "read", "57:254:3", "read",
        "57:128:2"} << QStringList{"wrote 0", "read 0 ab.", "read 0 cd"};
    QTest::newRow("a read crosses pages") << QStringList{"write", "126:ab", "write", "128:cd", "read", "57:126:4"}
                                          << QStringList{"wrote 0", "wrote 0", "read 0 abcd"};
    QTest::newRow("the counter stays where a read left it") << QStringList{"write", "0:abcdef", "read", "57:0:2",
        "next", "2", "next", "1"} << QStringList{"wrote 0", "read 0 ab", "next 1 cd", "next 1 e"};
    QTest::newRow("the last byte is followed by the first") << QStringList{"write", "65535:z", "write", "0:a", "read",
        "57:65535:2"} << QStringList{"wrote 0", "wrote 0", "read 0 za"};
    QTest::newRow("a write without data is acknowledged and sets the counter")
        << QStringList{"write", "10:x", "write", "10:", "next", "1"} << QStringList{"wrote 0", "wrote 0", "next 1 x"};
    QTest::newRow("nobody else is on the bus")
        << QStringList{"read", "50:0:1", "read", "56:0:1"} << QStringList{"read 1 .", "read 1 ."};
}

void TestBedTest::eepromIsA24xxChip()
{
    QFETCH(QStringList, arguments);
    TestBedRig rig;
    QVERIFY(rig.run(arguments));
    QTEST(rig.printed, "printed");
}

void TestBedTest::processorIsNamed_data()
{
    QTest::addColumn<bool>("other");
    QTest::addColumn<QString>("printed");
    QTest::newRow("the frame's own processor") << false << "supported";
    QTest::newRow("another processor") << true << "not supported";
}

void TestBedTest::processorIsNamed()
{
    HardwareFaults faults;
    QFETCH(bool, other);
    faults.otherProcessor = other;
    TestBedRig rig(faults);
    QVERIFY(rig.run({"soc"}));
    QTEST(rig.printed.value(0), "printed");
}

void TestBedTest::alphaRequestIsReported()
{
    TestBedRig rig;
    const QSignalSpy alpha(&rig.bed, &TestBed::globalAlphaSet);
    QVERIFY(rig.run({"alpha"}));
    QTRY_COMPARE(alpha.count(), 1);
    QCOMPARE(alpha.first(), (QVariantList{0, 0}));
    QCOMPARE(rig.printed, QStringList());
}

void TestBedTest::missingDevicesCannotBeOpened_data()
{
    QTest::addColumn<int>("missing");
    QTest::newRow("encoder") << 0;
    QTest::newRow("first panel") << 2;
    QTest::newRow("second panel") << 3;
    QTest::newRow("third panel") << 4;
    QTest::newRow("none") << -1;
}

void TestBedTest::missingDevicesCannotBeOpened()
{
    QFETCH(int, missing);
    HardwareFaults faults;
    faults.encoderMissing = missing == 0;
    for (int panel = 0; panel < 3; ++panel)
        faults.panelMissing[panel] = missing == panel + 2;
    TestBedRig rig(faults);
    QStringList arguments, expected;
    for (int device = 0; device <= 4; ++device) {
        const QString path = QString("/dev/input/event%1").arg(device);
        arguments << "open" << path;
        expected << (device == missing ? "cannot open " : "opened ") + path;
    }
    rig.bed.setButton(1, 1, true); // goes nowhere, whether there is a panel or not
    rig.bed.turnKnob(1, std::chrono::milliseconds(1));
    QVERIFY(rig.run(arguments));
    QCOMPARE(rig.printed, expected);
}

void TestBedTest::keysArriveAsRecords_data()
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

void TestBedTest::keysArriveAsRecords()
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
    QCOMPARE(eventsOf(rig.printed),
        (QStringList{QString("1 %1 1").arg(code), "0 0 0", QString("1 %1 0").arg(code), "0 0 0"}));
    QCOMPARE(rig.printed.last(), "rest 0");
}

void TestBedTest::knobRecordsCarryTheSpacing()
{
    using namespace std::chrono_literals;
    TestBedRig rig;
    rig.start({"events", "/dev/input/event0:16:10"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event0"));
    rig.bed.turnKnob(2, 30ms);
    rig.bed.turnKnob(-2, 1200ms);
    rig.bed.turnKnob(1, 60ms);
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(eventsOf(rig.printed),
        (QStringList{"2 0 1", "0 0 0", "2 0 1", "0 0 0", "2 0 -1", "0 0 0", "2 0 -1", "0 0 0", "2 0 1", "0 0 0"}));
    QList<qint64> steps;
    for (int detent = 1; detent < 5; ++detent) // the printed lines begin with that of the opening
        steps << timeOf(rig.printed.value(2 * detent + 2)) - timeOf(rig.printed.value(2 * detent));
    QCOMPARE(steps, (QList<qint64>{30000, 1200000, 1200000, 60000}));
}

void TestBedTest::rawBytesPassUnchanged()
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

void TestBedTest::burstWaitsForASlowProgram()
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
    QCOMPARE(eventsOf(rig.printed), expected);
}

void TestBedTest::floodIsBoundedAndEndsWithTheProgram()
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
    QCOMPARE(eventsOf(rig.printed), (QStringList{"1 705 1", "0 0 0"}));
}

void TestBedTest::keysAreLostWhileNobodyListens()
{
    TestBedRig rig;
    rig.bed.setButton(2, 1, true);
    rig.start({"events", "/dev/input/event3:16:2", "open", "/dev/input/event3", "stay"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event3"));
    rig.bed.setButton(2, 2, true);
    QVERIFY(rig.waitUntilPrinted("staying"));
    QCOMPARE(eventsOf(rig.printed), (QStringList{"1 705 1", "0 0 0"}));

    rig.bed.setButton(2, 3, true); // not read before the program ends
    rig.runner.stop();
    rig.bed.setButton(2, 4, true);
    rig.printed.clear();
    rig.start({"events", "/dev/input/event3:16:2"});
    QVERIFY(rig.waitUntilPrinted("opened /dev/input/event3"));
    rig.bed.setButton(2, 5, true);
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(eventsOf(rig.printed), (QStringList{"1 708 1", "0 0 0"}));
}

void TestBedTest::ledRecordsAreReassembled()
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

void TestBedTest::lcdShowsWhatWasPainted()
{
    TestBedRig rig;
    QImage expected(320, 240, QImage::Format_RGB32);
    expected.fill(Qt::black);
    QCOMPARE(rig.bed.lcd(), expected);
    QVERIFY(rig.run({"paint", "2d96e9"}));
    expected.fill(QColor(0x2d, 0x96, 0xe9));
    QCOMPARE(rig.bed.lcd(), expected);
    QCOMPARE(qAlpha(rig.bed.lcd().pixel(319, 239)), 255);
}

void TestBedTest::bedsDoNotMeet()
{
    TestBedRig one({}, 47110001), other({}, 58220003);
    const QSignalSpy alpha(&other.bed, &TestBed::globalAlphaSet);
    one.start({"events", "/dev/input/event2:16:2", "leds", "/dev/input/event2:1:1", "identify"});
    other.start({"events", "/dev/input/event2:16:2", "paint", "ff0000", "identify"});
    QVERIFY(one.waitUntilPrinted("opened /dev/input/event2"));
    QVERIFY(other.waitUntilPrinted("opened /dev/input/event2"));
    one.bed.setButton(1, 1, true);
    other.bed.setButton(1, 2, true);
    QVERIFY(one.waitUntilEnded());
    QVERIFY(other.waitUntilEnded());
    QCOMPARE(eventsOf(one.printed), (QStringList{"1 704 1", "0 0 0"}));
    QCOMPARE(eventsOf(other.printed), (QStringList{"1 705 1", "0 0 0"}));
    QCOMPARE(one.printed.last(), "identified 0 47110001");
    QCOMPARE(other.printed.last(), "identified 0 58220003");
    QTRY_COMPARE(one.bed.led(1, 1), 1);
    QCOMPARE(other.bed.led(1, 1), 0);
    QCOMPARE(one.bed.lcd().pixel(0, 0), qRgb(0, 0, 0));
    QCOMPARE(other.bed.lcd().pixel(0, 0), qRgb(255, 0, 0));
    QVERIFY(one.run({"alpha"}) && other.run({"alpha"}));
    QTRY_COMPARE(alpha.count(), 1);
}

QTEST_GUILESS_MAIN(TestBedTest)
#include "testbedtest.moc"
