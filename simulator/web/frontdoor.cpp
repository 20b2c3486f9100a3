#include "simulator/web/frontdoor.h"

#include "simulator/web/requestguard.h"

namespace {

/// Pictures must not queue up in the kernel for a page that is slow.
constexpr int sendBufferSize = 65536;

} // namespace

FrontDoor::FrontDoor(std::chrono::milliseconds patience, QObject *parent)
    : QTcpServer(parent)
    , m_patience(patience)
{
}

void FrontDoor::incomingConnection(qintptr descriptor)
{
    auto *socket = new QTcpSocket(this); // the guard's from below on
    if (!socket->setSocketDescriptor(descriptor) || m_connections == mostConnections) {
        socket->abort();
        delete socket;
        return;
    }
    ++m_connections;
    connect(socket, &QObject::destroyed, this, [this] { --m_connections; });
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, sendBufferSize);
    auto *guard = new RequestGuard(socket, m_patience, this); // deletes itself
    connect(guard, &RequestGuard::passed, this, &FrontDoor::admit);
}

void FrontDoor::admit(QTcpSocket *socket, const RequestHead &head)
{
    if (head.isUpgrade) {
        emit upgradeRequested(socket);
        return;
    }
    socket->setParent(this);
    addPendingConnection(socket);
    emit socket->readyRead(); // what has been peeked at is news to the HTTP server
    QObject::disconnect(socket, &QTcpSocket::readyRead, nullptr, nullptr);
    // More is for nobody; left unread, it would hide that the client has gone.
    connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
}
