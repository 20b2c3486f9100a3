#include "simulator/web/frontpage.h"

#include <QJsonDocument>

using namespace std::chrono_literals;

namespace {

/// Pictures that may be on their way, in buffers that we cannot see: a tunnel's, the browser's.
constexpr int mostPicturesUnderWay = 3;
/// A page that lets so many bytes pile up can as well come back later and get the present state.
constexpr qint64 mostUnsent = 4 * 1024 * 1024;
/// What the socket takes at all; beyond that it hangs up at once, and a browser does not get to read why.
constexpr quint64 mostReceived = 16 * PageMessage::largest;
/// How long a page may take to confirm that it has been closed.
constexpr auto farewellTime = 1s;

} // namespace

FrontPage::FrontPage(std::unique_ptr<QWebSocket> socket, std::chrono::milliseconds pingTime, QObject *parent)
    : QObject(parent)
    , m_socket(std::move(socket))
{
    m_socket->setMaxAllowedIncomingFrameSize(mostReceived);
    m_socket->setMaxAllowedIncomingMessageSize(mostReceived);
    m_socket->setReadBufferSize(0); // the request's limit was for the request
    connect(m_socket.get(), &QWebSocket::textMessageReceived, this, &FrontPage::read);
    connect(m_socket.get(), &QWebSocket::binaryMessageReceived, this,
        [this] { close(Binary, QStringLiteral("pages speak text")); });
    connect(m_socket.get(), &QWebSocket::pong, this,
        [this](quint64, const QByteArray &payload) { m_answeredPings = std::min(payload.toInt(), m_pings); });
    connect(m_socket.get(), &QWebSocket::disconnected, this, &FrontPage::gone);
    connect(&m_alive, &QTimer::timeout, this, &FrontPage::checkAlive);
    m_alive.start(pingTime);
}

FrontPage::~FrontPage()
{
    m_socket->disconnect(this);
    m_socket->abort();
}

void FrontPage::send(const QJsonObject &message)
{
    if (m_closing)
        return;
    m_socket->sendTextMessage(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
    if (m_socket->bytesToWrite() > mostUnsent)
        abort();
}

bool FrontPage::isReadyForPicture() const
{
    return !m_closing && m_socket->bytesToWrite() == 0 && m_pings - m_answeredPings < mostPicturesUnderWay;
}

void FrontPage::sendPicture(const QList<QByteArray> &pieces)
{
    for (const QByteArray &piece : pieces)
        m_socket->sendBinaryMessage(piece);
    m_socket->ping(QByteArray::number(++m_pings)); // its answer tells that they have been read
}

void FrontPage::read(const QString &text)
{
    if (m_closing)
        return;
    if (text.toUtf8().size() > PageMessage::largest)
        close(TooLarge, QStringLiteral("a message has at most %1 bytes").arg(PageMessage::largest));
    else if (const std::optional<PageMessage> message = parsePageMessage(text))
        emit messageReceived(*message);
    else
        close(Malformed, QStringLiteral("not understood: ") + text.left(60));
}

void FrontPage::checkAlive()
{
    if (m_pings > m_answeredPings && m_answeredPings == m_answeredBefore && m_pings > 0)
        return abort();
    m_answeredBefore = m_answeredPings;
    m_socket->ping(QByteArray::number(++m_pings));
}

void FrontPage::close(CloseCode code, const QString &reason)
{
    if (std::exchange(m_closing, true))
        return;
    m_alive.stop();
    m_socket->close(QWebSocketProtocol::CloseCode(code), reason);
    QTimer::singleShot(farewellTime, this, &FrontPage::abort);
}

void FrontPage::abort()
{
    m_closing = true;
    m_alive.stop();
    m_socket->abort();
}
