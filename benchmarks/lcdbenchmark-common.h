#pragma once

#include <algorithm>
#include <ctime>
#include <vector>

// What the three programs of the LCD benchmark share.

/// CPU time in microseconds: of this process, or of the one whose clock it is.
inline double cpuTime(clockid_t clock = CLOCK_PROCESS_CPUTIME_ID)
{
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1e6 + double(time.tv_nsec) / 1e3;
}

/// @param values at least one.
inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
