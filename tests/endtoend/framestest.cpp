#include "tests/endtoend/front.h"

#include <QTest>

#include <array>

/// Every frame model gets its own front and is found again from the device.
class FramesTest : public QObject
{
    Q_OBJECT
private slots:
    void identifiesAndSwitches_data();
    void identifiesAndSwitches();
};

namespace {

struct Frame
{
    int row;
    int partNumber;
    int layoutId;
    int sources, destinations; ///< Ports of the frame, which its front need not have as buttons.
};

// clang-format off
constexpr std::array<Frame, 33> frames{{
    { 1, 47110001, 1,  8,  8}, { 2, 47110002, 0, 24, 24}, { 3, 47110003, 1,  8,  8}, { 4, 47110004, 2, 16, 16},
    { 5, 47110005, 2, 16, 16}, { 6, 47110006, 0, 16, 20}, { 7, 47110007, 0, 16, 20}, { 8, 47110008, 4, 24, 24},
    { 9, 47110009, 4, 24, 24}, {10, 47110010, 0, 24, 24}, {11, 47110011, 1,  8,  8}, {12, 47110012, 0,  8,  8},
    {13, 47110013, 0,  8,  4}, {14, 47110014, 0,  4,  4}, {15, 47110015, 1,  8,  8}, {16, 47110016, 4, 24, 24},
    {17, 47110017, 6, 48, 48}, {18, 47110018, 1,  8,  8}, {19, 47110019, 4, 24, 24}, {20, 47110020, 3, 16, 20},
    {21, 47110021, 5, 32, 40}, {22, 47110022, 5, 32, 40}, {23, 47110023, 6, 48, 48}, {24, 47110024, 1,  8,  8},
    {25, 47110025, 4, 24, 24}, {26, 47110026, 6, 48, 48}, {27, 47110027, 0, 16, 12}, {28, 47110028, 6, 48, 48},
    {29, 47110029, 1,  8,  8}, {30, 47110030, 2, 16, 16}, {31, 58220001, 0, 16, 16}, {32, 58220002, 4, 24, 24},
    {33, 58220003, 1,  8,  8},
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

} // namespace

void FramesTest::identifiesAndSwitches_data()
{
    QTest::addColumn<Frame>("frame");

    for (const Frame &frame : frames)
        QTest::addRow("row %d, a %d x %d", frame.row, frame.sources, frame.destinations) << frame;
}

void FramesTest::identifiesAndSwitches()
{
    QFETCH(Frame, frame);
    const Buttons &buttons = buttonsOfLayout[size_t(frame.layoutId)];

    Front front(frame.row);
    QCOMPARE(front.device().powerOn(), QString());
    front.device().startProgram();
    QTRY_VERIFY_WITH_TIMEOUT(front.requests().contains("GET /MEDIA/PRESET"), 30000); // the last thing it asks for
    QCOMPARE(
        front.messages().filter("layout"), QStringList{QString("Front layout initialized. (%1)").arg(frame.layoutId)});

    QCOMPARE(front.device().core().property("/.PartNumber"), QString::number(frame.partNumber));
    front.tap(buttons.sourcePanel, buttons.sourceButton); // each panel is read on its own, whatever was pressed first
    QTRY_COMPARE(front.led(buttons.sourcePanel, buttons.sourceButton), 1);
    front.tap(buttons.destinationPanel, buttons.destinationButton);
    QTRY_COMPARE(front.led(buttons.destinationPanel, buttons.destinationButton), 2);
    front.tap(1, buttons.take);
    const QString connect = "CALL /MEDIA/XP/VIDEO:connect(I%1:-O%2;)";
    QTRY_COMPARE(front.requests().last(), connect.arg(buttons.source).arg(buttons.destination));
}

QTEST_GUILESS_MAIN(FramesTest)
#include "framestest.moc"
