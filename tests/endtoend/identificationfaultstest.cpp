#include "tests/endtoend/front.h"

#include <QRegularExpression>
#include <QTest>

using I2c = HardwareFaults::I2c;

/// A frame whose hardware is not all there says so and goes on working with what is.
class IdentificationFaultsTest : public QObject
{
    Q_OBJECT
private slots:
    void worksOn_data();
    void worksOn();
};

void IdentificationFaultsTest::worksOn_data()
{
    QTest::addColumn<HardwareFaults>("faults");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<int>("alphaRequests");
    QTest::addColumn<QString>("lit"); // panel.button of an LED that autotake lights
    QTest::addColumn<QString>("pressed");
    QTest::addColumn<int>("source"); // what that button stands for

    const QString known = "Front layout initialized. (4)";
    const QString unknown = "Failed to init front layout.";
    const QString weird = "Some weird variant was detected. (00000000)";
    const QStringList thrice{weird, weird, weird, unknown};
    const QString encoder = "Cannot open /dev/input/event0";
    const QString panel1 = "Cannot open /dev/input/event2";
    const QString panel2 = "Cannot open /dev/input/event3";
    const QString panel3 = "Cannot open /dev/input/event4";

    // The frame is a 24 x 24. On the smallest front, 1.17 is destination 1 and 1.24 the last one.
    QTest::newRow("nothing is wrong") << HardwareFaults{} << QStringList{known} << 1 << "2.17"
                                      << "1.18" << 10;
    QTest::newRow("no I2C bus") << HardwareFaults{.i2c = I2c::Missing} << QStringList{unknown} << 1 << "1.17"
                                << "1.3" << 3;
    QTest::newRow("the EEPROM does not acknowledge") << HardwareFaults{.i2c = I2c::Nack} << thrice << 1 << "1.17"
                                                     << "1.8" << 8;
    QTest::newRow("the EEPROM does not answer") << HardwareFaults{.i2c = I2c::Timeout} << thrice << 1 << "1.17"
                                                << "1.3" << 3;
    QTest::newRow("the EEPROM was never written") << HardwareFaults{.eepromBlank = true} << thrice << 1 << "1.17"
                                                  << "1.3" << 3;
    QTest::newRow("another processor, whose overlay is let alone")
        << HardwareFaults{.otherProcessor = true} << QStringList{known} << 0 << "2.17"
        << "1.3" << 3;
    QTest::newRow("no panel 1") << HardwareFaults{.panelMissing = {true, false, false}} << QStringList{panel1, known}
                                << 1 << "2.17"
                                << "2.3" << 19;
    QTest::newRow("no panel 2") << HardwareFaults{.panelMissing = {false, true, false}} << QStringList{panel2, known}
                                << 1 << "1.33"
                                << "1.18" << 10;
    QTest::newRow("no panel 3") << HardwareFaults{.panelMissing = {false, false, true}} << QStringList{panel3, known}
                                << 1 << "2.17"
                                << "2.8" << 24;
    QTest::newRow("no encoder") << HardwareFaults{.encoderMissing = true} << QStringList{encoder, known} << 1 << "2.17"
                                << "1.3" << 3;
    QTest::newRow("panel 1 and nothing else") << HardwareFaults{I2c::Missing, false, true, true, {false, true, true}}
                                              << QStringList{encoder, panel2, panel3, unknown} << 0 << "1.17"
                                              << "1.3" << 3;
}

void IdentificationFaultsTest::worksOn()
{
    QFETCH(HardwareFaults, faults);
    QFETCH(QStringList, messages);
    QFETCH(int, alphaRequests);
    QFETCH(QString, lit);
    QFETCH(QString, pressed);
    QFETCH(int, source);

    Front front(8, faults);
    QList<QPair<int, int>> alphas;
    connect(&front.device().bed(), &TestBed::globalAlphaSet, this, [&alphas](int enable, int alpha) {
        alphas.append({enable, alpha});
    });
    QVERIFY(front.start());
    static const QRegularExpression startUp("^(Cannot open|Failed|Front layout|Some weird|.*[Ff]ramebuffer)");
    static const QRegularExpression reason("(/dev/\\S+): \\S.*"); // why it is not there depends on the machine
    QCOMPARE(front.messages().filter(startUp).replaceInStrings(reason, "\\1"), messages);
    QCOMPARE(alphas, (QList<QPair<int, int>>(alphaRequests, {0, 0})));

    // In autotake the press of a source is enough, on whatever panel.
    CoreService &core = front.device().core();
    QVERIFY(core.setProperty("/SYS/CECU/LCD.AutoTake", "true"));
    QTRY_COMPARE(front.led(lit.section('.', 0, 0).toInt(), lit.section('.', 1).toInt()), 1);
    front.tap(pressed.section('.', 0, 0).toInt(), pressed.section('.', 1).toInt());
    QTRY_COMPARE(front.requests(), QStringList{QString("CALL /MEDIA/XP/VIDEO:connect(I%1:-O1;)").arg(source)});
    const QString routing = *core.property("/MEDIA/XP/VIDEO.DestinationConnectionStatus");
    QCOMPARE(routing.section(';', 0, 0), QString("I%1").arg(source));
    QVERIFY(!front.device().programEnd());
}

QTEST_GUILESS_MAIN(IdentificationFaultsTest)
#include "identificationfaultstest.moc"
