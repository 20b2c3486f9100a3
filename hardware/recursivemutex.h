#pragma once

#include "hardware/lock.h"

#include <pthread.h>

/// A mutex that its owner may lock again; it is free after as many unlocks.
class RecursiveMutex : public Lock
{
public:
    RecursiveMutex();
    ~RecursiveMutex() override;

    void lock() override;
    void unlock() override;

private:
    pthread_mutex_t m_mutex;
};
