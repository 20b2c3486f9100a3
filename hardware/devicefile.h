#pragma once

#include "hardware/filedescriptorreadwrite.h"

/// A device node, opened by path and controlled by ioctl requests.
class DeviceFile : public FileDescriptorReadWrite
{
public:
    /// Opens for reading and writing, not inherited by child processes. 0 on success and when a file is
    /// open already (whatever its path); -1 on failure.
    virtual int open(const char *path);

    /// One control request. @p argument is the value itself, or where the driver reads or writes it;
    /// the type of the object behind a pointer is a matter of the request. Negative on failure.
    virtual int ioctl(unsigned long request, int argument);
    virtual int ioctl(unsigned long request, unsigned long *argument);
    virtual int ioctl(unsigned long request, void *argument);
    virtual int ioctl(unsigned long request, const void *argument);
};
