#pragma once

#include "hardware/framedescriptor.h"
#include "simulator/coreservice/propertytree.h"

#include <QList>

/// The video crosspoint, "/MEDIA/XP/VIDEO": which source feeds which destination, and which destinations are locked.
/// Its three status lists are its only memory, one field per port, ";" between them:
/// - DestinationConnectionStatus: "I4" for source 4, "0" for none;
/// - SourcePortStatus, DestinationPortStatus: a letter (T free, L locked, M muted, U both) and two hexadecimal digits,
///   two bits each, 3 for yes and 2 for no: from the low end connected, signal, HDCP, embedded audio.
class Crosspoint : public QObject
{
    Q_OBJECT
public:
    /// Needs the ports in the tree. Source n feeds destination n, as far as there are both.
    /// @param tree, frame borrowed, outlive the crosspoint.
    Crosspoint(PropertyTree &tree, const FrameDescriptor &frame, QObject *parent = nullptr);

    /// The source of each destination, 0 for none.
    QList<int> routes() const;
    /// Takes over these routes, except for locked destinations and sources that do not exist.
    void setRoutes(const QList<int> &routes);
    void unlockAll();

private:
    QString connectPorts(const QString &entries);
    QString setLocked(const QString &destinations, bool locked);
    QString refusal(const QString &entry, QList<int> &routes) const;
    bool isLocked(int destination) const;
    void storeRoutes(const QList<int> &routes);
    void refreshPortStatus(const QString &node);
    QString portStatus(bool output, int port) const;

    PropertyTree &m_tree;
    const FrameDescriptor &m_frame;
};
