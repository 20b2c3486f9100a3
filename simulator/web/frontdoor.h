#pragma once

#include "simulator/web/requesthead.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <chrono>

/// Accepts connections on loopback and looks at each one's request before anybody else does. A WebSocket upgrade for
/// "/front" is announced; every other good request becomes a pending connection, for the HTTP server that this is
/// bound to. That one sees no second request on a connection.
class FrontDoor : public QTcpServer
{
    Q_OBJECT
public:
    /// @param patience how long a client may take to send its request.
    explicit FrontDoor(std::chrono::milliseconds patience, QObject *parent = nullptr);

    /// Open connections at a time, WebSockets among them; one more is hung up on.
    static constexpr int mostConnections = 64;

signals:
    /// The untouched request waits in the socket, which belongs to the receiver.
    void upgradeRequested(QTcpSocket *socket);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void admit(QTcpSocket *socket, const RequestHead &head);

    std::chrono::milliseconds m_patience;
    int m_connections = 0;
};
