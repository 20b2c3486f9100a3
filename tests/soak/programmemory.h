#pragma once

#include <cstddef>
#include <vector>

/// Resident memory of the program that this process has started, in KiB; 0 when there is none.
double programMemory();

/// Resident memory over a run, measured in whatever the run counts: seconds, losses, presses.
class MemoryRun
{
public:
    void note(double at) { m_notes.push_back({at, programMemory()}); }
    /// KiB gained per unit: the straight line that lies closest to the notes. @param from those before do not count.
    double slope(double from = 0) const;
    /// One line of so many values, evenly spread from the first to the last.
    void print(const char *unit, size_t count = 8) const;

private:
    struct Note
    {
        double at, kib;
    };
    std::vector<Note> m_notes;
};
