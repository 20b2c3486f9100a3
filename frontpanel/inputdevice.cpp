#include "frontpanel/inputdevice.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

InputDevice::InputDevice(const QString &path, const Kind &kind, QObject *owner)
    : m_kind(kind)
{
    const QByteArray localPath = path.toLocal8Bit();
    m_fd = ::open(localPath.constData(), kind.accessMode | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (m_fd < 1) {
        qWarning("Cannot open %s: %s", localPath.constData(), std::strerror(errno));
        return;
    }
    qDebug("Opened %s as %s", localPath.constData(), kind.openedAs);
    m_notifier.emplace(m_fd, QSocketNotifier::Read, owner);
}

InputDevice::~InputDevice()
{
    m_notifier.reset(); // before its descriptor can belong to somebody else
    if (m_fd > 0)
        ::close(m_fd);
}

std::span<const InputRecord> InputDevice::read()
{
    const ssize_t size = ::read(m_fd, m_records.data(), sizeof m_records);
    const int error = size < 0 ? errno : 0;
    if (error == EAGAIN || error == EINTR)
        return {};

    const auto bytes = static_cast<size_t>(size);
    if (size < 1 || bytes % sizeof(InputRecord) != 0) {
        qWarning("Error reading %s", m_kind.readOf);
        const bool vanished = size == 0 || error == ENODEV || error == EIO;
        if (vanished && m_notifier)
            m_notifier->setEnabled(false); // it would stay readable and wake us without end
        return {};
    }
    return std::span(m_records).first(bytes / sizeof(InputRecord));
}

void InputDevice::write(const InputRecord &record)
{
    // A panel that does not take the record loses one LED change; the next one may well arrive.
    [[maybe_unused]] const ssize_t written = ::write(m_fd, &record, sizeof record);
}
