#include "simulator/hardware/eventdevice.h"

#include <cerrno>
#include <linux/input.h>
#include <unistd.h>

namespace {

constexpr qsizetype mostWaiting = 65536;

/// What Qt's keyboard plugin asks of its device.
constexpr unsigned long getLedStates = 0x80024519;
constexpr unsigned long grabDevice = 0x40044590;
constexpr unsigned long setRepeat = 0x40084503;

} // namespace

EventDevice::EventDevice(RecordFormat format)
    : m_format(format)
    , m_readable(QSocketNotifier::Read)
    , m_writable(QSocketNotifier::Write)
{
    if (m_terminal.farPath().isEmpty())
        return;
    m_readable.setSocket(m_terminal.fd());
    m_writable.setSocket(m_terminal.fd());
    connect(&m_readable, &QSocketNotifier::activated, this, &EventDevice::receive);
    connect(&m_writable, &QSocketNotifier::activated, this, &EventDevice::send);
    // while nobody has it open, the terminal reports its hang-up without end: we listen from an open() to that
    connect(
        this, &EventDevice::openedByProgram, this, [this] { m_readable.setEnabled(true); }, Qt::QueuedConnection);
}

void EventDevice::report(const EventRecord &record, std::chrono::microseconds time)
{
    deliver(encodeRecord(record, time, m_format) + encodeRecord({EV_SYN, SYN_REPORT, 0}, time, m_format));
}

void EventDevice::deliver(const QByteArray &bytes)
{
    if (path().isEmpty())
        return;
    if (!m_terminal.isOpened())
        return closedByProgram(); // which receive() may not have noticed yet
    if (m_waiting.size() + bytes.size() > mostWaiting) {
        qWarning("The program does not read its input device: %d bytes are lost", int(bytes.size()));
        return;
    }
    m_readable.setEnabled(true); // the notice of the open() may still be on its way
    m_waiting += bytes;
    send();
}

void EventDevice::send()
{
    const ssize_t written = ::write(m_terminal.fd(), m_waiting.constData(), size_t(m_waiting.size()));
    if (written > 0)
        m_waiting.remove(0, written);
    m_writable.setEnabled(!m_waiting.isEmpty());
}

void EventDevice::receive()
{
    char chunk[1024];
    const ssize_t count = ::read(m_terminal.fd(), chunk, sizeof chunk);
    if (count < 0 && errno == EIO)
        closedByProgram();
    if (count <= 0)
        return;
    m_received.append(chunk, count);
    const QByteArray records = m_received.first(m_received.size() - m_received.size() % compactRecordSize);
    m_received.remove(0, records.size());
    for (qsizetype at = 0; at < records.size(); at += compactRecordSize) {
        const EventRecord record = decodeCompactRecord(records.constData() + at);
        if (record.type == EV_LED)
            emit ledWritten(record.code, record.value);
    }
}

void EventDevice::closedByProgram()
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    m_received.clear();
    m_waiting.clear();
    m_terminal.discardUnread();
}

long EventDevice::ioctl(unsigned long request, ClientMemory argument)
{
    switch (request) {
    case getLedStates:
        if (auto *states = argument.target<uint16_t>()) {
            *states = 0;
            return 0;
        }
        return -EFAULT;
    case grabDevice:
    case setRepeat: return 0;
    default: return -EINVAL;
    }
}

void EventDevice::opened() { emit openedByProgram(); }
