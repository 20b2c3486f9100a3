#include "hardware/assigncards.h"

#include <cstdio>

namespace {

/// Where a card of the largest frame sits, told from what its four ports can do.
struct Position
{
    uint32_t code; ///< Mask A of the card's ports in bits 0..3, mask B in bits 4..7, mask C in bits 8..11.
    size_t slotWord;
};

constexpr Position inputPositions[] = {{0x0ff, 0}, {0x0f0, 1}, {0x0f3, 2}, {0xfff, 3}, {0xff0, 4}};
constexpr Position outputPositions[] = {{0x00f, 5}, {0x0f0, 6}, {0x0f3, 7}, {0x0ff, 8}, {0xfff, 9}};

constexpr uint32_t positionCode(uint64_t a, uint64_t b, uint64_t c, int card)
{
    const auto ports = [card](uint64_t mask) { return static_cast<uint32_t>(mask >> 4 * card & 0xF); };
    return ports(a) | ports(b) << 4 | ports(c) << 8;
}

const Position *find(std::span<const Position> positions, uint32_t code)
{
    for (const Position &position : positions)
        if (position.code == code)
            return &position;
    return nullptr;
}

/// Slots come in groups of four: two for inputs, two for outputs.
constexpr size_t groupedSlot(size_t card) { return card % 2 + 4 * (card / 2); }

} // namespace

StorageResult assignCards(const FrameDescriptor &frame, std::span<const uint32_t, 20> slotWords,
    std::vector<uint32_t> &inputCards, std::vector<uint32_t> &outputCards)
{
    if (frame.frameType > 3) {
        std::puts("tessaro: frame type unknown");
        return 1;
    }
    if (frame.frameType < 3) {
        for (size_t card = 0; card < static_cast<size_t>(frame.inputCardCount()); ++card)
            inputCards.push_back(slotWords[groupedSlot(card)]);
        for (size_t card = 0; card < static_cast<size_t>(frame.outputCardCount()); ++card)
            outputCards.push_back(slotWords[groupedSlot(card) + 2]);
        return 0;
    }
    for (int card = 0; card < frame.inputCardCount(); ++card) {
        const uint32_t code = positionCode(frame.inputsA, frame.inputsB, frame.inputsC, card);
        const Position *position = find(inputPositions, code);
        if (!position) {
            std::printf("tessaro: input card unknown: %.4x\n", code);
            return 1;
        }
        inputCards.push_back(slotWords[position->slotWord]);
    }
    for (int card = 0; card < frame.outputCardCount(); ++card) {
        const uint32_t code = positionCode(frame.outputsA, frame.outputsB, frame.outputsC, card);
        const Position *position = find(outputPositions, code);
        if (!position) {
            std::printf("tessaro: output card unknown: %.4x\n", code);
            return 1;
        }
        outputCards.push_back(slotWords[position->slotWord]);
    }
    return 0;
}
