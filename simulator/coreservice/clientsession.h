#pragma once

#include "simulator/coreservice/propertytree.h"
#include "simulator/coreservice/request.h"
#include "simulator/coreservice/requestsplitter.h"

#include <QObject>
#include <QSet>
#include <QTcpSocket>

/// One client of the core service: takes its requests, answers them and passes on the news of the nodes it opened.
///
/// A signed request is answered by a block, "{NNNN" ... "}", that goes out in one piece; one without a signature by
/// the block's lines alone. What a request changes is told first, to every client, then the request is answered.
class ClientSession : public QObject
{
    Q_OBJECT
public:
    /// A client that lets more than this pile up unread is cut off.
    static constexpr qint64 maxUnsentBytes = 8 * 1024 * 1024;

    /// @param socket a connected one; becomes the session's own.
    /// @param tree borrowed, outlives the session.
    ClientSession(QTcpSocket *socket, PropertyTree &tree, QObject *parent);
    ~ClientSession() override;

    void cutOff();

signals:
    void requestReceived(const QString &line);
    void lineSent(const QString &line);
    void closed();

private:
    void readRequests();
    void handle(const RequestSplitter::Line &line);
    QStringList answer(const Request &request);
    QStringList open(const QString &node);
    QStringList close(const QString &node);
    void tellValue(const QString &node, const QString &name, const QString &value);
    void tellNode(const char *news, const QString &parent, const QString &child);
    void forget(const QString &node);
    bool isConnected() const;
    void send(const QStringList &lines);

    QTcpSocket *m_socket;
    PropertyTree &m_tree;
    RequestSplitter m_splitter;
    QSet<QString> m_opened;
};
