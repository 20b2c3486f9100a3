#include "simulator/linelog.h"

#include <algorithm>

void LineLog::append(const QString &line)
{
    m_lines.push_back(line);
    if (m_lines.size() > static_cast<size_t>(capacity)) {
        m_lines.pop_front();
        ++m_first;
    }
}

std::optional<qint64> LineLog::find(const QString &text, qint64 from) const
{
    for (qint64 number = std::max(from, m_first); number < end(); ++number) {
        if (m_lines[static_cast<size_t>(number - m_first)].contains(text))
            return number;
    }
    return std::nullopt;
}

QStringList LineLog::last(int count, qint64 from) const
{
    QStringList lines;
    for (qint64 number = std::max({from, m_first, end() - count}); number < end(); ++number)
        lines += m_lines[static_cast<size_t>(number - m_first)];
    return lines;
}
