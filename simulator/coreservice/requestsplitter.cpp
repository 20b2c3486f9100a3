#include "simulator/coreservice/requestsplitter.h"

#include <utility>

QList<RequestSplitter::Line> RequestSplitter::feed(const QByteArray &bytes)
{
    QList<Line> lines;
    qsizetype start = 0;
    for (qsizetype end = bytes.indexOf('\n'); end >= 0; end = bytes.indexOf('\n', start)) {
        append(bytes.mid(start, end - start));
        if (m_line.text.endsWith('\r'))
            m_line.text.chop(1);
        m_line.tooLong = m_line.text.size() > maxLineLength;
        lines.append(std::exchange(m_line, {}));
        start = end + 1;
    }
    append(bytes.mid(start));
    return lines;
}

void RequestSplitter::append(const QByteArray &bytes)
{
    // one byte to tell that it is too long, one more for the "\r"
    m_line.text += bytes.left(maxLineLength + 2 - m_line.text.size());
}
