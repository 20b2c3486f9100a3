#include "hardware/filedescriptor.h"

#include <fcntl.h>
#include <unistd.h>

FileDescriptor::~FileDescriptor()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

int FileDescriptor::close()
{
    if (m_fd < 0)
        return 0;
    if (::close(m_fd) < 0)
        return -1;
    m_fd = -1;
    return 0;
}

int FileDescriptor::setNonBlocking()
{
    const int flags = ::fcntl(m_fd, F_GETFL);
    if (flags < 0)
        return -1;
    return ::fcntl(m_fd, F_SETFL, flags | O_NONBLOCK) < 0 ? -1 : 0;
}
