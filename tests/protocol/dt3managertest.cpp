#include "protocol/dt3manager.h"

#include "protocol/catalogue.h"
#include "protocol/dt3sink.h"
#include "tests/support/scriptedservice.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

#include <functional>

using namespace std::chrono_literals;

namespace {

const QString cafe = QString::fromUtf8("/MEDIA/PRESET/Café ☕");

/// Keeps what it is told, a line each, and may do something of the test's own in reply.
struct RecordingSink final : Dt3Sink
{
    void nodeReceived(const QString &node) override { note("node " + node); }
    void propertyReceived(const QString &path, const QString &value) override { note("got " + path + "=" + value); }
    void propertyChanged(const QString &path, const QString &value) override { note("chg " + path + "=" + value); }
    void nodeAdded(const QString &parent, const QString &child) override { note("new " + parent + " " + child); }
    void nodeRemoved(const QString &parent, const QString &child) override { note("del " + parent + " " + child); }
    void note(const QString &line)
    {
        news.append(line);
        if (reply)
            reply();
    }

    QStringList news;
    std::function<void()> reply;
};

/// A client, the service that it is connected to, and those who use it.
struct Link
{
    explicit Link(std::chrono::milliseconds openRetry = 1s)
        : manager("127.0.0.1", service.port(), {90s, 20ms, openRetry})
    {
        QSignalSpy connected(&manager, &Dt3Manager::connectionStateChanged);
        manager.connectToDevice();
        if (!connected.wait() || !QTest::qWaitFor([this] { return service.hasClient(); }))
            qFatal("The client does not connect.");
    }
    /// What one read from the connection yields.
    void receive(const QStringList &lines) { manager.receive((lines.join("\r\n") + "\r\n").toUtf8()); }

    ScriptedService service;
    Dt3Manager manager;
    RecordingSink a, b, c;
};

} // namespace

/// The connection, requests with their answers, and who hears of changes.
class Dt3ManagerTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }
    void writesRequestsOnceConnected();
    void answersReachTheirSinkOnly();
    void dropsUnansweredRequests();
    void cutLineIsNotGluedToTheNextConnection();
    void reportsLossAndTimeOut();
    void newsReachEveryHolder();
    void sharedNodeIsOpenedAndClosedOnce();
    void closeWhileWaiting();
    void retriesUntilGivenUp();
    void closedDuringDispatchHearsNothing();
    void deviceThatDoesNotReadIsLeft();
};

void Dt3ManagerTest::writesRequestsOnceConnected()
{
    ScriptedService service;
    Dt3Manager manager("127.0.0.1", service.port());
    RecordingSink sink;
    manager.get(&sink, "/LOST.Property");
    QCOMPARE(manager.open(&sink, "/LOST"), DT3_OPEN_RESULT_SOCKET_NOT_OPEN);
    manager.close(&sink, "/LOST");
    QSignalSpy spy(&manager, &Dt3Manager::connectionStateChanged);
    manager.connectToDevice();
    manager.get(&sink, "/LOST.Too"); // connecting is not connected
    QTRY_COMPARE(spy.count(), 1);
    manager.get(&sink, "/SYS/CECU/LCD.ControlLock");
    manager.set(&sink, "/MANAGEMENT/NETWORK.DhcpEnabled", "Enabled");
    manager.set(&sink, "/NO/SUCH.Property", "Enabled");
    manager.call(&sink, cafe + ":load", QString());
    QTRY_COMPARE(service.lines().join(' '),
        "0002#GET /SYS/CECU/LCD.ControlLock 0003#SET /MANAGEMENT/NETWORK.DhcpEnabled=true "
        "0004#SET /NO/SUCH.Property=Enabled 0005#CALL "
            + cafe + ":load()");
}

void Dt3ManagerTest::answersReachTheirSinkOnly()
{
    Link link;
    link.manager.get(&link.a, "/MEDIA/PRESET");
    link.manager.get(&link.b, "/A.B");
    link.service.sendLines({"{0000", "pr /MEDIA/PRESET.X=a=b", "m- anything"});
    link.service.send("n- /MEDIA/PRESET/Caf\xc3");
    link.service.send("\xa9 \xe2\x98\x95\r\n");
    link.service.sendLines({"}", "pr /A.B=after the block", "{0001", "pw /A.B=\\#1", "n- /A/C", "} end", "{0000",
        "pr /A.B=twice", "}", "{0001"});
    QTRY_COMPARE(link.b.news, (QStringList{"got /A.B=#1", "node /A/C"}));
    QCOMPARE(link.a.news, (QStringList{"got /MEDIA/PRESET.X=a=b", "node " + cafe}));

    link.manager.get(&link.c, "/A.B"); // a NUL ends the read, and only that
    link.manager.receive(QByteArrayView("{0002\r\npr /A.B=o\0lost\r\n", 22));
    link.receive({"ne", "}"});
    QCOMPARE(link.c.news, QStringList{"got /A.B=one"});
}

void Dt3ManagerTest::dropsUnansweredRequests()
{
    struct Case
    {
        int before, requests, block; ///< Those before have an answer and bring the counter there.
        QList<int> removed, answerable;
    };
    const Case cases[] = {{3, 4, 5, {3, 4}, {5, 6}}, {0, 2, 7, {0, 1}, {}}, {0, 5002, 1, {0}, {1, 2, 5001}},
        {9998, 3, 9998, {}, {9998, 9999, 0}}, {9997, 5, 0, {9997, 9998, 9999}, {0, 1}}};
    for (const Case &is : cases) {
        Link link;
        const auto start = [](int number) { return QString("{%1").arg(number % 10000, 4, 10, QChar('0')); };
        for (int i = 0; i < is.before; ++i) {
            link.manager.get(&link.a, "/A.B");
            link.receive({start(i), "}"});
        }
        for (int i = 0; i < is.requests; ++i)
            link.manager.get(&link.b, "/A.B");
        for (const int number : is.removed)
            QTest::ignoreMessage(QtDebugMsg, qPrintable(QString("REMOVED unanswered signature: %1").arg(number)));
        link.receive({start(is.block)});
        QStringList expected;
        for (const int number : is.answerable) {
            link.receive({start(number), "pr /A.B=" + start(number), "}"});
            expected.append("got /A.B=" + start(number));
        }
        link.receive({start(is.before + is.requests), "pr /A.B=nobody"});
        QCOMPARE(link.b.news, expected);
    }
}

void Dt3ManagerTest::cutLineIsNotGluedToTheNextConnection()
{
    Link link;
    link.manager.get(&link.a, "/A.B");
    link.service.sendLines({"{0000", "pr /A.B=1"});
    link.service.send("pr /A.B=cu");
    QTRY_COMPARE(link.a.news.size(), 1);
    QSignalSpy spy(&link.manager, &Dt3Manager::connectionStateChanged);
    link.service.dropClient();
    QTRY_COMPARE(spy.count(), 2);
    QTRY_VERIFY(link.service.hasClient());
    link.service.sendLines({"pr /A.B=outside a block", "{0000", "pr /A.B=2", "}"});
    QTRY_COMPARE(link.a.news, (QStringList{"got /A.B=1", "got /A.B=2"}));
}

void Dt3ManagerTest::reportsLossAndTimeOut()
{
    ScriptedService service;
    service.refuseClients();
    Dt3Manager manager("127.0.0.1", service.port(), {50ms, 10ms, 1s});
    QSignalSpy timeOut(&manager, &Dt3Manager::connectionTimeoutExpired);
    QSignalSpy state(&manager, &Dt3Manager::connectionStateChanged);
    manager.connectToDevice();
    QTRY_COMPARE(timeOut.count(), 1);
    QVERIFY(service.acceptClients());
    QTRY_COMPARE(state, QList<QVariantList>{{true}});
    QTRY_VERIFY(service.hasClient());
    service.refuseClients();
    service.dropClient();
    QTRY_COMPARE(timeOut.count(), 2); // once for each loss, as the first count shows
    QCOMPARE(state.last(), QVariantList{false});
}

void Dt3ManagerTest::newsReachEveryHolder()
{
    Link link;
    for (RecordingSink *sink : {&link.a, &link.a, &link.b})
        QCOMPARE(link.manager.open(sink, "/A"), DT3_OPEN_RESULT_OK);
    link.manager.open(&link.c, "/A/B");
    link.manager.open(&link.c, "/");
    link.receive({"o- /A", "o- /A/B", "o- /"});
    link.receive({"CHG /A.X=1", "CHG /A/B.X=2", "CHG /NOBODY.X=3", "{0000", "CHG /A.X=4=5", "}", "CHG /A.X=\\{6\\}"});
    link.receive({"NEW /A/My preset.1", "DEL /A/x", "NEW /TOP", "NEW /OTHER/x", "DEL /A/"});
    const QStringList ofA{"chg /A.X=1", "chg /A.X=4=5", "chg /A.X={6}", "new /A My preset.1", "del /A x", "del /A /"};
    QCOMPARE(link.a.news, ofA);
    QCOMPARE(link.b.news, ofA);
    QCOMPARE(link.c.news, (QStringList{"chg /A/B.X=2", "new / TOP"}));
    link.manager.close(&link.a, "/A");
    link.receive({"CHG /A.X=7", "CHG /A.Y=8"});
    QCOMPARE(link.a.news, ofA);
    QCOMPARE(link.b.news.mid(ofA.size()), (QStringList{"chg /A.X=7", "chg /A.Y=8"}));
}

void Dt3ManagerTest::sharedNodeIsOpenedAndClosedOnce()
{
    Link link;
    link.manager.open(&link.a, "/A");
    link.manager.open(&link.a, "/A"); // not confirmed: asked again
    link.receive({"o- /A"});
    link.manager.open(&link.b, "/A");
    link.manager.close(&link.a, "/A");
    link.manager.close(&link.a, "/A"); // not a holder any more, and another is
    link.manager.close(&link.b, "/A");
    link.manager.close(&link.b, "/NEVER"); // held by nobody: the device is told all the same
    QTRY_COMPARE(link.service.lines().join(' '), "OPEN /A OPEN /A CLOSE /A CLOSE /NEVER");
}

void Dt3ManagerTest::closeWhileWaiting()
{
    Link link(10ms);
    link.manager.open(&link.a, "/A");
    link.manager.open(&link.b, "/A");
    link.manager.open(&link.c, "/C");
    link.manager.close(&link.a, "/A");
    link.manager.close(&link.c, "/C"); // the last one out
    QTest::ignoreMessage(
        QtCriticalMsg, QRegularExpression("^Expected observerOpenAttempts to contain +\"/C\" +but it did not.$"));
    link.receive({"o- /A", "o- /C", "CHG /A.X=1", "CHG /C.X=1"});
    link.manager.open(&link.c, "/D"); // and no retry follows for C before those of D
    QTRY_VERIFY(link.service.lines().count("OPEN /D") > 2);
    QCOMPARE(link.service.lines().mid(0, 5).join(' '), "OPEN /A OPEN /A OPEN /C CLOSE /C OPEN /D");
    QCOMPARE(link.service.lines().count("OPEN /C"), 1);
    QCOMPARE(link.a.news + link.c.news, QStringList());
    QCOMPARE(link.b.news, QStringList{"chg /A.X=1"});
}

void Dt3ManagerTest::retriesUntilGivenUp()
{
    Link link(10ms);
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Failed to OPEN +\"/A\" +after +32 +attempts$"));
    link.manager.open(&link.a, "/A");
    QTRY_COMPARE(link.service.lines().size(), 32);
    link.manager.open(&link.b, "/B");
    QTRY_VERIFY(link.service.lines().count("OPEN /B") > 2);
    QCOMPARE(link.service.lines().count("OPEN /A"), 32);
}

void Dt3ManagerTest::closedDuringDispatchHearsNothing()
{
    Link link;
    auto passing = std::make_unique<RecordingSink>();
    for (RecordingSink *sink : {&link.a, &link.b, passing.get()})
        link.manager.open(sink, "/A");
    link.receive({"o- /A"});
    link.a.reply = [&] { // ends the others' subscription, one of them for good, and opens another node
        link.manager.close(&link.b, "/A");
        link.manager.close(passing.get(), "/A");
        passing.reset();
        link.manager.get(&link.a, "/A.X");
        link.manager.open(&link.b, "/B");
    };
    link.receive({"CHG /A.X=1", "NEW /A/child"});
    QCOMPARE(link.b.news, QStringList());
    link.a.reply = [&link] { link.manager.close(&link.a, "/A"); };
    link.receive({"CHG /A.X=2", "CHG /A.X=3"});
    QCOMPARE(link.a.news, (QStringList{"chg /A.X=1", "new /A child", "chg /A.X=2"}));
}

void Dt3ManagerTest::deviceThatDoesNotReadIsLeft()
{
    QTcpServer device;
    QVERIFY(device.listen(QHostAddress::LocalHost));
    device.pauseAccepting(); // the system does, and nobody reads
    RecordingSink sink;
    Dt3Manager manager("127.0.0.1", QString::number(device.serverPort()), {90s, 20ms, 1s});
    QSignalSpy changes(&manager, &Dt3Manager::connectionStateChanged);
    manager.connectToDevice();
    QTRY_COMPARE(changes.count(), 1);
    const auto askMore = [&] {
        for (int i = 0; i < 1000; ++i)
            manager.get(&sink, "/" + QString(1000, 'x'));
        return changes.count() > 1;
    };
    QVERIFY(QTest::qWaitFor(askMore, 30000));
    QTRY_COMPARE_GE(changes.count(), 3); // there and gone and there again
    QCOMPARE(changes.mid(0, 3), (QList<QVariantList>{{true}, {false}, {true}}));
}

QTEST_GUILESS_MAIN(Dt3ManagerTest)
#include "dt3managertest.moc"
