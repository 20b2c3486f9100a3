#include "ui/collectionnavigator.h"

#include "ui/collection.h"

void CollectionNavigator::append(Collection *collection) { insert(nullptr, collection); }

void CollectionNavigator::insert(Collection *before, Collection *collection)
{
    const qsizetype index = m_collections.indexOf(before);
    m_collections.insert(index < 0 ? m_collections.size() : index, collection);
    reset();
}

void CollectionNavigator::remove(Collection *collection)
{
    const bool current = collection == m_current;
    if (current)
        previous();
    m_collections.removeAll(collection);
    if (current && m_current == collection) // there was none before it
        reset();
}

void CollectionNavigator::show(Collection *collection, bool skipped)
{
    if (!m_collections.contains(collection))
        return;
    collection->showAll(skipped);
    if (!m_current || (skipped && collection == m_current))
        reset();
}

void CollectionNavigator::hide(Collection *collection)
{
    if (!m_collections.contains(collection))
        return;
    if (collection == m_current)
        next();
    if (collection == m_current)
        previous();
    collection->hideAll();
    if (collection == m_current)
        reset();
}

void CollectionNavigator::reset()
{
    if (m_current)
        m_current->normal();
    const qsizetype first = seek(0, 1);
    m_current = first < 0 ? nullptr : m_collections[first];
    if (m_current)
        m_current->hover();
}

void CollectionNavigator::select()
{
    if (m_current)
        m_current->select();
}

bool CollectionNavigator::step(int direction)
{
    if (!m_current)
        return false;
    m_current->normal();
    qsizetype target = seek(m_collections.indexOf(m_current) + direction, direction);
    if (target < 0 && m_wrap)
        target = seek(direction > 0 ? 0 : m_collections.size() - 1, direction);
    if (target >= 0)
        m_current = m_collections[target];
    m_current->hover();
    return target >= 0;
}

qsizetype CollectionNavigator::seek(qsizetype index, int direction) const
{
    for (; index >= 0 && index < m_collections.size(); index += direction) {
        if (!m_collections[index]->isSkipped())
            return index;
    }
    return -1;
}
