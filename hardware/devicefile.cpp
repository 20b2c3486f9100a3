#include "hardware/devicefile.h"

#include <fcntl.h>
#include <sys/ioctl.h>

int DeviceFile::open(const char *path)
{
    if (isOpen())
        return 0;
    m_fd = ::open(path, O_RDWR | O_CLOEXEC);
    return isOpen() ? 0 : -1;
}

int DeviceFile::ioctl(unsigned long request, int argument)
{
    return ::ioctl(m_fd, request, static_cast<long>(argument)); // the kernel reads a whole register
}

int DeviceFile::ioctl(unsigned long request, unsigned long *argument) { return ::ioctl(m_fd, request, argument); }

int DeviceFile::ioctl(unsigned long request, void *argument) { return ::ioctl(m_fd, request, argument); }

int DeviceFile::ioctl(unsigned long request, const void *argument) { return ::ioctl(m_fd, request, argument); }
