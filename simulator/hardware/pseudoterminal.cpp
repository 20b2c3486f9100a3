#include "simulator/hardware/pseudoterminal.h"

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

int openFarEnd(const char *path) { return ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK); }

} // namespace

PseudoTerminal::PseudoTerminal()
    : m_fd(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK))
{
    char path[64];
    if (m_fd < 0 || grantpt(m_fd) < 0 || unlockpt(m_fd) < 0 || ptsname_r(m_fd, path, sizeof path) != 0)
        return;
    const int farEnd = openFarEnd(path); // until it has been opened once, it does not count as closed
    if (farEnd < 0)
        return;
    termios settings;
    if (tcgetattr(farEnd, &settings) == 0) {
        cfmakeraw(&settings); // else a record's bytes could be taken for Ctrl-C or Ctrl-Q
        if (tcsetattr(farEnd, TCSANOW, &settings) == 0)
            m_farPath = QString::fromLocal8Bit(path);
    }
    ::close(farEnd);
}

PseudoTerminal::~PseudoTerminal()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

bool PseudoTerminal::isOpened() const
{
    pollfd state{m_fd, POLLIN, 0};
    return poll(&state, 1, 0) >= 0 && (state.revents & POLLHUP) == 0;
}

void PseudoTerminal::discardUnread()
{
    // the kernel keeps it for whoever opens the far end next, in two places: on its way, and arrived
    tcflush(m_fd, TCOFLUSH);
    const int farEnd = openFarEnd(m_farPath.toLocal8Bit().constData());
    if (farEnd < 0)
        return;
    tcflush(farEnd, TCIFLUSH);
    ::close(farEnd);
}
