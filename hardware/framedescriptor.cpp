#include "hardware/framedescriptor.h"

#include <algorithm>
#include <bit>

namespace {

// clang-format off
constexpr FrameDescriptor frames[] = {
    // part no.        inputs A        inputs B        inputs C       outputs A       outputs B       outputs C  type, flag, layout
    {47110001,           0xff,           0xff,            0x0,           0xff,           0xff,            0x0, 0, 0, 1},
    {47110002,           0xff,       0xffffff,            0x0,           0xff,       0xffffff,            0x0, 2, 0, 0},
    {47110003,           0xff,           0xff,            0x0,           0xff,           0xff,            0x0, 0, 0, 1},
    {47110004,            0x0,         0xffff,            0x0,            0x0,         0xffff,            0x0, 1, 0, 2},
    {47110005,            0x0,         0xffff,            0x0,            0x0,         0xffff,            0x0, 1, 1, 2},
    {47110006,            0xf,         0xffff,            0x0,        0xf000f,         0xffff,            0x0, 1, 0, 0},
    {47110007,            0xf,         0xffff,            0x0,        0xf000f,         0xffff,            0x0, 1, 1, 0},
    {47110008,            0x0,       0xffffff,            0x0,            0x0,       0xffffff,            0x0, 2, 0, 4},
    {47110009,            0x0,       0xffffff,            0x0,            0x0,       0xffffff,            0x0, 2, 1, 4},
    {47110010,           0xff,       0xffffff,            0x0,           0xff,       0xffffff,            0x0, 2, 1, 0},
    {47110011,            0x0,           0xff,            0x0,            0x0,           0xff,            0x0, 0, 0, 1},
    {47110012,            0x3,           0xff,            0x0,            0x3,           0xff,            0x0, 0, 0, 0},
    {47110013,            0x3,           0xff,            0x0,            0x3,            0xf,            0x0, 0, 0, 0},
    {47110014,            0x0,            0xf,            0x0,            0x3,            0xf,            0x0, 0, 0, 0},
    {47110015,            0xf,           0xff,           0xff,            0xf,           0xff,            0x0, 0, 0, 1},
    {47110016,       0xff0f00,       0xffffff,          0xfff,           0xff,       0xffffff,            0x0, 2, 1, 4},
    {47110017,         0xffff, 0xffffffffffff,            0x0,         0xffff, 0xffffffffffff,            0x0, 3, 1, 6},
    {47110018,            0x0,           0xff,            0xf,            0x3,           0xff,            0x0, 0, 0, 1},
    {47110019,            0x0,       0xffffff,          0xfff,            0x0,       0xffffff,            0x0, 2, 1, 4},
    {47110020,         0xff00,         0xffff,           0xff,        0xf000f,         0xffff,            0x0, 1, 1, 3},
    {47110021,         0xffff,     0xffffffff,            0x0,   0xff000000ff,     0xffffffff,            0x0, 3, 1, 5},
    {47110022,       0xff0f00,     0xffffffff,         0xffff,   0xff000000ff,     0xffffffff,            0x0, 3, 1, 5},
    {47110023,     0xff0000ff, 0xffffffffffff,       0xffffff,     0xffffffff, 0xffffffffffff,       0xffffff, 3, 1, 6},
    {47110024,            0xf,           0xff,           0xff,           0xff,           0xff,           0xff, 0, 0, 1},
    {47110025,           0xff,       0xffffff,       0xffffff,       0xffffff,       0xffffff,       0xffffff, 2, 1, 4},
    {47110026,         0xffff, 0xffffffffffff, 0xffffffffffff, 0xffffffffffff, 0xffffffffffff, 0xffffffffffff, 3, 1, 6},
    {47110027,            0xf,         0xffff,            0x0,          0xf0f,           0xff,            0x0, 1, 1, 0},
    {47110028,         0xffff, 0xffffffffffff, 0xffffffffffff,         0xffff, 0xffffffffffff,            0x0, 3, 1, 6},
    {47110029,           0xff,           0xff,           0xf0,           0xff,           0xff,           0xf0, 0, 0, 1},
    {47110030,            0x0,         0xffff,         0xffff,            0x0,         0xffff,            0x0, 1, 1, 2},
    {58220001,         0xffff,         0xffff,         0xff00,         0xffff,         0xffff,         0xfff0, 1, 0, 0},
    {58220002,       0xffffff,       0xffffff,          0xfff,       0xffffff,       0xffffff,         0xffff, 2, 1, 4},
    {58220003,           0xff,           0xff,            0x0,           0xff,           0xff,            0x0, 0, 0, 1},
};
// clang-format on
static_assert(std::size(frames) == 33);

constexpr int ports(uint64_t a, uint64_t b) { return std::popcount(a | b); }

constexpr int inputPorts(const FrameDescriptor &frame) { return ports(frame.inputsA, frame.inputsB); }
constexpr int outputPorts(const FrameDescriptor &frame) { return ports(frame.outputsA, frame.outputsB); }

/// Source buttons of layout 0 to 6.
constexpr int presetButtons[] = {0, 8, 16, 16, 24, 32, 48};

/// Ports are numbered without a gap, and mask C marks ports that mask B has.
constexpr bool masksFit(uint64_t a, uint64_t b, uint64_t c) { return ((a | b) & ((a | b) + 1)) == 0 && (c & ~b) == 0; }

/// A frame has one source button per input, and its type bounds its slots: assignCards() indexes them unchecked.
constexpr bool isSound(const FrameDescriptor &frame)
{
    const int inputs = inputPorts(frame);
    const int outputs = outputPorts(frame);
    constexpr int mostPorts[] = {8, 20, 24, 48};
    return masksFit(frame.inputsA, frame.inputsB, frame.inputsC)
        && masksFit(frame.outputsA, frame.outputsB, frame.outputsC) && frame.frameType < std::size(mostPorts)
        && std::max(inputs, outputs) <= mostPorts[frame.frameType] && frame.layout < std::size(presetButtons)
        && (frame.layout == 0 || presetButtons[frame.layout] == inputs);
}
static_assert(std::all_of(std::begin(frames), std::end(frames), isSound));

constexpr int cards(int portCount) { return (portCount + 3) / 4; }

constexpr bool has(uint64_t mask, int port) { return (mask >> port & 1) != 0; }

} // namespace

int FrameDescriptor::inputPortCount() const { return inputPorts(*this); }

int FrameDescriptor::outputPortCount() const { return outputPorts(*this); }

int FrameDescriptor::inputCardCount() const { return cards(inputPortCount()); }

int FrameDescriptor::outputCardCount() const { return cards(outputPortCount()); }

int FrameDescriptor::presetButtonCount() const { return layout < std::size(presetButtons) ? presetButtons[layout] : 0; }

int FrameDescriptor::portKind(int port, bool output) const
{
    if (!hasPort(port, output))
        return 0;
    const bool a = has(output ? outputsA : inputsA, port);
    const bool b = has(output ? outputsB : inputsB, port);
    return (a ? 2 : 0) + (b ? 1 : 0);
}

int FrameDescriptor::portClass(int port, bool output) const
{
    if (!hasPort(port, output) || !has(output ? outputsB : inputsB, port))
        return 0;
    return has(output ? outputsC : inputsC, port) ? 2 : 1;
}

bool FrameDescriptor::portHasA(int port, bool output) const
{
    return hasPort(port, output) && has(output ? outputsA : inputsA, port);
}

bool FrameDescriptor::hasPort(int port, bool output) const
{
    return port >= 0 && port < (output ? outputPortCount() : inputPortCount());
}

std::span<const FrameDescriptor> frameDescriptors() { return frames; }

const FrameDescriptor *findFrameDescriptor(uint32_t partNumber)
{
    const FrameDescriptor *found = nullptr;
    for (const FrameDescriptor &frame : frames)
        if (frame.partNumber == partNumber)
            found = &frame;
    return found;
}
