#include "hardware/filedescriptorreadwrite.h"

#include <unistd.h>

FileDescriptorReadWrite::~FileDescriptorReadWrite() = default;

int FileDescriptorReadWrite::close() { return FileDescriptor::close(); }

ssize_t FileDescriptorReadWrite::read(void *buf, size_t n) { return ::read(m_fd, buf, n); }

ssize_t FileDescriptorReadWrite::write(const void *data, size_t n) { return ::write(m_fd, data, n); }

ssize_t FileDescriptorReadWrite::readAll(void *buf, size_t n)
{
    size_t done = 0;
    while (done < n) {
        const ssize_t count = read(static_cast<char *>(buf) + done, n - done);
        if (count <= 0) // at the end of the file we would ask for ever
            return -1;
        done += static_cast<size_t>(count);
    }
    return static_cast<ssize_t>(n);
}

ssize_t FileDescriptorReadWrite::writeAll(const void *data, size_t n)
{
    size_t done = 0;
    while (done < n) {
        const ssize_t count = write(static_cast<const char *>(data) + done, n - done);
        if (count <= 0)
            return -1;
        done += static_cast<size_t>(count);
    }
    return static_cast<ssize_t>(n);
}
