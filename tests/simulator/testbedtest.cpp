#include "testbedrig.h"

#include <QTest>

namespace {

HardwareFaults faultyI2c(HardwareFaults::I2c fault)
{
    HardwareFaults faults;
    faults.i2c = fault;
    return faults;
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
    QCOMPARE(one.events(), (QStringList{"1 704 1", "0 0 0"}));
    QCOMPARE(other.events(), (QStringList{"1 705 1", "0 0 0"}));
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
