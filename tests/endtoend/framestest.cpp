#include "tests/endtoend/front.h"

#include <QRegularExpression>
#include <QTest>

#include <array>

/// Every frame model gets its own front; one whose hardware is not all there says so and works with what is.
class FramesTest : public QObject
{
    Q_OBJECT
private slots:
    void identifiesAndSwitches_data();
    void identifiesAndSwitches();
    void worksOn_data();
    void worksOn();
};

namespace {

using I2c = HardwareFaults::I2c;

struct Frame
{
    int partNumber, layoutId;
};

// clang-format off
constexpr std::array<Frame, 33> frames{{ // the first is row 1
    {47110001, 1}, {47110002, 0}, {47110003, 1}, {47110004, 2}, {47110005, 2}, {47110006, 0}, {47110007, 0},
    {47110008, 4}, {47110009, 4}, {47110010, 0}, {47110011, 1}, {47110012, 0}, {47110013, 0}, {47110014, 0},
    {47110015, 1}, {47110016, 4}, {47110017, 6}, {47110018, 1}, {47110019, 4}, {47110020, 3}, {47110021, 5},
    {47110022, 5}, {47110023, 6}, {47110024, 1}, {47110025, 4}, {47110026, 6}, {47110027, 0}, {47110028, 6},
    {47110029, 1}, {47110030, 2}, {58220001, 0}, {58220002, 4}, {58220003, 1},
}};

/// Where a source and the last destination, which another one feeds, sit on each front; Take is on panel 1.
struct Buttons
{
    int source, sourcePanel, sourceButton;
    int destination, destinationPanel, destinationButton;
    int take;
};

constexpr std::array<Buttons, 7> buttonsOfLayout{{
    { 7, 1,  7,  8, 1, 24, 33}, { 7, 1,  7,  8, 1, 24, 33}, {15, 1, 15, 16, 1, 32, 33}, {16, 1, 24, 20, 2, 28, 36},
    {23, 2,  7, 24, 3, 24, 33}, {32, 1, 32, 40, 3,  8, 33}, {33, 2,  1, 48, 3, 32, 33},
}};
// clang-format on

struct Case
{
    const char *name;
    HardwareFaults faults;
    QStringList messages;
    int alphaRequests;
    std::array<int, 2> lit, pressed; ///< Panel and button: an LED that autotake lights, and a source.
    int source;                      ///< What that button stands for.
};

} // namespace

void FramesTest::identifiesAndSwitches_data()
{
    QTest::addColumn<int>("row");
    for (int row = 1; row <= int(frames.size()); ++row)
        QTest::addRow("row %d", row) << row;
}

void FramesTest::identifiesAndSwitches()
{
    QFETCH(const int, row);
    const auto [partNumber, layoutId] = frames[size_t(row - 1)];
    const Buttons &buttons = buttonsOfLayout[size_t(layoutId)];

    Front front(row);
    QVERIFY(front.start());
    QCOMPARE(front.messages().filter("layout"), QStringList{QString("Front layout initialized. (%1)").arg(layoutId)});
    QCOMPARE(front.device().core().property("/.PartNumber"), QString::number(partNumber));
    front.tap(buttons.sourcePanel, buttons.sourceButton); // each panel is read on its own, whatever was pressed first
    QTRY_COMPARE(front.led(buttons.sourcePanel, buttons.sourceButton), 1);
    front.tap(buttons.destinationPanel, buttons.destinationButton);
    QTRY_COMPARE(front.led(buttons.destinationPanel, buttons.destinationButton), 2);
    front.tap(1, buttons.take);
    const QString connect = "CALL /MEDIA/XP/VIDEO:connect(I%1:-O%2;)";
    QTRY_COMPARE(front.requests(), QStringList{connect.arg(buttons.source).arg(buttons.destination)});
}

void FramesTest::worksOn_data()
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

void FramesTest::worksOn()
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

QTEST_GUILESS_MAIN(FramesTest)
#include "framestest.moc"
