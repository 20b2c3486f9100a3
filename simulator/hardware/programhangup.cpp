#include "simulator/hardware/programhangup.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

/// Whether this is the near end of a program's connection; the listening sockets have the same name.
bool belongsTo(int socket, const QByteArray &prefix)
{
    sockaddr_un name{};
    socklen_t length = sizeof name;
    if (getsockname(socket, reinterpret_cast<sockaddr *>(&name), &length) < 0 || name.sun_family != AF_UNIX
        || std::strncmp(name.sun_path, prefix.constData(), size_t(prefix.size())) != 0)
        return false;
    int listening = 0;
    length = sizeof listening;
    return getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &listening, &length) == 0 && listening == 0;
}

/// @return whether there was any.
bool shutDownConnections(const QByteArray &prefix)
{
    bool found = false;
    for (const QString &entry :
        QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::NoDotAndDotDot | QDir::System | QDir::Files)) {
        // a copy of our own: between question and deed the thread could close the number and reuse it
        const int socket = fcntl(entry.toInt(), F_DUPFD_CLOEXEC, 0);
        if (socket < 0)
            continue;
        if (belongsTo(socket, prefix)) {
            shutdown(socket, SHUT_RDWR);
            found = true;
        }
        close(socket);
    }
    return found;
}

} // namespace

void hangUpPrograms(const QString &root)
{
    const QByteArray prefix = QFile::encodeName(root) + "/ioctl/";
    const QDeadlineTimer deadline(1000);
    while (shutDownConnections(prefix) && !deadline.hasExpired())
        std::this_thread::yield();
}
