#include "simulator/coreservice/clientsession.h"

#include "simulator/coreservice/answer.h"

ClientSession::ClientSession(QTcpSocket *socket, PropertyTree &tree, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_tree(tree)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(RequestSplitter::maxLineLength); // between two reads the answers find time to leave
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &ClientSession::readRequests);
    connect(m_socket, &QTcpSocket::disconnected, this, &ClientSession::closed);
    connect(&m_tree, &PropertyTree::valueChanged, this, &ClientSession::tellValue);
    connect(&m_tree, &PropertyTree::nodeAdded, this,
        [this](const QString &parentNode, const QString &child) { tellNode("NEW ", parentNode, child); });
    connect(&m_tree, &PropertyTree::nodeRemoved, this, [this](const QString &parentNode, const QString &child) {
        forget(PropertyTree::childPath(parentNode, child));
        tellNode("DEL ", parentNode, child);
    });
}

ClientSession::~ClientSession()
{
    for (const QString &node : std::as_const(m_opened))
        m_tree.unwatch(node);
}

void ClientSession::cutOff() { m_socket->abort(); }

void ClientSession::readRequests()
{
    const QList<RequestSplitter::Line> lines = m_splitter.feed(m_socket->readAll());
    for (const RequestSplitter::Line &line : lines)
        if (isConnected()) // a request may end in the link being dropped
            handle(line);
}

void ClientSession::handle(const RequestSplitter::Line &line)
{
    const QString text = QString::fromUtf8(line.text);
    if (text.isEmpty()) // somebody at a terminal pressed Return
        return;
    const Request request = parseRequest(text);
    QStringList lines;
    if (line.tooLong) {
        lines = {errorLine("?", "line too long, ignored")};
    } else {
        emit requestReceived(text);
        lines = answer(request);
    }
    if (!request.signature.isEmpty()) {
        lines.prepend('{' + request.signature);
        lines.append("}");
    }
    send(lines);
}

QStringList ClientSession::answer(const Request &request)
{
    switch (request.verb) {
    case Request::Verb::Open: return open(request.path);
    case Request::Verb::Close: return close(request.path);
    default: return answerTo(m_tree, request);
    }
}

QStringList ClientSession::open(const QString &node)
{
    if (!m_tree.node(node))
        return {errorLine(node, "no such node")};
    if (!m_opened.contains(node)) {
        m_opened.insert(node);
        m_tree.watch(node);
    }
    return {"o- " + node};
}

QStringList ClientSession::close(const QString &node)
{
    if (!m_tree.node(node))
        return {errorLine(node, "no such node")};
    forget(node);
    return {"c- " + node};
}

void ClientSession::tellValue(const QString &node, const QString &name, const QString &value)
{
    if (m_opened.contains(node))
        send({"CHG " + node + '.' + name + '=' + escapeValue(value)});
}

void ClientSession::tellNode(const char *news, const QString &parentNode, const QString &child)
{
    if (m_opened.contains(parentNode))
        send({news + PropertyTree::childPath(parentNode, child)});
}

void ClientSession::forget(const QString &node)
{
    if (m_opened.remove(node))
        m_tree.unwatch(node);
}

bool ClientSession::isConnected() const { return m_socket->state() == QAbstractSocket::ConnectedState; }

void ClientSession::send(const QStringList &lines)
{
    if (lines.isEmpty() || !isConnected())
        return;
    m_socket->write((lines.join("\r\n") + "\r\n").toUtf8());
    if (m_socket->bytesToWrite() > maxUnsentBytes) {
        qWarning("A client does not read what it asked for: cut off.");
        cutOff();
        return;
    }
    for (const QString &line : lines)
        emit lineSent(line);
}
