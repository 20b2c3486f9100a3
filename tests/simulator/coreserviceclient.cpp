#include "tests/simulator/coreserviceclient.h"

#include <QHostAddress>
#include <QSignalSpy>
#include <QTest>

CoreServiceClient::CoreServiceClient(quint16 port)
{
    m_socket.connectToHost(QHostAddress::LocalHost, port);
    if (!QTest::qWaitFor([this] { return m_socket.state() == QAbstractSocket::ConnectedState; }))
        qWarning("The core service does not let a client in.");
}

QString CoreServiceClient::line()
{
    while (!m_socket.canReadLine())
        if (!QSignalSpy(&m_socket, &QIODevice::readyRead).wait())
            return {};
    const QByteArray line = m_socket.readLine();
    return line.endsWith("\r\n") ? QString::fromUtf8(line.chopped(2)) : "no line end: " + QString::fromUtf8(line);
}

QStringList CoreServiceClient::request(const QString &text)
{
    const QString signature = QString::number(m_signature++);
    send((signature + '#' + text + "\r\n").toUtf8());
    QString next = line();
    for (; !next.isNull() && next != '{' + signature; next = line())
        m_news.append(next);
    QStringList block;
    for (next = line(); !next.isNull() && next != "}"; next = line())
        block.append(next);
    return block;
}

QStringList CoreServiceClient::takeNews()
{
    request("GET /");
    return std::exchange(m_news, {});
}
