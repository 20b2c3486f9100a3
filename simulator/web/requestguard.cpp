#include "simulator/web/requestguard.h"

#include <algorithm>
#include <sys/socket.h>

using namespace std::chrono_literals;

namespace {

/// How long a client may take to read why it was refused.
constexpr auto farewellTime = 1s;

struct Refusal
{
    int status;
    const char *text;
};

constexpr Refusal refusals[] = {
    {400, "Bad Request"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {408, "Request Timeout"},
    {411, "Length Required"},
    {413, "Content Too Large"},
    {431, "Request Header Fields Too Large"},
};

QByteArray refusalText(int status)
{
    const auto *row = std::ranges::find(refusals, status, &Refusal::status);
    Q_ASSERT(row != std::end(refusals));
    const QByteArray reason = QByteArray::number(status) + ' ' + row->text;
    return "HTTP/1.1 " + reason + "\r\nContent-Type: text/plain\r\nContent-Length: "
        + QByteArray::number(reason.size() + 1) + "\r\nCache-Control: no-store\r\nX-Content-Type-Options: nosniff\r\n"
        + (status == 405 ? "Allow: GET, POST\r\n" : "") + "Connection: close\r\n\r\n" + reason + '\n';
}

} // namespace

RequestGuard::RequestGuard(QTcpSocket *socket, std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(RequestHead::longest + RequestHead::longestBody + 1);
    m_deadline.setSingleShot(true);
    connect(m_socket, &QTcpSocket::readyRead, this, &RequestGuard::look);
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    connect(&m_deadline, &QTimer::timeout, this, [this] { refuse(408); });
    m_deadline.start(patience);
}

void RequestGuard::look()
{
    if (m_headSize == 0) {
        const QByteArray text = m_socket->peek(RequestHead::longest);
        const qsizetype end = text.indexOf("\r\n\r\n");
        if (end < 0 && text.size() == RequestHead::longest)
            return refuse(431);
        if (end < 0)
            return;
        m_headSize = end + 4;
        m_head = parseRequestHead(text.first(m_headSize));
        if (m_head.refusal != 0)
            return refuse(m_head.refusal);
        if (m_head.expectsContinue)
            m_socket->write("HTTP/1.1 100 Continue\r\n\r\n");
    }
    lookAtBody();
}

void RequestGuard::lookAtBody()
{
    const qint64 missing = m_headSize + m_head.bodySize - m_socket->bytesAvailable();
    if (missing < 0)
        return refuse(400); // a second request would slip past us
    if (missing > 0)
        return;
    m_deadline.stop();
    m_socket->disconnect(this);
    m_socket->setParent(nullptr);
    emit passed(m_socket, m_head);
    deleteLater();
}

void RequestGuard::refuse(int status)
{
    m_socket->disconnect(this);
    m_deadline.disconnect(this);
    m_socket->write(refusalText(status));
    m_socket->flush();
    // With bytes of the client unread, hanging up at once would take the answer back: we let it hang up first.
    ::shutdown(int(m_socket->socketDescriptor()), SHUT_WR);
    connect(m_socket, &QTcpSocket::readyRead, m_socket, [socket = m_socket] { socket->readAll(); });
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    connect(&m_deadline, &QTimer::timeout, this, &QObject::deleteLater);
    m_deadline.start(farewellTime);
    m_socket->readAll();
}
