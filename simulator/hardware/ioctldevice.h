#pragma once

#include "simulator/hardware/clientmemory.h"

/// What a device file answers to ioctl requests.
/// Called on a thread of the bed's own: the program's requests are answered even while this process waits for it.
class IoctlDevice
{
public:
    IoctlDevice() = default;
    IoctlDevice(const IoctlDevice &) = delete;
    IoctlDevice &operator=(const IoctlDevice &) = delete;
    virtual ~IoctlDevice() = default;

    /// One request. @param argument holds the argument itself, or the pointer to it.
    /// @return what ioctl() returns, or -E... for a failure with that errno.
    virtual long ioctl(unsigned long request, ClientMemory argument) = 0;

    /// A program has opened the device file; one notice for every open().
    virtual void opened() { }
};
