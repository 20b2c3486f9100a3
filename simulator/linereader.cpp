#include "simulator/linereader.h"

#include <array>
#include <cerrno>
#include <unistd.h>

LineReader::LineReader(int descriptor, QObject *parent)
    : QObject(parent)
    , m_descriptor(descriptor)
    , m_notifier(descriptor, QSocketNotifier::Read)
{
    m_notifier.setEnabled(false);
    connect(&m_notifier, &QSocketNotifier::activated, this, &LineReader::read);
}

void LineReader::next() { QMetaObject::invokeMethod(this, &LineReader::answer, Qt::QueuedConnection); }

void LineReader::answer()
{
    const qsizetype end = m_buffer.indexOf('\n');
    if (end < 0 && m_buffer.size() > longestLine) {
        m_skipping = true;
        m_buffer.clear();
    }
    const bool complete = end >= 0 || (m_atEnd && (m_skipping || !m_buffer.isEmpty()));
    if (!complete) {
        if (m_atEnd)
            emit closed();
        else
            m_notifier.setEnabled(true);
        return;
    }
    QByteArray line = end < 0 ? m_buffer : m_buffer.first(end);
    m_buffer.remove(0, line.size() + 1);
    if (line.endsWith('\r'))
        line.chop(1);
    if (std::exchange(m_skipping, false) || line.size() > longestLine)
        emit lineTooLong();
    else
        emit lineRead(QString::fromUtf8(line));
}

void LineReader::read()
{
    std::array<char, 4096> chunk;
    const ssize_t count = ::read(m_descriptor, chunk.data(), chunk.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    m_notifier.setEnabled(false);
    if (count > 0)
        m_buffer.append(chunk.data(), count);
    else
        m_atEnd = true; // a descriptor that cannot be read has no more lines either
    answer();
}
