#pragma once

#include "hardware/framedescriptor.h"
#include "hardware/storageresult.h"

#include <span>
#include <vector>

/// Deals the add-on slots of a frame to its input and output cards: appends the card word of the slot that
/// serves each card, in card order, inputs before outputs. Whoever identifies anew empties the lists first.
/// A card word: bit 31 version present, bits 23..26 tens and bits 19..22 units digit of the slot's hardware version.
/// @param frame a row of frameDescriptors(); types 0 to 2 need at most 40 ports in each direction.
/// @param slotWords of slots 2 to 21: word k belongs to slot k + 2.
/// @return 0, or 1 for a card or frame type that has no slot; that is told on standard output, and the
/// cards assigned until then stay in the lists.
StorageResult assignCards(const FrameDescriptor &frame, std::span<const uint32_t, 20> slotWords,
    std::vector<uint32_t> &inputCards, std::vector<uint32_t> &outputCards);
