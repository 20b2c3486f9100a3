#include "protocol/dt3manager.h"

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"

#include <QCoreApplication>
#include <QDebug>
#include <QNetworkProxy>
#include <QPointer>
#include <QTimerEvent>

using namespace Qt::StringLiterals;

namespace {

constexpr int openAttempts = 32;
constexpr qint64 mostUnread = 1 << 18;     // bytes that a device which does not read may leave with us
constexpr qint64 readBufferSize = 1 << 16; // bytes: what a flood can pile up in between two turns of the event loop

QPointer<Dt3Manager> &self()
{
    static QPointer<Dt3Manager> pointer;
    return pointer;
}

} // namespace

Dt3Manager *Dt3Manager::instance()
{
    if (!self()) {
        self() = new Dt3Manager(QStringLiteral("127.0.0.1"), QStringLiteral("6107")); // owned by the post routine
        qAddPostRoutine([] { delete self().data(); });
    }
    return self();
}

void Dt3Manager::forget(Dt3Sink *sink)
{
    if (self())
        self()->dropSink(sink);
}

Dt3Manager::Dt3Manager(const QString &host, const QString &port, const Dt3Times &times)
    : m_host(host)
    , m_port(port)
    , m_times(times)
{
    m_socket.setReadBufferSize(readBufferSize);
    m_socket.setProxy(QNetworkProxy::NoProxy); // the service is on this very board
    connect(&m_socket, &QTcpSocket::readyRead, this, &Dt3Manager::readTcpData);
    connect(&m_socket, &QTcpSocket::connected, this, &Dt3Manager::connected);
    connect(&m_socket, &QTcpSocket::disconnected, this, &Dt3Manager::disconnected);
}

Dt3Manager::~Dt3Manager()
{
    m_socket.disconnect(this); // whoever would hear of the loss is going too
    if (isConnected()) {
        m_socket.flush(); // what was asked for last still goes out
        m_socket.close();
        qDebug("Connection closed.");
    }
}

void Dt3Manager::connectToDevice()
{
    startConnecting();
    qDebug().noquote().nospace() << "Connecting to " << m_host << ':' << m_port << " ...";
    m_reconnectTimer.start(int(m_times.reconnect.count()), this);
    startConnectionTimeout();
}

void Dt3Manager::startConnecting() { m_socket.connectToHost(m_host, m_port.toUShort(), QIODevice::ReadWrite); }

void Dt3Manager::startConnectionTimeout()
{
    m_connectionTimeoutTimer.start(int(m_times.connectionTimeout.count()), this);
}

void Dt3Manager::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_reconnectTimer.timerId()) {
        const QAbstractSocket::SocketState state = m_socket.state();
        if (state == QAbstractSocket::UnconnectedState) {
            startConnecting();
            if (m_lastSocketState != QAbstractSocket::UnconnectedState)
                qDebug().noquote().nospace() << "Reconnecting to " << m_host << ':' << m_port << " ...";
        }
        m_lastSocketState = state;
    } else if (event->timerId() == m_connectionTimeoutTimer.timerId()) {
        m_connectionTimeoutTimer.stop();
        emit connectionTimeoutExpired();
    } else {
        retryOpen(event->timerId());
    }
}

void Dt3Manager::connected()
{
    m_connectionTimeoutTimer.stop();
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1); // a key press is one short line
    m_spareValue.clear();                                         // gives back what the connection before needed
    m_splitter.reset(); // a line cut off by the loss has no rest, nor has an answer
    m_pendingRequests.leaveBlock();
    emit connectionStateChanged(true);
    qDebug("Connected.");
}

void Dt3Manager::disconnected()
{
    startConnectionTimeout();
    emit connectionStateChanged(false);
    qDebug("Disonnected.");
}

QString Dt3Manager::nodeOf(const QString &propertyPath) { return propertyPath.section(u'.', 0, 0); }

bool Dt3Manager::writeLine(const QString &line)
{
    if (m_socket.bytesToWrite() > mostUnread) {
        qWarning("The device does not read: connecting anew.");
        // not from here: whoever asks is not to hear of a loss in the middle of it
        QMetaObject::invokeMethod(
            &m_socket, [this] { m_socket.abort(); }, Qt::QueuedConnection);
        return false;
    }
    return m_socket.write((line + u"\r\n"_s).toUtf8()) > 0;
}

void Dt3Manager::request(Dt3Sink *sink, const QString &text)
{
    const quint16 signature = m_pendingRequests.add(sink);
    if (isConnected())
        writeLine(QStringLiteral("%1#").arg(signature, 4, 10, QLatin1Char('0')) + text);
}

void Dt3Manager::get(Dt3Sink *sink, const QString &path) { request(sink, u"GET "_s + path); }

void Dt3Manager::set(Dt3Sink *sink, const QString &propertyPath, const QString &value)
{
    request(sink, u"SET "_s + propertyPath + u'=' + Dt3Property::rawValueFor(propertyPath, value));
}

void Dt3Manager::call(Dt3Sink *sink, const QString &methodPath, const QString &arguments)
{
    request(sink, u"CALL "_s + methodPath + u'(' + arguments + u')');
}

Dt3OpenResult Dt3Manager::open(Dt3Sink *sink, const QString &nodePath)
{
    const auto held = m_subscriptions.find(nodePath);
    if (held != m_subscriptions.end()) {
        if (!held->second.contains(sink)) {
            held->second.append(sink);
            ++m_subscriptionsVersion;
        }
        return DT3_OPEN_RESULT_OK;
    }
    if (!isConnected())
        return DT3_OPEN_RESULT_SOCKET_NOT_OPEN;
    if (!writeLine(u"OPEN "_s + nodePath))
        return DT3_OPEN_RESULT_WRITE_ERROR;

    const auto [attempt, isNew] = m_observerOpenAttempts.try_emplace(nodePath, OpenAttempt{openAttempts, {}, {}});
    if (isNew)
        attempt->second.timer.start(int(m_times.openRetry.count()), this);
    if (!attempt->second.sinks.contains(sink))
        attempt->second.sinks.append(sink);
    return DT3_OPEN_RESULT_OK;
}

void Dt3Manager::retryOpen(int timerId)
{
    for (auto attempt = m_observerOpenAttempts.begin(); attempt != m_observerOpenAttempts.end(); ++attempt) {
        if (attempt->second.timer.timerId() != timerId)
            continue;
        const QString nodePath = attempt->first;
        if (--attempt->second.attemptsLeft < 1) {
            qCritical() << "Failed to OPEN " << nodePath << " after " << openAttempts << " attempts";
            m_observerOpenAttempts.erase(attempt);
        } else if (isConnected()) {
            writeLine(u"OPEN "_s + nodePath);
        }
        return;
    }
}

void Dt3Manager::confirmOpen(const QString &nodePath)
{
    const auto attempt = m_observerOpenAttempts.find(nodePath);
    if (attempt == m_observerOpenAttempts.end()) {
        qCritical() << "Expected observerOpenAttempts to contain " << nodePath << " but it did not.";
        return;
    }
    m_subscriptions[nodePath] = attempt->second.sinks;
    ++m_subscriptionsVersion;
    m_observerOpenAttempts.erase(attempt);
}

void Dt3Manager::close(Dt3Sink *sink, const QString &nodePath)
{
    const auto attempt = m_observerOpenAttempts.find(nodePath);
    if (attempt != m_observerOpenAttempts.end()) {
        attempt->second.sinks.removeOne(sink);
        if (!attempt->second.sinks.isEmpty())
            return;
        m_observerOpenAttempts.erase(attempt);
    }
    const auto held = m_subscriptions.find(nodePath);
    if (held != m_subscriptions.end()) {
        held->second.removeOne(sink);
        ++m_subscriptionsVersion;
        if (!held->second.isEmpty())
            return;
        m_subscriptions.erase(held);
    }
    if (isConnected())
        writeLine(u"CLOSE "_s + nodePath);
}

void Dt3Manager::dropSink(Dt3Sink *sink)
{
    m_pendingRequests.forget(sink);
    QStringList nodes;
    for (const auto &[node, sinks] : m_subscriptions) {
        if (sinks.contains(sink))
            nodes.append(node);
    }
    for (const auto &[node, attempt] : m_observerOpenAttempts) {
        if (attempt.sinks.contains(sink))
            nodes.append(node);
    }
    for (const QString &node : std::as_const(nodes))
        close(sink, node);
}

void Dt3Manager::readTcpData() { receive(m_socket.readAll()); }

void Dt3Manager::receive(QByteArrayView bytes)
{
    if (const auto *nul = bytes.isEmpty() ? nullptr : std::memchr(bytes.data(), 0, size_t(bytes.size())))
        bytes = bytes.first(static_cast<const char *>(nul) - bytes.data());
    m_splitter.feed(bytes, [this](QByteArrayView line) { handleLine(line); });
}

void Dt3Manager::handleLine(QByteArrayView bytes)
{
    const IncomingLine line = IncomingLine::parse(bytes);
    switch (line.kind) {
    case IncomingLine::BlockStart: m_pendingRequests.startBlock(line.signature); break;
    case IncomingLine::BlockEnd: m_pendingRequests.endBlock(); break;
    case IncomingLine::Node:
        if (Dt3Sink *sink = m_pendingRequests.answeredSink())
            sink->nodeReceived(textOf(line.path));
        break;
    case IncomingLine::Opened: confirmOpen(textOf(line.path)); break;
    case IncomingLine::Property:
    case IncomingLine::Changed: propertyLine(line); break;
    case IncomingLine::Added:
    case IncomingLine::Removed: childLine(line); break;
    case IncomingLine::Other: break;
    }
}

void Dt3Manager::propertyLine(const IncomingLine &line)
{
    if (line.kind == IncomingLine::Property) {
        if (Dt3Sink *sink = m_pendingRequests.answeredSink())
            withValue(
                line, [&](const QString &value) { sink->propertyReceived(m_paths.entryOf(line.path).path, value); });
        return;
    }
    auto &known = m_paths.entryOf(line.path); // callbacks do not receive, so it stays
    if (known.noteVersion != m_subscriptionsVersion) {
        const auto node = m_subscriptions.find(textOf(line.path.first(line.nodeLength)));
        known.note = {node, node != m_subscriptions.end() && node->second.size() == 1 ? node->second.front() : nullptr};
        known.noteVersion = m_subscriptionsVersion;
    }
    if (known.note.node == m_subscriptions.end())
        return;
    withValue(line, [&](const QString &value) {
        if (known.note.only)
            known.note.only->propertyChanged(known.path, value);
        else
            forEachHolder(known.note.node, [&](Dt3Sink *sink) { sink->propertyChanged(known.path, value); });
    });
}

template <typename Tell> void Dt3Manager::withValue(const IncomingLine &line, Tell tell)
{
    QString value = unescapeValue(line.value, &m_spareValue);
    tell(value);
    if (line.value.size() >= longValue)
        m_spareValue = std::move(value);
}

void Dt3Manager::childLine(const IncomingLine &line)
{
    const QString path = textOf(line.path);
    const qsizetype slash = path.lastIndexOf(u'/');
    const QString root = QStringLiteral("/");
    const QString parent = slash > 0 ? path.first(slash) : root;
    const QString child = slash + 1 < path.size() ? path.sliced(slash + 1) : root;
    forEachHolder(m_subscriptions.find(parent), [&](Dt3Sink *sink) {
        if (line.kind == IncomingLine::Added)
            sink->nodeAdded(parent, child);
        else
            sink->nodeRemoved(parent, child);
    });
}

/// Calls every sink that holds the node now and still holds it when its turn comes.
template <typename Call> void Dt3Manager::forEachHolder(const Subscriptions::const_iterator &node, Call call)
{
    if (node == m_subscriptions.end())
        return;
    const Sinks holders = node->second; // a shared copy: callbacks change the original
    const QString nodePath = node->first;
    for (Dt3Sink *sink : holders) {
        const auto now = m_subscriptions.find(nodePath);
        if (now == m_subscriptions.end())
            return;
        if (now->second.contains(sink))
            call(sink);
    }
}
