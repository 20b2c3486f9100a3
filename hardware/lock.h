#pragma once

/// Mutual exclusion; works with std::lock_guard.
class Lock
{
public:
    Lock() = default;
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
    virtual ~Lock() = default;

    virtual void lock() = 0;
    virtual void unlock() = 0;
};
