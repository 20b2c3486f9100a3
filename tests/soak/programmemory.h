#pragma once

#include "simulator/device.h"

#include <cstddef>
#include <vector>

/// Resident memory of the program, in KiB; 0 when there is none.
double programMemory(const Device &device);

/// Resident memory over a run, measured in whatever the run counts: seconds, losses, presses.
class MemoryRun
{
public:
    explicit MemoryRun(const Device &device)
        : m_device(device)
    {
    }
    void note(double at) { m_notes.push_back({at, programMemory(m_device)}); }
    /// KiB gained per unit: the straight line that lies closest to the notes. @param from those before do not count.
    double slope(double from = 0) const;
    /// One line of so many values, evenly spread from the first to the last.
    void print(const char *unit, size_t count = 8) const;

private:
    struct Note
    {
        double at, kib;
    };
    const Device &m_device;
    std::vector<Note> m_notes;
};
