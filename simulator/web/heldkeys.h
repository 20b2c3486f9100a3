#pragma once

#include "simulator/web/pagekey.h"

#include <QJsonObject>
#include <QObject>

#include <map>
#include <set>

/// Who holds which key down. A key goes down with its first holder and comes up with its last; consoles and scripts,
/// which press through the bed alone, are one holder together, and when they let go the key is up for everybody.
class HeldKeys : public QObject
{
    Q_OBJECT
public:
    using Holder = const void *; ///< Never followed.

    /// @param bed borrowed.
    explicit HeldKeys(TestBed &bed, QObject *parent = nullptr);

    void press(Holder holder, PageKey key);
    /// Does nothing for a key that this one does not hold.
    void release(Holder holder, PageKey key);
    void releaseAll(Holder holder);

    /// The "held" message.
    QJsonObject message() const;

signals:
    /// A key went down or up.
    void changed();

private:
    void note(PageKey key, bool pressed);

    TestBed &m_bed;
    std::map<PageKey, std::set<Holder>> m_holders; // those that are held only
    bool m_setting = false;                        // what the bed tells is our own doing
};
