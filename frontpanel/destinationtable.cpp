#include "frontpanel/destinationtable.h"

#include <QStringTokenizer>

void DestinationTable::setCount(int count)
{
    Q_ASSERT(count >= 0 && count <= capacity);
    m_count = count;
}

Destination &DestinationTable::operator[](int destination)
{
    Q_ASSERT(destination >= 1 && destination <= capacity);
    return m_destinations[static_cast<size_t>(destination - 1)];
}

void DestinationTable::readSources(const QString &status)
{
    int destination = 0;
    for (const QStringView field : QStringTokenizer(status, u';')) {
        if (++destination > m_count)
            break;
        const int source = field == u"0" ? 0 : field.mid(1).toInt();
        (*this)[destination].source = static_cast<uint8_t>(source);
    }
}

void DestinationTable::readLocks(const QString &status)
{
    int destination = 0;
    for (const QStringView field : QStringTokenizer(status, u';')) {
        if (++destination > m_count)
            break;
        (*this)[destination].locked = field.startsWith(u'U') || field.startsWith(u'L');
    }
}

void DestinationTable::editSources()
{
    for (Destination &each : m_destinations)
        each.pendingSource = each.source;
}

void DestinationTable::editLocks()
{
    for (Destination &each : m_destinations)
        each.pendingLock = each.locked;
}

QString DestinationTable::sourceChanges() const
{
    QString changes;
    for (int d = 1; d <= m_count; ++d) {
        const Destination &destination = m_destinations[static_cast<size_t>(d - 1)];
        if (destination.pendingSource == destination.source)
            continue;
        if (destination.pendingSource != 0)
            changes += QString("I%1:-O%2;").arg(destination.pendingSource).arg(d);
        else
            changes += QString("I%1xO%2;").arg(destination.source).arg(d);
    }
    return changes;
}

QString DestinationTable::lockChanges(bool lock) const
{
    QString changes;
    for (int d = 1; d <= m_count; ++d) {
        const Destination &destination = m_destinations[static_cast<size_t>(d - 1)];
        if (destination.pendingLock != destination.locked && destination.pendingLock == lock)
            changes += QString("O%1;").arg(d);
    }
    return changes;
}
