#pragma once

#include "protocol/incomingline.h"
#include "protocol/linesplitter.h"
#include "protocol/pathcache.h"
#include "protocol/pendingrequests.h"

#include <QBasicTimer>
#include <QList>
#include <QObject>
#include <QTcpSocket>

#include <chrono>
#include <map>

class Dt3Sink;

/// What became of an open().
enum Dt3OpenResult {
    DT3_OPEN_RESULT_OK = 0,
    DT3_OPEN_RESULT_WRITE_ERROR = 1,
    DT3_OPEN_RESULT_SOCKET_NOT_OPEN = 2,
};

/// How long the client waits for what.
struct Dt3Times
{
    std::chrono::milliseconds connectionTimeout{90000}; ///< Without a connection, until it is reported.
    std::chrono::milliseconds reconnect{1000};          ///< Between two attempts to connect.
    std::chrono::milliseconds openRetry{1000};          ///< Between two OPENs of a node while it is unconfirmed.
};

/// The one client of the device's core service: keeps the connection up, writes requests, and brings every
/// incoming line to the sinks that asked for it.
///
/// Sinks are borrowed. One that has closed a node hears of no change of it any more, not even by the line that is
/// being handed out, and one that has been destroyed of nothing. Callbacks may send any request. All of it runs in
/// the thread of the event loop.
///
/// Over a loss of the connection the subscriptions stay as they are: whoever holds a node closes it on
/// connectionStateChanged(false) and opens it again on connectionStateChanged(true).
class Dt3Manager : public QObject
{
    Q_OBJECT
public:
    /// The client of 127.0.0.1:6107. Made on first use; goes with the application object.
    static Dt3Manager *instance();
    /// Takes a sink that is about to be destroyed out of everything the instance, if there is one, knows.
    static void forget(Dt3Sink *sink);

    /// Does not connect yet.
    Dt3Manager(const QString &host, const QString &port, const Dt3Times &times = {});
    ~Dt3Manager() override;

    /// Starts the first attempt, and with it the retries and the time-out. Called once.
    void connectToDevice();

    /// The node of a property: "/MEDIA/XP/VIDEO" of "/MEDIA/XP/VIDEO.SourcePortStatus".
    static QString nodeOf(const QString &propertyPath);

    // Requests. While there is no connection they are not written, and not made up for later.
    void get(Dt3Sink *sink, const QString &path);
    /// @param value a caption of the catalogued property, or a raw value.
    void set(Dt3Sink *sink, const QString &propertyPath, const QString &value);
    void call(Dt3Sink *sink, const QString &methodPath, const QString &arguments);
    /// Subscribes the sink to changes of the node, once the device confirms. Asks 32 times in all, a second apart.
    Dt3OpenResult open(Dt3Sink *sink, const QString &nodePath);
    /// Ends the sink's subscription, confirmed or not; the last one to leave closes the node at the device,
    /// and so does a sink that did not hold it where nobody else does or waits to.
    void close(Dt3Sink *sink, const QString &nodePath);

    /// Handles bytes as one read from the connection yields them; a NUL ends the read. Not from a callback.
    void receive(QByteArrayView bytes);

signals:
    void connectionStateChanged(bool connected);
    /// No connection for so long; once per loss, and attempts go on.
    void connectionTimeoutExpired();

private slots:
    void connected();
    void disconnected();
    void readTcpData();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    using Sinks = QList<Dt3Sink *>;
    /// An OPEN that is not confirmed yet.
    struct OpenAttempt
    {
        int attemptsLeft;
        QBasicTimer timer;
        Sinks sinks;
    };
    using Subscriptions = std::map<QString, Sinks>;
    /// Who hears of a property; most have one sink, which then needs no look at the node.
    struct Holders
    {
        Subscriptions::const_iterator node;
        Dt3Sink *only = nullptr;
    };

    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void startConnecting();
    void startConnectionTimeout();
    bool writeLine(const QString &line);
    void request(Dt3Sink *sink, const QString &text);
    void retryOpen(int timerId);
    void confirmOpen(const QString &nodePath);

    void handleLine(QByteArrayView line);
    void propertyLine(const IncomingLine &line);
    /// Calls tell(value).
    template <typename Tell> void withValue(const IncomingLine &line, Tell tell);
    void childLine(const IncomingLine &line);
    template <typename Call> void forEachHolder(const Subscriptions::const_iterator &node, Call call);
    void dropSink(Dt3Sink *sink);

    const QString m_host;
    const QString m_port;
    const Dt3Times m_times;
    QTcpSocket m_socket;
    QAbstractSocket::SocketState m_lastSocketState = QAbstractSocket::UnconnectedState;
    QBasicTimer m_reconnectTimer;
    QBasicTimer m_connectionTimeoutTimer;

    std::map<QString, OpenAttempt> m_observerOpenAttempts;
    Subscriptions m_subscriptions;
    quint32 m_subscriptionsVersion = 1; ///< Goes up with every change of m_subscriptions.

    LineSplitter m_splitter;
    QString m_spareValue; ///< The last long value, for its memory.
    PendingRequests m_pendingRequests;
    PathCache<Holders> m_paths;
};
