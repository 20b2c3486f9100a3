#pragma once

#include "simulator/web/requesthead.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

/// Watches over a new connection until its first request is complete, and lets only a request in order pass. All
/// others it answers itself and hangs up. It takes nothing from the socket of a request that passes. Deletes itself
/// when it is done.
class RequestGuard : public QObject
{
    Q_OBJECT
public:
    /// @param socket a connected one; becomes the guard's own. @param patience how long the request may take.
    RequestGuard(QTcpSocket *socket, std::chrono::milliseconds patience, QObject *parent);

signals:
    /// The whole request and nothing behind it waits in the socket, which now belongs to whoever takes this, and has
    /// no parent.
    void passed(QTcpSocket *socket, const RequestHead &head);

private:
    void look();
    void lookAtBody();
    void refuse(int status);

    QTcpSocket *m_socket;
    RequestHead m_head;
    qint64 m_headSize = 0; // 0 until the head is complete
    QTimer m_deadline;
};
