#include "protocol/dt3manager.h"

#include "protocol/catalogue.h"
#include "tests/protocol/recordingsink.h"
#include "tests/support/scriptedservice.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

/// The connection, and requests with their answers.
class Dt3ManagerTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }
    void writesRequests();
    void answersReachTheirSinkOnly();
    void writesAndReadsUtf8();
    void dropsUnansweredRequests_data();
    void dropsUnansweredRequests();
    void requestsWhileDisconnectedAreNotWritten();
    void nulEndsTheReadOnly();
    void cutLineIsNotGluedToTheNextConnection();
    void reportsConnectionAndLoss();
    void reportsTimeOutOnceAndGoesOn();
    void nodeOf();

private:
    const Dt3Times m_quick{90s, 20ms, 1s};
};

/// Both ends, connected.
struct Link
{
    explicit Link(const Dt3Times &times = {90s, 20ms, 1s})
        : manager("127.0.0.1", service.port(), times)
    {
        QSignalSpy spy(&manager, &Dt3Manager::connectionStateChanged);
        manager.connectToDevice();
        linked = spy.wait() && QTest::qWaitFor([this] { return service.hasClient(); });
    }

    ScriptedService service;
    Dt3Manager manager;
    RecordingSink sink;
    bool linked = false;
};

void Dt3ManagerTest::writesRequests()
{
    Link link;
    QVERIFY(link.linked);
    link.manager.get(&link.sink, "/SYS/CECU/LCD.ControlLock");
    link.manager.set(&link.sink, "/MANAGEMENT/NETWORK.DhcpEnabled", "Enabled");
    link.manager.set(&link.sink, "/NO/SUCH.Property", "Enabled");
    link.manager.call(&link.sink, "/MANAGEMENT/POWER:wakeUp", "");
    link.manager.call(&link.sink, "/MEDIA/XP/VIDEO:connect", "I3:-O5;");
    const QStringList expected{"0000#GET /SYS/CECU/LCD.ControlLock", "0001#SET /MANAGEMENT/NETWORK.DhcpEnabled=true",
        "0002#SET /NO/SUCH.Property=Enabled", "0003#CALL /MANAGEMENT/POWER:wakeUp()",
        "0004#CALL /MEDIA/XP/VIDEO:connect(I3:-O5;)"};
    QTRY_COMPARE(link.service.lines(), expected);
}

void Dt3ManagerTest::answersReachTheirSinkOnly()
{
    Link link;
    QVERIFY(link.linked);
    RecordingSink other;
    link.manager.get(&link.sink, "/MEDIA/PRESET");
    link.manager.get(&other, "/A.B");
    link.service.sendLines(
        {"{0000", "n- /MEDIA/PRESET/one", "pr /MEDIA/PRESET.X=a=b", "m- anything", "}", "pr /A.B=after the block",
            "{0001", "pw /A.B=\\#1", "n- /A/C", "} end", "{0000", "pr /A.B=twice", "}", "{0001"});
    QTRY_COMPARE(other.news, (QStringList{"received /A.B=#1", "node /A/C"}));
    QCOMPARE(link.sink.news, (QStringList{"node /MEDIA/PRESET/one", "received /MEDIA/PRESET.X=a=b"}));
}

void Dt3ManagerTest::writesAndReadsUtf8()
{
    Link link;
    QVERIFY(link.linked);
    const QString name = QString::fromUtf8("Café ☕");
    link.manager.call(&link.sink, "/MEDIA/PRESET/" + name + ":load", QString());
    QTRY_COMPARE(link.service.lines(), QStringList{"0000#CALL /MEDIA/PRESET/" + name + ":load()"});
    link.service.send("{0000\r\nn- /MEDIA/PRESET/Caf\xc3");
    link.service.send("\xa9 \xe2\x98\x95\r\npr /A.B=\xff\xc3(\r\n}\r\n");
    QTRY_COMPARE(link.sink.news.size(), 2);
    QCOMPARE(link.sink.news.front(), "node /MEDIA/PRESET/" + name);
    QVERIFY(link.sink.news.back().startsWith("received /A.B="));
}

void Dt3ManagerTest::dropsUnansweredRequests_data()
{
    QTest::addColumn<int>("requestsBefore"); // answered ones, to bring the counter there
    QTest::addColumn<int>("requests");
    QTest::addColumn<QString>("blockStart");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QStringList>("answerable");

    QTest::newRow("the older ones go, in order")
        << 3 << 4 << "{0005" << QStringList{"3", "4"} << QStringList{"0005", "0006"};
    QTest::newRow("a block nobody asked for clears all before it")
        << 0 << 2 << "{0007" << QStringList{"0", "1"} << QStringList{};
    QTest::newRow("half a circle of unanswered ones")
        << 0 << 5002 << "{0001" << QStringList{"0"} << QStringList{"0001", "0002", "5001"};
    QTest::newRow("the counter wraps after 9999")
        << 9998 << 3 << "{9998" << QStringList{} << QStringList{"9998", "9999", "0000"};
    QTest::newRow("0000 is younger than 9997")
        << 9997 << 5 << "{0000" << QStringList{"9997", "9998", "9999"} << QStringList{"0000", "0001"};
}

void Dt3ManagerTest::dropsUnansweredRequests()
{
    QFETCH(int, requestsBefore);
    QFETCH(int, requests);
    QFETCH(QString, blockStart);
    QFETCH(QStringList, removed);
    QFETCH(QStringList, answerable);

    Dt3Manager manager("127.0.0.1", "1");
    const auto receive = [&manager](const QString &line) { manager.receive((line + "\r\n").toUtf8()); };
    RecordingSink early;
    for (int i = 0; i < requestsBefore; ++i) {
        manager.get(&early, "/A.B");
        receive(QStringLiteral("{%1").arg(i, 4, 10, QLatin1Char('0')));
        receive("}");
    }
    RecordingSink sink;
    for (int i = 0; i < requests; ++i)
        manager.get(&sink, "/A.B");
    for (const QString &number : removed)
        QTest::ignoreMessage(QtDebugMsg, qPrintable("REMOVED unanswered signature: " + number));
    receive(blockStart);
    for (const QString &signature : answerable) {
        receive('{' + signature);
        receive("pr /A.B=" + signature);
        receive("}");
    }
    receive("{" + QStringLiteral("%1").arg((requestsBefore + requests) % 10000, 4, 10, QLatin1Char('0')));
    receive("pr /A.B=nobody");
    QStringList expected;
    for (const QString &signature : answerable)
        expected.append("received /A.B=" + signature);
    QCOMPARE(sink.news, expected);
    QCOMPARE(early.news, QStringList());
}

void Dt3ManagerTest::requestsWhileDisconnectedAreNotWritten()
{
    ScriptedService service;
    Dt3Manager manager("127.0.0.1", service.port(), m_quick);
    RecordingSink sink;
    manager.get(&sink, "/LOST.Property");
    QCOMPARE(manager.open(&sink, "/LOST"), DT3_OPEN_RESULT_SOCKET_NOT_OPEN);
    manager.close(&sink, "/LOST");
    QSignalSpy spy(&manager, &Dt3Manager::connectionStateChanged);
    manager.connectToDevice();
    manager.get(&sink, "/LOST.Too"); // connecting is not connected
    QTRY_COMPARE(spy.count(), 1);
    manager.get(&sink, "/KEPT.Property");
    QTRY_COMPARE(service.lines(), QStringList{"0002#GET /KEPT.Property"});
}

void Dt3ManagerTest::nulEndsTheReadOnly()
{
    Dt3Manager manager("127.0.0.1", "1");
    RecordingSink sink;
    manager.get(&sink, "/A.B");
    manager.receive(QByteArrayView("{0000\r\npr /A.B=o\0lost\r\n", 22));
    manager.receive("ne\r\n}\r\n");
    QCOMPARE(sink.news, QStringList{"received /A.B=one"});
}

void Dt3ManagerTest::cutLineIsNotGluedToTheNextConnection()
{
    Link link;
    QVERIFY(link.linked);
    link.manager.get(&link.sink, "/A.B");
    link.service.sendLines({"{0000", "pr /A.B=1"});
    link.service.send("pr /A.B=cu");
    QTRY_COMPARE(link.sink.news.size(), 1);
    QSignalSpy spy(&link.manager, &Dt3Manager::connectionStateChanged);
    link.service.dropClient();
    QTRY_COMPARE(spy.count(), 2);
    QTRY_VERIFY(link.service.hasClient());
    link.service.sendLines({"pr /A.B=outside a block", "{0000", "pr /A.B=2", "}"});
    QTRY_COMPARE(link.sink.news, (QStringList{"received /A.B=1", "received /A.B=2"}));
}

void Dt3ManagerTest::reportsConnectionAndLoss()
{
    ScriptedService service;
    service.refuseClients();
    const QByteArray endpoint = "127.0.0.1:" + service.port().toUtf8() + " ...";
    Dt3Manager manager("127.0.0.1", service.port(), m_quick);
    QSignalSpy spy(&manager, &Dt3Manager::connectionStateChanged);
    QTest::ignoreMessage(QtDebugMsg, "Connecting to " + endpoint);
    manager.connectToDevice();
    QVERIFY(service.acceptClients()); // it starts late
    QTest::ignoreMessage(QtDebugMsg, "Connected.");
    QTRY_COMPARE(spy.count(), 1);
    QTest::ignoreMessage(QtDebugMsg, "Disonnected.");
    QTest::ignoreMessage(QtDebugMsg, "Reconnecting to " + endpoint);
    QTest::ignoreMessage(QtDebugMsg, "Connected.");
    QTRY_VERIFY(service.hasClient());
    service.dropClient();
    QTRY_COMPARE(spy.count(), 3);
    QCOMPARE(spy.takeFirst(), QVariantList{true});
    QCOMPARE(spy.takeFirst(), QVariantList{false});
    QCOMPARE(spy.takeFirst(), QVariantList{true});

    for (int i = 0; i < 10; ++i) { // a service that comes and goes
        QTRY_VERIFY(service.hasClient());
        service.dropClient();
        QTRY_COMPARE(spy.count(), 2 * (i + 1));
    }
    QTest::ignoreMessage(QtDebugMsg, "Connection closed.");
}

void Dt3ManagerTest::reportsTimeOutOnceAndGoesOn()
{
    ScriptedService service;
    service.refuseClients();
    Dt3Manager manager("127.0.0.1", service.port(), {50ms, 10ms, 1s});
    QSignalSpy timeOut(&manager, &Dt3Manager::connectionTimeoutExpired);
    QSignalSpy state(&manager, &Dt3Manager::connectionStateChanged);
    manager.connectToDevice();
    QTRY_COMPARE(timeOut.count(), 1);
    QVERIFY(service.acceptClients());
    QTRY_COMPARE(state.count(), 1);
    QTRY_VERIFY(service.hasClient());
    service.refuseClients();
    service.dropClient();
    QTRY_COMPARE(timeOut.count(), 2); // and only once for each loss, as the first count shows
    QCOMPARE(state.count(), 2);
}

void Dt3ManagerTest::nodeOf()
{
    QCOMPARE(Dt3Manager::nodeOf("/MEDIA/XP/VIDEO.SourcePortStatus"), "/MEDIA/XP/VIDEO");
    QCOMPARE(Dt3Manager::nodeOf("/.PartNumber"), "/");
    QCOMPARE(Dt3Manager::nodeOf("/MEDIA/PRESET"), "/MEDIA/PRESET");
}

QTEST_GUILESS_MAIN(Dt3ManagerTest)
#include "dt3managertest.moc"
