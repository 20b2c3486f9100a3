#pragma once

#include "protocol/incomingline.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>

/// The texts of property paths that have come by, found by their bytes, so that a known path costs no conversion.
/// Each has a note of the user's own beside it. Small by construction: a service that invents ever new paths
/// makes it start over.
template <typename Note> class PathCache
{
public:
    struct Entry
    {
        QString path;
        Note note{};
        quint32 noteVersion = 0; ///< For the user to tell an old note; 0 in a new entry.
    };

    /// The entry of this path, which is UTF-8. Valid until the next call.
    Entry &entryOf(QByteArrayView path)
    {
        const auto known = m_entries.find(QByteArray::fromRawData(path.data(), path.size()));
        if (known != m_entries.end())
            return *known;
        if (path.size() > longestPath) {
            m_uncached = Entry{textOf(path)};
            return m_uncached;
        }
        if (m_entries.size() >= mostEntries)
            m_entries.clear();
        return *m_entries.insert(path.toByteArray(), Entry{textOf(path)});
    }

private:
    // A 48 x 48 frame with every page open shows some 2000 properties; the longest path has about 50 bytes.
    static constexpr qsizetype mostEntries = 4096;
    static constexpr qsizetype longestPath = 128;

    QHash<QByteArray, Entry> m_entries;
    Entry m_uncached;
};
