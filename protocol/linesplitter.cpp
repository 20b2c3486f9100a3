#include "protocol/linesplitter.h"

#include <QtGlobal>

void LineSplitter::warnOfDropped()
{
    qWarning("Dropped a line of more than %zu bytes from the device.", maxLineLength);
}

size_t LineSplitter::endOfWaiting(QByteArrayView chunk) const
{
    if (!chunk.isEmpty() && chunk.front() == '\n' && m_waiting.back() == '\r')
        return 1;
    for (qsizetype from = 1; (from = chunk.indexOf('\n', from)) > 0; ++from) {
        if (chunk[from - 1] == '\r')
            return size_t(from) + 1;
    }
    return 0;
}

void LineSplitter::wait(QByteArrayView rest)
{
    if (rest.isEmpty())
        return;
    // Two bytes of grace: the line end does not count.
    if (!m_dropping && m_waiting.size() + size_t(rest.size()) > maxLineLength + 2) {
        warnOfDropped();
        m_dropping = true;
        std::string().swap(m_waiting); // gives the memory back
    }
    if (m_dropping) {
        m_waiting.assign(1, rest.back()); // a CR, to know its LF by
        return;
    }
    if (m_waiting.size() + size_t(rest.size()) > (1 << 16))
        m_waiting.reserve(maxLineLength + 2); // at once: what growing leaves behind is not given back for long
    m_waiting.append(rest.data(), size_t(rest.size()));
}
