#pragma once

#include "simulator/coreservice/propertytree.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QTimer>

/// The device's clock, "/MANAGEMENT/DATETIME": CurrentTime as "2024-05-06T12:34:56", Uptime as "3d 04:05:06".
/// A new CurrentTime, by method or from the device itself, sets the clock.
/// It ticks only while somebody has the node open, and is right whenever somebody asks.
class DeviceClock : public QObject
{
    Q_OBJECT
public:
    /// Starts at the machine's local time. @param tree borrowed, outlives the clock.
    explicit DeviceClock(PropertyTree &tree, QObject *parent = nullptr);

private:
    QDateTime now() const;
    QString setTime(const QString &time);
    void refresh();
    void tick();
    void scheduleTick();

    PropertyTree &m_tree;
    qint64 m_offset; ///< Ahead of UTC, milliseconds.
    QElapsedTimer m_upSince;
    QTimer m_tick;
    bool m_isRefreshing = false;
};
