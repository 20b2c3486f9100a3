#include "simulator/coreservice/lineserver.h"

#include "simulator/coreservice/clientsession.h"

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
