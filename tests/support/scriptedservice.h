#pragma once

#include <QObject>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

/// A core service that says what the test tells it to: one client at a time, every line kept.
class ScriptedService : public QObject
{
    Q_OBJECT
public:
    /// Listens on loopback. @param port 0 takes any free one.
    explicit ScriptedService(quint16 port = 0);

    QString port() const { return QString::number(m_port); }
    bool hasClient() const { return m_client && m_client->state() == QAbstractSocket::ConnectedState; }
    /// Complete lines received since the last takeLines(), oldest first; connections are not told apart.
    const QStringList &lines() const { return m_lines; }
    QStringList takeLines() { return std::exchange(m_lines, {}); }
    /// The same lines without their signatures.
    QStringList requests() const;

    void send(const QByteArray &bytes) { m_client->write(bytes); }
    /// Each with its line end.
    void sendLines(const QStringList &lines) { send((lines.join("\r\n") + "\r\n").toUtf8()); }
    void dropClient() { m_client->abort(); }
    void refuseClients() { m_server.close(); }
    bool acceptClients() { return m_server.listen(QHostAddress::LocalHost, m_port); }

private:
    QTcpServer m_server;
    quint16 m_port;
    QTcpSocket *m_client = nullptr; ///< A child of m_server.
    QByteArray m_partial;
    QStringList m_lines;
};
