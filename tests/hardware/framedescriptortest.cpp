#include "hardware/assigncards.h"

#include <QTest>

#include <array>
#include <climits>
#include <cstdio>
#include <numeric>

namespace {

using Cards = QList<uint32_t>;

const FrameDescriptor &row(int number) { return frameDescriptors()[static_cast<size_t>(number - 1)]; }

} // namespace

class FrameDescriptorTest : public QObject
{
    Q_OBJECT
private slots:
    void everyFrameIsFoundAndHasItsCards()
    {
        for (const FrameDescriptor &frame : frameDescriptors()) {
            QCOMPARE(findFrameDescriptor(frame.partNumber), &frame); // there is no other of this number
            std::vector<uint32_t> inputCards, outputCards;
            QCOMPARE(assignCards(frame, std::array<uint32_t, 20>{}, inputCards, outputCards), 0U);
            QCOMPARE(static_cast<int>(inputCards.size()), frame.inputPortCount() / 4);
            QCOMPARE(static_cast<int>(outputCards.size()), frame.outputPortCount() / 4);
        }
        for (const int port : {-1, 4, 64, INT_MAX}) // row 13 has four outputs
            QCOMPARE(row(13).portKind(port, true) + row(13).portClass(port, true) + row(13).hasPort(port, true), 0);
        QVERIFY(!findFrameDescriptor(0) && !findFrameDescriptor(47110031) && !findFrameDescriptor(58220004));
    }

    void cards()
    {
        const FrameDescriptor twoInA{0, 3, 15, 0, 3, 15, 0, 3, 0, 0}, badInput{0, 0x1f, 0xff, 0, 0, 15, 0, 3, 0, 0},
            badOutput{0, 0, 15, 0, 0, 0xff, 0xf0, 3, 0, 0}, badType{0, 0, 15, 0, 0, 15, 0, 4, 0, 0};
        // each card word is the number of its slot
        const std::tuple<const char *, const FrameDescriptor &, Cards, Cards, QString> cases[] = {
            {"type 0", row(1), {2, 3}, {4, 5}, ""},
            {"type 1, twenty outputs", row(6), {2, 3, 6, 7}, {4, 5, 8, 9, 12}, ""},
            {"type 2", row(2), {2, 3, 6, 7, 10, 11}, {4, 5, 8, 9, 12, 13}, ""},
            {"type 3", row(17), Cards(4, 2) + Cards(8, 3), Cards(4, 10) + Cards(8, 8), ""},
            {"some in C", row(22), {6, 6, 5, 6, 2, 2, 3, 3}, {10, 10, 8, 8, 8, 8, 8, 8, 7, 7}, ""},
            {"all in C", row(26), Cards(4, 5) + Cards(8, 6), Cards(12, 11), ""},
            {"two ports in A", twoInA, {4}, {9}, ""},
            {"unknown input card", badInput, {2}, {}, "tessaro: input card unknown: 00f1\n"},
            {"unknown output card", badOutput, {3}, {8}, "tessaro: output card unknown: 0ff0\n"},
            {"unknown type", badType, {}, {}, "tessaro: frame type unknown\n"},
        };
        std::array<uint32_t, 20> words;
        std::iota(words.begin(), words.end(), 2U);
        for (const auto &[name, frame, inputs, outputs, complaint] : cases) {
            std::vector<uint32_t> inputCards{99}, outputCards{99}; // were there before
            std::FILE *const console = std::exchange(stdout, std::tmpfile());
            const StorageResult result = assignCards(frame, words, inputCards, outputCards);
            std::FILE *const printed = std::exchange(stdout, console);
            std::rewind(printed);
            char text[80]{};
            const bool silent = !std::fgets(text, sizeof text, printed);
            std::fclose(printed);
            QVERIFY2(text == complaint, text);
            QVERIFY2(result == (silent ? 0 : 1), name);
            QVERIFY2(Cards(inputCards.begin(), inputCards.end()) == Cards{99} + inputs, name);
            QVERIFY2(Cards(outputCards.begin(), outputCards.end()) == Cards{99} + outputs, name);
        }
    }
};

QTEST_GUILESS_MAIN(FrameDescriptorTest)
#include "framedescriptortest.moc"
