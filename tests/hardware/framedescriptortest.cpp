#include "hardware/framedescriptor.h"

#include "hardware/assigncards.h"

#include <QFile>
#include <QSet>
#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <climits>
#include <cstdio>
#include <tuple>
#include <unistd.h>

namespace {

constexpr uint64_t all48 = 0xffffffffffff;

const FrameDescriptor &row(int number) { return frameDescriptors()[static_cast<size_t>(number - 1)]; }

/// What @p call prints on standard output.
template <typename Call> QByteArray printed(Call call)
{
    QTemporaryFile file;
    if (!file.open())
        return "no temporary file";
    std::fflush(stdout);
    const int before = ::dup(STDOUT_FILENO);
    ::dup2(file.handle(), STDOUT_FILENO);
    call();
    std::fflush(stdout);
    ::dup2(before, STDOUT_FILENO);
    ::close(before);
    file.seek(0);
    return file.readAll();
}

} // namespace

class FrameDescriptorTest : public QObject
{
    Q_OBJECT

private slots:
    void table();
    void partNumbersAreUnique();
    void ports_data();
    void ports();
    void cards_data();
    void cards();
    void everyFrameHasItsCards();
    void unknownCards_data();
    void unknownCards();
};

void FrameDescriptorTest::table()
{
    // clang-format off
    const struct {
        int inputs, inputsInA, inputsInC, outputs, outputsInA, outputsInC;
        uint32_t flag;
        int layoutId, presetButtons;
    } rows[] = {
        { 8,  8,  0,  8,  8,  0, 0, 1,  8}, {24,  8,  0, 24,  8,  0, 0, 0,  0}, { 8,  8,  0,  8,  8,  0, 0, 1,  8},
        {16,  0,  0, 16,  0,  0, 0, 2, 16}, {16,  0,  0, 16,  0,  0, 1, 2, 16}, {16,  4,  0, 20,  8,  0, 0, 0,  0},
        {16,  4,  0, 20,  8,  0, 1, 0,  0}, {24,  0,  0, 24,  0,  0, 0, 4, 24}, {24,  0,  0, 24,  0,  0, 1, 4, 24},
        {24,  8,  0, 24,  8,  0, 1, 0,  0}, { 8,  0,  0,  8,  0,  0, 0, 1,  8}, { 8,  2,  0,  8,  2,  0, 0, 0,  0},
        { 8,  2,  0,  4,  2,  0, 0, 0,  0}, { 4,  0,  0,  4,  2,  0, 0, 0,  0}, { 8,  4,  8,  8,  4,  0, 0, 1,  8},
        {24, 12, 12, 24,  8,  0, 1, 4, 24}, {48, 16,  0, 48, 16,  0, 1, 6, 48}, { 8,  0,  4,  8,  2,  0, 0, 1,  8},
        {24,  0, 12, 24,  0,  0, 1, 4, 24}, {16,  8,  8, 20,  8,  0, 1, 3, 16}, {32, 16,  0, 40, 16,  0, 1, 5, 32},
        {32, 12, 16, 40, 16,  0, 1, 5, 32}, {48, 16, 24, 48, 32, 24, 1, 6, 48}, { 8,  4,  8,  8,  8,  8, 0, 1,  8},
        {24,  8, 24, 24, 24, 24, 1, 4, 24}, {48, 16, 48, 48, 48, 48, 1, 6, 48}, {16,  4,  0, 12,  8,  0, 1, 0,  0},
        {48, 16, 48, 48, 16,  0, 1, 6, 48}, { 8,  8,  4,  8,  8,  4, 0, 1,  8}, {16,  0, 16, 16,  0,  0, 1, 2, 16},
        {16, 16,  8, 16, 16, 12, 0, 0,  0}, {24, 24, 12, 24, 24, 16, 1, 4, 24}, { 8,  8,  0,  8,  8,  0, 0, 1,  8},
    };
    // clang-format on
    const auto portsInA = [](const FrameDescriptor &frame, bool output) {
        int count = 0;
        for (int port = 0; port < 64; ++port)
            count += frame.portHasA(port, output) ? 1 : 0;
        return count;
    };
    const auto portsInC = [](const FrameDescriptor &frame, bool output) {
        int count = 0;
        for (int port = 0; port < 64; ++port)
            count += frame.portClass(port, output) == 2 ? 1 : 0;
        return count;
    };
    uint32_t number = 0;
    for (const auto &expected : rows) {
        ++number;
        const FrameDescriptor *frame = findFrameDescriptor((number <= 30 ? 47110000 : 58220000 - 30) + number);
        QVERIFY2(frame, qPrintable(QString("row %1").arg(number)));
        const auto actual = std::tuple(frame->inputPortCount(), portsInA(*frame, false), portsInC(*frame, false),
            frame->outputPortCount(), portsInA(*frame, true), portsInC(*frame, true), frame->flag, frame->layoutId(),
            frame->presetButtonCount());
        const auto row = std::tuple(expected.inputs, expected.inputsInA, expected.inputsInC, expected.outputs,
            expected.outputsInA, expected.outputsInC, expected.flag, expected.layoutId, expected.presetButtons);
        QVERIFY2(actual == row, qPrintable(QString("row %1").arg(number)));
        QCOMPARE(frame->inputCardCount(), expected.inputs / 4);
        QCOMPARE(frame->outputCardCount(), expected.outputs / 4);
    }
    QCOMPARE(number, 33U);
}

void FrameDescriptorTest::partNumbersAreUnique()
{
    QSet<uint32_t> numbers;
    for (const FrameDescriptor &frame : frameDescriptors())
        numbers.insert(frame.partNumber);
    QCOMPARE(numbers.size(), 33);
    for (const uint32_t unknown : {0U, 47110031U, 58220004U, UINT32_MAX})
        QVERIFY(!findFrameDescriptor(unknown));
}

void FrameDescriptorTest::ports_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("output");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("portClass");
    QTest::addColumn<bool>("hasA");

    QTest::newRow("in A and B") << 13 << true << 1 << 3 << 1 << true;
    QTest::newRow("in B only") << 13 << true << 3 << 1 << 1 << false;
    QTest::newRow("in A only") << 6 << true << 19 << 2 << 0 << true;
    QTest::newRow("beyond the outputs, though an input") << 13 << true << 4 << 0 << 0 << false;
    QTest::newRow("the last input") << 13 << false << 7 << 1 << 1 << false;
    QTest::newRow("in C") << 18 << false << 3 << 1 << 2 << false;
    QTest::newRow("next to C") << 18 << false << 4 << 1 << 1 << false;
    QTest::newRow("in A, B and C") << 26 << true << 47 << 3 << 2 << true;
    QTest::newRow("one beyond the largest frame") << 26 << true << 48 << 0 << 0 << false;
    QTest::newRow("far beyond a mask's bits") << 26 << true << 64 << 0 << 0 << false;
    QTest::newRow("the highest number") << 26 << false << INT_MAX << 0 << 0 << false;
    QTest::newRow("negative") << 26 << false << -1 << 0 << 0 << false;
}

void FrameDescriptorTest::ports()
{
    QFETCH(int, number);
    QFETCH(bool, output);
    QFETCH(int, port);
    QTEST(row(number).portKind(port, output), "kind");
    QTEST(row(number).portClass(port, output), "portClass");
    QTEST(row(number).portHasA(port, output), "hasA");
}

void FrameDescriptorTest::cards_data()
{
    QTest::addColumn<FrameDescriptor>("frame");
    QTest::addColumn<QList<int>>("inputs");
    QTest::addColumn<QList<int>>("outputs");

    using Slots = QList<int>;
    QTest::newRow("type 0") << row(1) << Slots{0, 1} << Slots{2, 3};
    QTest::newRow("type 0, an odd card") << row(14) << Slots{0} << Slots{2};
    QTest::newRow("type 1, twenty outputs") << row(6) << Slots{0, 1, 4, 5} << Slots{2, 3, 6, 7, 10};
    QTest::newRow("type 2") << row(2) << Slots{0, 1, 4, 5, 8, 9} << Slots{2, 3, 6, 7, 10, 11};
    QTest::newRow("type 3, 48") << row(17) << Slots(4, 0) + Slots(8, 1) << Slots(4, 8) + Slots(8, 6);
    QTest::newRow("type 3, with C") << row(22) << Slots{4, 4, 3, 4, 0, 0, 1, 1} << Slots{8, 8, 6, 6, 6, 6, 6, 6, 5, 5};
    QTest::newRow("type 3, all in C") << row(26) << Slots(4, 3) + Slots(8, 4) << Slots(12, 9);
    QTest::newRow("type 3, cards with two ports in A")
        << FrameDescriptor{0, 0x33, 0xff, 0, 0x3, 0xf, 0, 3, 0, 0} << Slots{2, 2} << Slots{7};
}

void FrameDescriptorTest::cards()
{
    QFETCH(FrameDescriptor, frame);
    QFETCH(QList<int>, inputs);
    QFETCH(QList<int>, outputs);
    std::array<uint32_t, 20> words;
    for (uint32_t k = 0; k < words.size(); ++k)
        words[k] = k | 1U << 31;
    const auto expected = [&words](const QList<int> &slotIndices) {
        std::vector<uint32_t> result{5}; // was there before
        for (const int index : slotIndices)
            result.push_back(words[static_cast<size_t>(index)]);
        return result;
    };
    std::vector<uint32_t> inputCards{5};
    std::vector<uint32_t> outputCards{5};
    QCOMPARE(assignCards(frame, words, inputCards, outputCards), 0U);
    QCOMPARE(inputCards, expected(inputs));
    QCOMPARE(outputCards, expected(outputs));
}

void FrameDescriptorTest::everyFrameHasItsCards()
{
    const std::array<uint32_t, 20> words{};
    for (const FrameDescriptor &frame : frameDescriptors()) {
        std::vector<uint32_t> inputCards;
        std::vector<uint32_t> outputCards;
        QCOMPARE(assignCards(frame, words, inputCards, outputCards), 0U);
        QCOMPARE(static_cast<int>(inputCards.size()), frame.inputCardCount());
        QCOMPARE(static_cast<int>(outputCards.size()), frame.outputCardCount());
    }
}

void FrameDescriptorTest::unknownCards_data()
{
    QTest::addColumn<FrameDescriptor>("frame");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("inputCards");
    QTest::addColumn<int>("outputCards");

    QTest::newRow("input") << FrameDescriptor{0, 0x1f, all48, 0, 0, all48, 0, 3, 0, 0}
                           << QByteArray("tessaro: input card unknown: 00f1\n") << 1 << 0;
    QTest::newRow("output") << FrameDescriptor{0, 0, all48, 0, 0, all48, 0xf00000000000, 3, 0, 0}
                            << QByteArray("tessaro: output card unknown: 0ff0\n") << 12 << 11;
    QTest::newRow("an input's code is no output's") << FrameDescriptor{0, 0, 0xf, 0, 0, 0xf, 0xf, 3, 0, 0}
                                                    << QByteArray("tessaro: output card unknown: 0ff0\n") << 1 << 0;
    QTest::newRow("frame type") << FrameDescriptor{0, 0, 0xff, 0, 0, 0xff, 0, 4, 0, 0}
                                << QByteArray("tessaro: frame type unknown\n") << 0 << 0;
}

void FrameDescriptorTest::unknownCards()
{
    QFETCH(FrameDescriptor, frame);
    std::vector<uint32_t> inputCards;
    std::vector<uint32_t> outputCards;
    StorageResult result = 0;
    const QByteArray text
        = printed([&] { result = assignCards(frame, std::array<uint32_t, 20>{}, inputCards, outputCards); });
    QCOMPARE(result, 1U);
    QTEST(text, "text");
    QTEST(static_cast<int>(inputCards.size()), "inputCards");
    QTEST(static_cast<int>(outputCards.size()), "outputCards");
}

QTEST_GUILESS_MAIN(FrameDescriptorTest)
#include "framedescriptortest.moc"
