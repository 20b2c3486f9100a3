#include "protocol/dt3manager.h"

#include "protocol/catalogue.h"
#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"
#include "tests/support/scriptedservice.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

#include <functional>

using namespace std::chrono_literals;

namespace {

/// Keeps what it is told, a line each, and may do something of the test's own in reply.
struct RecordingSink final : Dt3Sink
{
    using Dt3Sink::get, Dt3Sink::open, Dt3Sink::setValue;
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
    explicit Link(const Dt3Times &times = {90s, 20ms, 1s})
        : manager("127.0.0.1", service.port(), times)
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

/// The connection, requests with their answers, who hears of changes, and sinks with the one client instance.
class Dt3ManagerTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }

    void writesRequestsOnceConnected()
    {
        ScriptedService service;
        Dt3Manager manager("127.0.0.1", service.port());
        QSignalSpy state(&manager, &Dt3Manager::connectionStateChanged);
        RecordingSink sink;
        manager.get(&sink, "/LOST.Property");
        QCOMPARE(manager.open(&sink, "/LOST"), DT3_OPEN_RESULT_SOCKET_NOT_OPEN);
        manager.close(&sink, "/LOST");
        manager.connectToDevice();
        manager.get(&sink, "/LOST.Too"); // connecting is not connected
        QVERIFY(state.wait());
        manager.get(&sink, "/SYS/CECU/LCD.ControlLock");
        manager.set(&sink, "/MANAGEMENT/NETWORK.DhcpEnabled", "Enabled");
        manager.set(&sink, "/NO/SUCH.Property", "Enabled");
        manager.call(&sink, "/MEDIA/PRESET/Café ☕:load", "a;b");
        QTRY_COMPARE(service.lines().join(' '),
            "0002#GET /SYS/CECU/LCD.ControlLock 0003#SET /MANAGEMENT/NETWORK.DhcpEnabled=true "
            "0004#SET /NO/SUCH.Property=Enabled 0005#CALL /MEDIA/PRESET/Café ☕:load(a;b)");
    }

    void reportsLossAndTimeOut()
    {
        QStringList heard;
        Link link({50ms, 10ms, 20ms});
        connect(
            &link.manager, &Dt3Manager::connectionStateChanged, this, [&](bool is) { heard += is ? "up" : "down"; });
        connect(&link.manager, &Dt3Manager::connectionTimeoutExpired, this, [&] { heard += "late"; });
        link.manager.open(&link.a, "/A");
        QTRY_VERIFY(link.service.lines().size() > 5); // asking so often takes longer than the time-out
        link.service.refuseClients();
        link.service.dropClient();
        QTRY_COMPARE(heard.join(' '), "down late");
        {
            Dt3Manager neverConnected("127.0.0.1", link.service.port(), {50ms, 10ms, 20ms});
            QSignalSpy late(&neverConnected, &Dt3Manager::connectionTimeoutExpired);
            neverConnected.connectToDevice();
            QVERIFY(late.wait());
        }
        QVERIFY(link.service.acceptClients());
        QTRY_COMPARE(heard.join(' '), "down late up");
    }

    void answersReachTheirSinkOnly()
    {
        Link link;
        link.manager.get(&link.a, "/MEDIA/PRESET");
        link.manager.get(&link.b, "/A.B");
        link.service.sendLines(
            {"{0000", "pr /MEDIA/PRESET.X=a=b", "m- anything", "n- /MEDIA/PRESET/Café", "}", "pr /A.B=after the block",
                "{0001", "pw /A.B=\\#1", "n- /A/C", "} end", "{0000", "pr /A.B=twice", "}", "{0001"});
        QTRY_COMPARE(link.b.news, (QStringList{"got /A.B=#1", "node /A/C"}));
        QCOMPARE(link.a.news, (QStringList{"got /MEDIA/PRESET.X=a=b", "node /MEDIA/PRESET/Café"}));

        link.manager.get(&link.c, "/A.B"); // a NUL ends the read, and only that
        link.manager.receive(QByteArrayView("{0002\r\npr /A.B=o\0lost\r\n", 22));
        link.receive({"ne", "}"});
        QCOMPARE(link.c.news, QStringList{"got /A.B=one"});
    }

    void dropsUnansweredRequests()
    {
        Link link;
        const auto receiveBlock = [&link](int number) {
            const QString signature = QString::number(number).rightJustified(4, '0');
            link.receive({"{" + signature, "pr /A.B=" + signature, "}"});
        };
        for (int i = 0; i < 9997; ++i) { // until the signatures start over
            link.manager.get(&link.a, "/A.B");
            receiveBlock(i);
        }
        for (int i = 0; i < 6; ++i) // 9997 to 2
            link.manager.get(&link.b, "/A.B");
        for (const char *signature : {"9997", "9998", "1"})
            QTest::ignoreMessage(QtDebugMsg, QByteArray("REMOVED unanswered signature: ") + signature);
        for (const int block : {9999, 9997, 0, 2, 3})
            receiveBlock(block);
        QCOMPARE(link.b.news, (QStringList{"got /A.B=9999", "got /A.B=0000", "got /A.B=0002"}));
    }

    void newsReachEveryHolder()
    {
        Link link;
        link.receive({"CHG /A.X=0"});
        for (const auto &[sink, node] : {std::pair(&link.a, "/A"), {&link.a, "/A"}, {&link.c, "/A/B"}, {&link.c, "/"}})
            QCOMPARE(link.manager.open(sink, node), DT3_OPEN_RESULT_OK); // the second is not confirmed: asked again
        link.receive({"o- /A", "o- /A/B", "o- /", "CHG /A.X=1"});
        link.manager.open(&link.b, "/A");
        link.manager.open(&link.a, "/A");
        link.receive({"CHG /A/B.X=2", "CHG /NOBODY.X=3", "{0000", "CHG /A.X=4=5", "}", "CHG /A.X=\\{6\\}"});
        link.receive({"NEW /A/My preset.1", "DEL /A/x", "NEW /TOP", "NEW /OTHER/x", "DEL /A/"});
        link.manager.close(&link.a, "/A");
        link.manager.close(&link.a, "/A"); // not a holder any more, and another is
        link.receive({"CHG /A.X=7"});
        link.manager.close(&link.b, "/A");
        link.receive({"CHG /A.X=8"});
        link.manager.close(&link.b, "/NEVER"); // held by nobody: the device is told all the same
        const QStringList ofBoth{"chg /A.X=4=5", "chg /A.X={6}", "new /A My preset.1", "del /A x", "del /A /"};
        QCOMPARE(link.a.news, QStringList{"chg /A.X=1"} + ofBoth);
        QCOMPARE(link.b.news, ofBoth + QStringList{"chg /A.X=7"});
        QCOMPARE(link.c.news, (QStringList{"chg /A/B.X=2", "new / TOP"}));
        QTRY_COMPARE(link.service.lines().join(' '), "OPEN /A OPEN /A OPEN /A/B OPEN / CLOSE /A CLOSE /NEVER");
    }

    void asksUntilConfirmedClosedOrGivenUp()
    {
        Link link({90s, 20ms, 10ms});
        link.manager.open(&link.a, "/A");
        link.manager.open(&link.b, "/A");
        link.manager.open(&link.c, "/C");
        link.manager.close(&link.a, "/A");
        link.manager.close(&link.c, "/C"); // the last one out
        QTest::ignoreMessage(QtCriticalMsg, "Expected observerOpenAttempts to contain  \"/C\"  but it did not.");
        link.receive({"o- /A", "o- /C", "CHG /A.X=1", "CHG /C.X=1"});
        QTest::ignoreMessage(QtCriticalMsg, "Failed to OPEN  \"/D\"  after  32  attempts");
        link.manager.open(&link.c, "/D");
        QTRY_COMPARE(link.service.lines().count("OPEN /D"), 32);
        link.manager.open(&link.b, "/E");
        QTRY_VERIFY(link.service.lines().count("OPEN /E") > 2);
        const QString asked
            = "OPEN /A OPEN /A OPEN /C CLOSE /C" + QString(" OPEN /D").repeated(32) + " OPEN /E OPEN /E";
        QCOMPARE(link.service.lines().mid(0, 38).join(' '), asked);
        QCOMPARE(link.a.news + link.b.news + link.c.news, QStringList{"chg /A.X=1"});
    }

    void closedDuringDispatchHearsNothing()
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
            link.manager.open(&link.b, "/B");
        };
        link.receive({"CHG /A.X=1", "NEW /A/child"});
        QCOMPARE(link.b.news, QStringList());
        link.a.reply = [&link] { link.manager.close(&link.a, "/A"); };
        link.receive({"CHG /A.X=2", "CHG /A.X=3"});
        QCOMPARE(link.a.news, (QStringList{"chg /A.X=1", "new /A child", "chg /A.X=2"}));
    }

    void deviceThatDoesNotReadIsLeft()
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

    void sinksUseTheOneClient()
    {
        Dt3Property property;
        property.setPath("/T.Value");
        property.addMapping("1", "One");
        ScriptedService service(6107);
        RecordingSink staying;
        auto passing = std::make_unique<RecordingSink>();
        QTest::ignoreMessage(QtWarningMsg, "DT3_OPEN_RESULT_SOCKET_NOT_OPEN in sendOpen");
        passing->open("/A");
        QSignalSpy connected(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged);
        Dt3Manager::instance()->connectToDevice();
        QVERIFY(connected.wait());
        staying.setValue(property, "One");
        property.setWritePath("/T.Target");
        staying.setValue(property, "One");
        property.setMethodPath("/T:setValue");
        staying.setValue(property, "One");
        passing->open("/P");
        passing->get("/P.X");
        staying.get("/P.Y");
        passing.reset();
        QTRY_COMPARE(service.lines().join(' '),
            "0000#SET /T.Value=1 0001#SET /T.Target=1 0002#CALL /T:setValue(1) "
            "OPEN /P 0003#GET /P.X 0004#GET /P.Y CLOSE /P");
        service.sendLines({"{0003", "pr /P.X=1", "}", "{0004", "pr /P.Y=2", "}"});
        QTRY_COMPARE(staying.news, QStringList{"got /P.Y=2"});
    }
};

QTEST_GUILESS_MAIN(Dt3ManagerTest)
#include "dt3managertest.moc"
