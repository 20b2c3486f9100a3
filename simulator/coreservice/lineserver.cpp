#include "simulator/coreservice/lineserver.h"

#include "simulator/coreservice/clientsession.h"

#include <QFile>

#include <algorithm>

LineServer::LineServer(PropertyTree &tree, QObject *parent)
    : QObject(parent)
    , m_tree(tree)
{
    connect(&m_server, &QTcpServer::newConnection, this, &LineServer::admitClients);
}

bool LineServer::listen(quint16 port)
{
    if (!m_server.listen(QHostAddress::LocalHost, port))
        return false;
    m_port = m_server.serverPort();
    return true;
}

bool LineServer::isQuiet() const
{
    // On loopback the kernel shows both ends of a connection, each with what it has not got through and not read:
    // "SLOT: ADDRESS:PORT ADDRESS:PORT STATE UNSENT:UNREAD ..." in hexadecimal.
    QFile connections(QStringLiteral("/proc/self/net/tcp"));
    if (!connections.open(QIODevice::ReadOnly))
        return true;
    const QByteArray port = ':' + QByteArray::number(m_port, 16).rightJustified(4, '0').toUpper();
    const QList<QByteArray> lines = connections.readAll().split('\n');
    return std::none_of(lines.begin(), lines.end(), [&port](const QByteArray &line) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 5 || fields[3] != "01") // an open connection
            return false;
        return (fields[1].endsWith(port) && fields[4] != "00000000:00000000")
            || (fields[2].endsWith(port) && !fields[4].startsWith("00000000:"));
    });
}

void LineServer::close()
{
    m_server.close();
    const auto sessions = findChildren<ClientSession *>(QString(), Qt::FindDirectChildrenOnly);
    for (ClientSession *session : sessions)
        session->cutOff();
}

void LineServer::admitClients()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        auto *session = new ClientSession(socket, m_tree, this);
        connect(session, &ClientSession::requestReceived, this, &LineServer::requestReceived);
        connect(session, &ClientSession::lineSent, this, &LineServer::lineSent);
        connect(session, &ClientSession::closed, session, &QObject::deleteLater);
    }
}
