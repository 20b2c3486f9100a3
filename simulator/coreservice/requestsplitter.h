#pragma once

#include <QByteArray>
#include <QList>

/// Cuts a stream of bytes into lines. They end in "\r\n" or "\n" and come out without it.
class RequestSplitter
{
public:
    static constexpr qsizetype maxLineLength = 64 * 1024;

    struct Line
    {
        QByteArray text;
        bool tooLong = false; ///< Longer than maxLineLength; text is only how it began.
    };

    /// The lines that these bytes complete. The rest waits for the next call.
    QList<Line> feed(const QByteArray &bytes);

private:
    void append(const QByteArray &bytes);

    Line m_line;
};
