#include "hardware/assigncards.h"

#include <array>
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

constexpr uint32_t positionCode(const std::array<uint64_t, 3> &masks, int card)
{
    const auto ports = [card](uint64_t mask) { return static_cast<uint32_t>(mask >> 4 * card & 0xF); };
    return ports(masks[0]) | ports(masks[1]) << 4 | ports(masks[2]) << 8;
}

const Position *find(std::span<const Position> positions, uint32_t code)
{
    for (const Position &position : positions)
        if (position.code == code)
            return &position;
    return nullptr;
}

/// Slots come in groups of four: two for inputs, two for outputs.
void assignByGroups(
    int cardCount, size_t firstSlot, std::span<const uint32_t, 20> slotWords, std::vector<uint32_t> &cards)
{
    for (size_t card = 0; card < static_cast<size_t>(cardCount); ++card)
        cards.push_back(slotWords[card % 2 + 4 * (card / 2) + firstSlot]);
}

/// @param direction as the message names it. @return false at the first card that no position fits.
bool assignByPosition(const char *direction, const std::array<uint64_t, 3> &masks, int cardCount,
    std::span<const Position> positions, std::span<const uint32_t, 20> slotWords, std::vector<uint32_t> &cards)
{
    for (int card = 0; card < cardCount; ++card) {
        const uint32_t code = positionCode(masks, card);
        const Position *position = find(positions, code);
        if (!position) {
            std::printf("tessaro: %s card unknown: %.4x\n", direction, code);
            return false;
        }
        cards.push_back(slotWords[position->slotWord]);
    }
    return true;
}

} // namespace

StorageResult assignCards(const FrameDescriptor &frame, std::span<const uint32_t, 20> slotWords,
    std::vector<uint32_t> &inputCards, std::vector<uint32_t> &outputCards)
{
    if (frame.frameType > 3) {
        std::puts("tessaro: frame type unknown");
        return 1;
    }
    if (frame.frameType < 3) {
        assignByGroups(frame.inputCardCount(), 0, slotWords, inputCards);
        assignByGroups(frame.outputCardCount(), 2, slotWords, outputCards);
        return 0;
    }
    const bool placed = assignByPosition("input", {frame.inputsA, frame.inputsB, frame.inputsC}, frame.inputCardCount(),
                            inputPositions, slotWords, inputCards)
        && assignByPosition("output", {frame.outputsA, frame.outputsB, frame.outputsC}, frame.outputCardCount(),
            outputPositions, slotWords, outputCards);
    return placed ? 0 : 1;
}
