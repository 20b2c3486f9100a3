#include "tests/support/scriptedservice.h"

#include <QRegularExpression>

ScriptedService::ScriptedService(quint16 port)
{
    if (!m_server.listen(QHostAddress::LocalHost, port))
        qFatal("Cannot listen on port %d: %s", port, qPrintable(m_server.errorString()));
    m_port = m_server.serverPort();
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        m_client = m_server.nextPendingConnection();
        m_partial.clear();
        connect(m_client, &QTcpSocket::readyRead, this, [this] {
            m_partial += m_client->readAll();
            for (qsizetype end; (end = m_partial.indexOf("\r\n")) >= 0; m_partial.remove(0, end + 2))
                m_lines.append(QString::fromUtf8(m_partial.first(end)));
        });
    });
}

QStringList ScriptedService::requests() const
{
    static const QRegularExpression signature(QStringLiteral("^\\d{4}#"));
    return QStringList(m_lines).replaceInStrings(signature, QString());
}
