#include "hardware/recursivemutex.h"

RecursiveMutex::RecursiveMutex()
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&m_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

RecursiveMutex::~RecursiveMutex() { pthread_mutex_destroy(&m_mutex); }

void RecursiveMutex::lock() { pthread_mutex_lock(&m_mutex); }

void RecursiveMutex::unlock() { pthread_mutex_unlock(&m_mutex); }
