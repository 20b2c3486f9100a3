#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

/// Reads lines from a descriptor when asked to, without ever blocking. Holds no more than one chunk beyond a line.
class LineReader : public QObject
{
    Q_OBJECT
public:
    static constexpr qsizetype longestLine = 4096; ///< In bytes, without the line end.

    /// @param descriptor borrowed; a terminal, pipe or file.
    explicit LineReader(int descriptor, QObject *parent = nullptr);

    /// Asks for one line. Exactly one of the signals answers, never from within this call.
    void next();

signals:
    void lineRead(const QString &line);
    /// The next line was too long and has been dropped.
    void lineTooLong();
    /// There are no more lines.
    void closed();

private:
    void answer();
    void read();

    int m_descriptor;
    QSocketNotifier m_notifier;
    QByteArray m_buffer;
    bool m_skipping = false; // inside a line that is too long
    bool m_atEnd = false;
};
