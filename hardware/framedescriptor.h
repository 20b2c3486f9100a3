#pragma once

#include <cstdint>
#include <span>

/// One frame model: which ports it has, how its slots become cards, where its front buttons sit.
/// Ports are counted from 0 here; bit n of a mask belongs to port n, printed "n + 1" on the frame.
struct FrameDescriptor // NOLINT(clang-analyzer-optin.performance.Padding): columns in the order of the table
{
    uint32_t partNumber; ///< Eight decimal digits; what EEPROM and core service report.
    uint64_t inputsA, inputsB, inputsC;
    uint64_t outputsA, outputsB, outputsC;
    uint32_t frameType; ///< 0 to 3: how assignCards() deals the add-on slots to cards.
    uint32_t flag;      ///< Non-zero: the frame has redundant power supplies.
    uint32_t layout;    ///< 0 to 6: the front-panel layout.

    constexpr int layoutId() const { return static_cast<int>(layout); }
    int inputPortCount() const;
    int outputPortCount() const;
    /// Four ports to a card, the last one possibly half filled.
    int inputCardCount() const;
    int outputCardCount() const;
    /// Source buttons that presets can be assigned to; 0 for a frame without a layout of its own.
    int presetButtonCount() const;

    /// 0: neither mask A nor B, 1: B only, 2: A only, 3: both; 0 at or beyond the port count.
    int portKind(int port, bool output) const;
    /// 0: not in mask B or beyond the port count, 2: in mask C, 1: otherwise.
    int portClass(int port, bool output) const;
    /// Mask A holds the port; false beyond the port count.
    bool portHasA(int port, bool output) const;
    /// The frame has a port of this number in this direction; false for negative numbers.
    bool hasPort(int port, bool output) const;
};

/// Every known frame model, in table order: row 1 comes first.
std::span<const FrameDescriptor> frameDescriptors();

/// The model with this part number (the last row wins), or null. Points into the constant table.
const FrameDescriptor *findFrameDescriptor(uint32_t partNumber);
