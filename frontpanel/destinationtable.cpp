#include "frontpanel/destinationtable.h"

#include <QStringList>

#include <algorithm>

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
    const QStringList fields = status.split(';');
    const auto used = std::min<qsizetype>(fields.size(), m_count);
    for (qsizetype i = 0; i < used; ++i) {
        const QString &field = fields[i];
        const int source = field == "0" ? 0 : field.mid(1).toInt();
        m_destinations[static_cast<size_t>(i)].source = static_cast<uint8_t>(source);
    }
}

void DestinationTable::readLocks(const QString &status)
{
    const QStringList fields = status.split(';');
    const auto used = std::min<qsizetype>(fields.size(), m_count);
    for (qsizetype i = 0; i < used; ++i)
        m_destinations[static_cast<size_t>(i)].locked = fields[i].startsWith('U') || fields[i].startsWith('L');
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
