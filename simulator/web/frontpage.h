#pragma once

#include "simulator/web/pagemessage.h"

#include <QJsonObject>
#include <QObject>
#include <QTimer>
#include <QWebSocket>

#include <memory>

/// A page that somebody has open: understands what it says, and closes its connection when it says anything else.
class FrontPage : public QObject
{
    Q_OBJECT
public:
    /// Close codes of the protocol. That for broken UTF-8 the socket sends itself.
    enum CloseCode { Binary = 1003, Malformed = 1007, TooLarge = 1009, TooManyPages = 1013 };

    /// @param socket connected. @param pingTime how often to ask whether the page is still there; it is taken for gone
    /// when it has not answered by the next time.
    FrontPage(std::unique_ptr<QWebSocket> socket, std::chrono::milliseconds pingTime, QObject *parent = nullptr);
    ~FrontPage() override;

    void send(const QJsonObject &message);
    /// The page has read nearly all that it was sent.
    bool isReadyForPicture() const;
    /// Binary messages, one a piece.
    void sendPicture(const QList<QByteArray> &pieces);

    /// Says nothing and hears nothing from now on. gone() follows.
    void close(CloseCode code, const QString &reason);

signals:
    void messageReceived(const PageMessage &message);
    /// The connection has ended, whoever ended it. Emitted once.
    void gone();

private:
    void read(const QString &text);
    void checkAlive();
    void abort();

    std::unique_ptr<QWebSocket> m_socket;
    QTimer m_alive;
    int m_pings = 0;
    int m_answeredPings = 0;
    int m_answeredBefore = 0; // at the last checkAlive()
    bool m_closing = false;
};
