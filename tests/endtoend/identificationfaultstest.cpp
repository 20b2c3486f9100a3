#include "tests/endtoend/front.h"

#include <QRegularExpression>
#include <QTest>

using I2c = HardwareFaults::I2c;

struct Case
{
    const char *name;
    HardwareFaults faults;
    QStringList messages;
    int alphaRequests;
    std::array<int, 2> lit, pressed; ///< Panel and button: an LED that autotake lights, and a source.
    int source;                      ///< What that button stands for.
};

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
    const QString known = "Front layout initialized. (4)";
    const QString unknown = "Failed to init front layout.";
    const QString weird = "Some weird variant was detected. (00000000)";
    const QStringList thrice{weird, weird, weird, unknown};
    const QString encoder = "Cannot open /dev/input/event0";
    const QString panel1 = "Cannot open /dev/input/event2";
    const QString panel2 = "Cannot open /dev/input/event3";
    const QString panel3 = "Cannot open /dev/input/event4";

    // The frame is a 24 x 24. On the smallest front, 1.17 is destination 1 and 1.24 the last one.
    const Case cases[] = {
        {"nothing is wrong", {}, {known}, 1, {2, 17}, {1, 18}, 10},
        {"no I2C bus", {.i2c = I2c::Missing}, {unknown}, 1, {1, 17}, {1, 3}, 3},
        {"the EEPROM does not acknowledge", {.i2c = I2c::Nack}, thrice, 1, {1, 17}, {1, 8}, 8},
        {"the EEPROM does not answer", {.i2c = I2c::Timeout}, thrice, 1, {1, 17}, {1, 3}, 3},
        {"the EEPROM was never written", {.eepromBlank = true}, thrice, 1, {1, 17}, {1, 3}, 3},
        {"another processor, whose overlay is let alone", {.otherProcessor = true}, {known}, 0, {2, 17}, {1, 3}, 3},
        {"no panel 1", {.panelMissing = {true, false, false}}, {panel1, known}, 1, {2, 17}, {2, 3}, 19},
        {"no panel 2", {.panelMissing = {false, true, false}}, {panel2, known}, 1, {1, 33}, {1, 18}, 10},
        {"no panel 3", {.panelMissing = {false, false, true}}, {panel3, known}, 1, {2, 17}, {2, 8}, 24},
        {"no encoder", {.encoderMissing = true}, {encoder, known}, 1, {2, 17}, {1, 3}, 3},
        {"panel 1 and nothing else", {I2c::Missing, false, true, true, {false, true, true}},
            {encoder, panel2, panel3, unknown}, 0, {1, 17}, {1, 3}, 3},
    };
    QTest::addColumn<Case>("is");
    for (const Case &is : cases)
        QTest::newRow(is.name) << is;
}

void IdentificationFaultsTest::worksOn()
{
    QFETCH(Case, is);

    Front front(8, is.faults);
    QList<QPair<int, int>> alphas;
    connect(&front.device().bed(), &TestBed::globalAlphaSet, this, [&alphas](int enable, int alpha) {
        alphas.append({enable, alpha});
    });
    QVERIFY(front.start());
    static const QRegularExpression startUp("^(Cannot open|Failed|Front layout|Some weird|.*[Ff]ramebuffer)");
    static const QRegularExpression reason("(/dev/\\S+): \\S.*"); // why it is not there depends on the machine
    QCOMPARE(front.messages().filter(startUp).replaceInStrings(reason, "\\1"), is.messages);
    QCOMPARE(alphas, (QList<QPair<int, int>>(is.alphaRequests, {0, 0})));

    // In autotake the press of a source is enough, on whatever panel.
    CoreService &core = front.device().core();
    QVERIFY(core.setProperty("/SYS/CECU/LCD.AutoTake", "true"));
    QTRY_COMPARE(front.led(is.lit[0], is.lit[1]), 1);
    front.tap(is.pressed[0], is.pressed[1]);
    QTRY_COMPARE(front.requests(), QStringList{QString("CALL /MEDIA/XP/VIDEO:connect(I%1:-O1;)").arg(is.source)});
    const QString routing = *core.property("/MEDIA/XP/VIDEO.DestinationConnectionStatus");
    QCOMPARE(routing.section(';', 0, 0), QString("I%1").arg(is.source));
    QVERIFY(!front.device().programEnd());
}

QTEST_GUILESS_MAIN(IdentificationFaultsTest)
#include "identificationfaultstest.moc"
