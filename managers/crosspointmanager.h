#pragma once

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"

#include <QObject>

/// Mirrors the routing and the destination locks of the matrix, and carries out what the buttons ask for.
/// Values and arguments pass through as they are; their form is the front logic's matter.
class CrosspointManager : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    CrosspointManager();

    void propertyReceived(const QString &property, const QString &value) override { update(property, value); }
    void propertyChanged(const QString &property, const QString &value) override { update(property, value); }

signals:
    /// What feeds each destination, a field each: "I3;0;I12;..." Every value that arrives, changed or not.
    void connectionChanged(const QString &value);
    /// The state of each destination, a field each; locked ones begin with L or U.
    void lockStateChanged(const QString &value);

public slots:
    void connectionStateChanged(bool connected);
    /// @param params "I3:-O5;" routes source 3 to destination 5, "I7xO2;" cuts it; any number of them.
    void connect(const QString &params);
    /// @param params "O3;O5;"
    void lockDestination(const QString &params);
    void unlockDestination(const QString &params);

private:
    void update(const QString &property, const QString &value);

    const Dt3Property m_portStatus;
    const Dt3Property m_connectionStatus;
};
