#pragma once

#include "hardware/filedescriptor.h"

#include <cstddef>
#include <sys/types.h>

/// A file descriptor with bytes to read and write. Counts are bytes; -1 is failure with the reason in errno.
class FileDescriptorReadWrite : public FileDescriptor
{
public:
    ~FileDescriptorReadWrite() override;
    int close() override;

    /// One system call: up to @p n bytes, 0 at the end of the file.
    virtual ssize_t read(void *buf, size_t n);
    /// One system call: may write fewer than @p n bytes.
    virtual ssize_t write(const void *data, size_t n);
    /// Reads until @p n bytes are there and returns n; -1 at the first failure, or if the file ends before.
    virtual ssize_t readAll(void *buf, size_t n);
    /// Writes until @p n bytes are gone and returns n; -1 at the first failure.
    virtual ssize_t writeAll(const void *data, size_t n);
};
