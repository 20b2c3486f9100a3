#pragma once

#include "simulator/coreservice/propertytree.h"

#include <QTcpServer>

/// The door of the core service: clients come in on loopback TCP, each one gets a session on the tree.
class LineServer : public QObject
{
    Q_OBJECT
public:
    /// @param tree borrowed, outlives the server.
    explicit LineServer(PropertyTree &tree, QObject *parent = nullptr);

    /// @param port 0 takes any free one. False: see errorString().
    bool listen(quint16 port);
    bool isListening() const { return m_server.isListening(); }
    /// The last one listened on.
    quint16 port() const { return m_port; }
    QString errorString() const { return m_server.errorString(); }
    /// Nothing is under way: what was sent has arrived at the clients, and what they sent has been read.
    bool isQuiet() const;
    /// Cuts off every client and lets no new one in.
    void close();

signals:
    void requestReceived(const QString &line);
    void lineSent(const QString &line);

private:
    void admitClients();

    PropertyTree &m_tree;
    QTcpServer m_server;
    quint16 m_port = 0;
};
