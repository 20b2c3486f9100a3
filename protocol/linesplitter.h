#pragma once

#include <QByteArrayView>

#include <cstring>
#include <string>

/// Cuts a stream of bytes, in chunks of any size, into lines that end with CR LF.
/// A line longer than maxLineLength bytes is dropped up to its line end, with one warning.
class LineSplitter
{
public:
    static constexpr size_t maxLineLength = 1 << 20;

    /// Calls handle(QByteArrayView) for every complete, non-empty line, without its line end. The view is good
    /// for the call only. handle must not feed this splitter; it may reset() it.
    template <typename Handle> void feed(QByteArrayView chunk, Handle &&handle);

    /// Forgets the beginning of a line that is still waiting for its rest.
    void reset()
    {
        std::string().swap(m_waiting);
        m_dropping = false;
    }

private:
    /// Length of chunk's part of the line that is waiting, line end included; 0 if it does not end here.
    size_t endOfWaiting(QByteArrayView chunk) const;
    void wait(QByteArrayView rest);
    static void warnOfDropped();

    std::string m_waiting;   ///< The beginning of a line; of one being dropped at most its last byte.
    std::string m_completed; ///< A line put together from several chunks, while it is handled.
    bool m_dropping = false; ///< The waiting line is too long.
};

template <typename Handle> void LineSplitter::feed(QByteArrayView chunk, Handle &&handle)
{
    if (!m_waiting.empty()) {
        const size_t length = endOfWaiting(chunk);
        if (length == 0) {
            wait(chunk);
            return;
        }
        wait(chunk.first(qsizetype(length)));
        chunk = chunk.sliced(qsizetype(length));
        const bool tooLong = m_dropping;
        m_completed.swap(m_waiting);
        m_dropping = false;
        if (!tooLong && m_completed.size() > 2)
            handle(QByteArrayView(m_completed.data(), qsizetype(m_completed.size() - 2)));
        m_completed.clear();
        m_completed.swap(m_waiting); // one large buffer is enough, and is used again
    }
    const char *begin = chunk.data();
    const char *const end = begin + chunk.size();
    for (const char *from = begin; from < end;) {
        const auto *lineFeed = static_cast<const char *>(std::memchr(from, '\n', size_t(end - from)));
        if (!lineFeed)
            break;
        from = lineFeed + 1;
        if (lineFeed == begin || lineFeed[-1] != '\r')
            continue; // a lone LF is part of the line
        const size_t length = size_t(lineFeed - 1 - begin);
        if (length > maxLineLength)
            warnOfDropped();
        else if (length > 0)
            handle(QByteArrayView(begin, qsizetype(length)));
        begin = from;
    }
    if (begin < end)
        wait(QByteArrayView(begin, end));
}
