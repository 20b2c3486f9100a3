#include "frontpanel/inputdevice.h"

#include <QTimer>

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
    if (error == EINTR)
        return {};

    const auto bytes = static_cast<size_t>(size);
    if (size < 1 || bytes % sizeof(InputRecord) != 0) {
        if (!m_gone)
            qWarning("Error reading %s", m_kind.name);
        m_gone = size < 1 && error != EAGAIN;
        if (m_gone && m_notifier)
            lookAgainLater();
        return {};
    }
    m_gone = false;
    return std::span(m_records).first(bytes / sizeof(InputRecord));
}

/// A device that is gone stays readable: waiting on it would wake us without end.
void InputDevice::lookAgainLater()
{
    m_notifier->setEnabled(false);
    QTimer::singleShot(std::chrono::seconds(1), &*m_notifier, [this] { m_notifier->setEnabled(true); });
}

void InputDevice::write(const InputRecord &record)
{
    if (m_fd < 1)
        return; // which has been said
    ssize_t written = 0;
    do
        written = ::write(m_fd, &record, sizeof record);
    while (written < 0 && errno == EINTR);
    // One LED change is lost; the next one may well arrive.
    const bool lost = written != sizeof record;
    if (lost && !m_losing)
        qWarning("Error writing %s: %s", m_kind.name, written < 0 ? std::strerror(errno) : "cut short");
    m_losing = lost;
}
