#include "protocol/dt3manager.h"
#include "protocol/dt3sink.h"

#include <QEventLoop>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace std::chrono_literals;

namespace {

/// What the sinks ask for once connected, all of them.
const QStringList requests{"OPEN /X", "OPEN /X", "GET /X.Status", "OPEN /P", "GET /P", "CALL /X:connect(I1:-O2;)"};

/// What a service says to that, with the signatures of the three requests that have one.
/// Glued to a line that was cut, the first would be lost: it is one that is said only once.
const QStringList session{"o- /P", "o- /X", "o- /X", "{%1", "pr /X.Status=T;L\\#", "}", "CHG /X.Status=L;L", "{%2",
    "n- /P/Caf\u00e9", "n- /P/b", "}", "NEW /P/c", "{%3", "m- /X:connect", "}", "CHG /X.Routes=0;I1", "DEL /P/b",
    "CHG /P.Last=c", "CHG /X.End=1"};

const QStringList ofFirst{"got /X.Status=T;L#", "chg /X.Status=L;L", "chg /X.Routes=0;I1", "chg /X.End=1"};
const QStringList ofSecond{"chg /X.Status=L;L", "node /P/Caf\u00e9", "node /P/b", "new /P c", "chg /X.Routes=0;I1",
    "del /P b", "chg /P.Last=c", "chg /X.End=1"};

struct Sink final : Dt3Sink
{
    void nodeReceived(const QString &node) override { news.append("node " + node); }
    void propertyReceived(const QString &path, const QString &value) override { note("got ", path, value); }
    void propertyChanged(const QString &path, const QString &value) override { note("chg ", path, value); }
    void nodeAdded(const QString &parent, const QString &child) override { news.append("new " + parent + ' ' + child); }
    void nodeRemoved(const QString &parent, const QString &child) override
    {
        news.append("del " + parent + ' ' + child);
    }
    void note(const char *what, const QString &path, const QString &value)
    {
        news.append(what + path + '=' + value);
        if (path == "/X.End" && atEnd)
            atEnd();
    }

    QStringList news;
    std::function<void()> atEnd;
};

/// Answers each connection as soon as it has asked for everything; the first one only as far as the cut.
class CuttingService : public QTcpServer
{
public:
    explicit CuttingService(qsizetype cut)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, cut] {
            QTcpSocket *client = nextPendingConnection();
            asked.append(QStringList());
            connect(client, &QTcpSocket::readyRead, this, [this, cut, client] { answer(client, cut); });
        });
    }
    static QByteArray recording(const QStringList &signatures)
    {
        return (session.join("\r\n") + "\r\n").arg(signatures[0], signatures[1], signatures[2]).toUtf8();
    }

    QList<QStringList> asked; ///< Of each connection, without signatures.

private:
    void answer(QTcpSocket *client, qsizetype cut)
    {
        while (client->canReadLine()) {
            const QString line = QString::fromUtf8(client->readLine().chopped(2));
            if (line[4] == '#')
                m_signatures.append(line.first(4));
            asked.last().append(line[4] == '#' ? line.sliced(5) : line);
        }
        if (asked.last().size() != requests.size())
            return;
        const QByteArray all = recording(std::exchange(m_signatures, {}));
        client->write(asked.size() == 1 ? all.first(cut) : all);
        if (asked.size() == 1)
            client->disconnectFromHost();
    }

    QStringList m_signatures;
};

} // namespace

/// A loss of the connection after each byte that a service sends.
class LinkCutTest : public QObject
{
    Q_OBJECT
private slots:
    void nothingIsLostOrDoubled();
};

void LinkCutTest::nothingIsLostOrDoubled()
{
    // each loss is logged, and a second confirmation too
    const QtMessageHandler loud = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto restore = qScopeGuard([loud] { qInstallMessageHandler(loud); });
    const qsizetype length = CuttingService::recording({"0000", "0000", "0000"}).size();
    for (qsizetype cut = 0; cut <= length; ++cut) {
        CuttingService service(cut);
        Dt3Manager manager("127.0.0.1", QString::number(service.serverPort()), {90s, 2ms, 1s});
        Sink first, second;
        QList<QStringList> before; // what they had heard when the link was lost
        connect(&manager, &Dt3Manager::connectionStateChanged, &service, [&](bool connected) {
            if (!connected) {
                before = {std::exchange(first.news, {}), std::exchange(second.news, {})};
                for (const char *node : {"/X", "/P"}) {
                    manager.close(&first, node);
                    manager.close(&second, node);
                }
                return;
            }
            manager.open(&first, "/X");
            manager.open(&second, "/X");
            manager.get(&first, "/X.Status");
            manager.open(&second, "/P");
            manager.get(&second, "/P");
            manager.call(&first, "/X:connect", "I1:-O2;");
        });
        QSignalSpy state(&manager, &Dt3Manager::connectionStateChanged);
        QEventLoop untilTheEnd; // polling would take longer than all the rest
        second.atEnd = [&] {
            if (!before.isEmpty())
                untilTheEnd.quit();
        };
        QTimer::singleShot(10s, &untilTheEnd, [&untilTheEnd] { untilTheEnd.exit(1); });
        manager.connectToDevice();
        QCOMPARE(untilTheEnd.exec(), 0);
        const QByteArray where = "cut after byte " + QByteArray::number(cut);
        QVERIFY2(service.asked == QList<QStringList>(2, requests), where);
        QVERIFY2(before[0] == ofFirst.first(before[0].size()), where);
        QVERIFY2(before[1] == ofSecond.first(before[1].size()), where);
        QVERIFY2(first.news == ofFirst && second.news == ofSecond, where);
        QCOMPARE(state, (QList<QVariantList>{{true}, {false}, {true}}));
    }
}

QTEST_GUILESS_MAIN(LinkCutTest)
#include "linkcuttest.moc"
