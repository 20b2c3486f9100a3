#pragma once

#include <QStringList>

#include <deque>
#include <optional>

/// The last lines of a stream. A line keeps its number, counted from 0, for the life of the log.
class LineLog
{
public:
    static constexpr qsizetype capacity = 10000; ///< Older lines are forgotten.

    void append(const QString &line);
    /// The number that the next line will get.
    qint64 end() const { return m_first + static_cast<qint64>(m_lines.size()); }
    /// The first line from this number on that contains the text, if it is there and still remembered.
    std::optional<qint64> find(const QString &text, qint64 from) const;
    /// The last lines, oldest first, at most this many and none before this number.
    QStringList last(int count, qint64 from = 0) const;

private:
    std::deque<QString> m_lines;
    qint64 m_first = 0;
};
