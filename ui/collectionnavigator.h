#pragma once

#include <QList>

class Collection;

/// The highlight of a screen: a list of collections, of which one may be the current one and looks hovered. The
/// collections are borrowed; one is removed before it is destroyed.
class CollectionNavigator
{
public:
    /// @param wrap whether the first one follows the last.
    explicit CollectionNavigator(bool wrap = false)
        : m_wrap(wrap)
    {
    }

    // Both move the highlight to the first collection that is not skipped.
    void append(Collection *collection);
    /// In front of @p before, or at the end where that is not in the list.
    void insert(Collection *before, Collection *collection);
    /// The highlight moves to the one before it, else to the first.
    void remove(Collection *collection);

    /// @param skipped shown, but passed over.
    void show(Collection *collection, bool skipped);
    void hide(Collection *collection);

    /// Back to the first one that is not skipped.
    void reset();
    // False: there is no further stop in this direction, the highlight stays.
    bool previous() { return step(-1); }
    bool next() { return step(1); }
    /// Selects the current one, if any.
    void select();

private:
    bool step(int direction);
    /// The next one that is not skipped, from @p index on; -1 where there is none.
    qsizetype seek(qsizetype index, int direction) const;

    QList<Collection *> m_collections;
    Collection *m_current = nullptr;
    const bool m_wrap;
};
