#pragma once

#include <QStringList>
#include <QTcpSocket>

/// A client of the core service on a socket of its own, in the test's thread: every wait turns the event loop until
/// what is waited for is there, 5 s at most.
class CoreServiceClient
{
public:
    explicit CoreServiceClient(quint16 port);

    /// Sends the text as it stands; a line needs its "\r\n".
    void send(const QByteArray &bytes) { m_socket.write(bytes); }
    /// The next line, whatever it is; null when none comes.
    QString line();
    /// Sends the request with a signature of its own and returns the lines of its answer block. What comes before
    /// the block is kept as news.
    QStringList request(const QString &text);
    /// The lines that arrived outside blocks since the last call. Everything the service wrote up to now is in it.
    QStringList takeNews();

    QTcpSocket &socket() { return m_socket; }

private:
    QTcpSocket m_socket;
    QStringList m_news;
    int m_signature = 1000;
};
