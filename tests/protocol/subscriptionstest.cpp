#include "protocol/dt3manager.h"
#include "tests/protocol/recordingsink.h"
#include "tests/support/scriptedservice.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

/// OPEN and CLOSE, and who hears of changes.
class SubscriptionsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void changesReachEveryHolder();
    void nodesComeAndGo();
    void sharedNodeIsOpenedAndClosedOnce();
    void confirmationSubscribesAllWhoWait();
    void closeWhileWaiting();
    void unexpectedConfirmation();
    void retriesUntilGivenUp();
    void closedDuringDispatchHearsNothing();
    void destroyedSinkIsForgotten();
    void reopensAfterALoss();

private:
    void connectAnew(std::chrono::milliseconds openRetry);
    bool openNode(RecordingSink &sink, const QString &node);
    void receive(const QStringList &lines) { m_manager->receive((lines.join("\r\n") + "\r\n").toUtf8()); }

    std::unique_ptr<ScriptedService> m_service;
    std::unique_ptr<Dt3Manager> m_manager;
    RecordingSink m_a, m_b, m_c;
    QSet<QString> m_confirmed;
};

void SubscriptionsTest::init() { connectAnew(1s); }

void SubscriptionsTest::connectAnew(std::chrono::milliseconds openRetry)
{
    m_manager.reset();
    m_service = std::make_unique<ScriptedService>();
    m_manager = std::make_unique<Dt3Manager>("127.0.0.1", m_service->port(), Dt3Times{90s, 20ms, openRetry});
    QSignalSpy spy(m_manager.get(), &Dt3Manager::connectionStateChanged);
    m_manager->connectToDevice();
    QVERIFY(spy.wait());
    QTRY_VERIFY(m_service->hasClient());
}

void SubscriptionsTest::cleanup()
{
    m_manager.reset();
    m_confirmed.clear();
    for (RecordingSink *sink : {&m_a, &m_b, &m_c}) {
        sink->news.clear();
        sink->reply = {};
    }
}

bool SubscriptionsTest::openNode(RecordingSink &sink, const QString &node)
{
    const bool isOpen = m_manager->open(&sink, node) == DT3_OPEN_RESULT_OK;
    if (!m_confirmed.contains(node))
        receive({"o- " + node});
    m_confirmed.insert(node);
    return isOpen;
}

void SubscriptionsTest::changesReachEveryHolder()
{
    QVERIFY(openNode(m_a, "/A"));
    QVERIFY(openNode(m_b, "/A"));
    QVERIFY(openNode(m_c, "/A/B"));
    receive({"CHG /A.X=1", "CHG /A/B.X=2", "CHG /NOBODY.X=3", "{0000", "CHG /A.X=4=5", "}", "CHG /A.X=\\{6\\}"});
    const QStringList ofA{"changed /A.X=1", "changed /A.X=4=5", "changed /A.X={6}"};
    QCOMPARE(m_a.news, ofA);
    QCOMPARE(m_b.news, ofA);
    QCOMPARE(m_c.news, QStringList{"changed /A/B.X=2"});
    m_manager->close(&m_a, "/A");
    receive({"CHG /A.X=7", "CHG /A.Y=8"});
    QCOMPARE(m_a.news, ofA);
    QCOMPARE(m_b.news.mid(3), (QStringList{"changed /A.X=7", "changed /A.Y=8"}));
}

void SubscriptionsTest::nodesComeAndGo()
{
    QVERIFY(openNode(m_a, "/MEDIA/PRESET"));
    QVERIFY(openNode(m_b, "/"));
    receive({"NEW /MEDIA/PRESET/My preset.1", "DEL /MEDIA/PRESET/x", "NEW /TOP", "NEW /OTHER/x", "DEL /MEDIA/PRESET/"});
    QCOMPARE(m_a.news,
        (QStringList{"added /MEDIA/PRESET My preset.1", "removed /MEDIA/PRESET x", "removed /MEDIA/PRESET /"}));
    QCOMPARE(m_b.news, QStringList{"added / TOP"});
}

void SubscriptionsTest::sharedNodeIsOpenedAndClosedOnce()
{
    QVERIFY(openNode(m_a, "/A"));
    QVERIFY(m_manager->open(&m_b, "/A") == DT3_OPEN_RESULT_OK);
    m_manager->close(&m_a, "/A");
    m_manager->close(&m_a, "/A"); // not a holder any more, and another is
    m_manager->close(&m_b, "/A");
    m_manager->close(&m_b, "/NEVER"); // held by nobody: the device is told all the same
    QTRY_COMPARE(m_service->lines(), (QStringList{"OPEN /A", "CLOSE /A", "CLOSE /NEVER"}));
}

void SubscriptionsTest::confirmationSubscribesAllWhoWait()
{
    m_manager->open(&m_a, "/A");
    m_manager->open(&m_b, "/A");
    m_manager->open(&m_a, "/A");
    receive({"o- /A", "CHG /A.X=1"});
    QCOMPARE(m_a.news, QStringList{"changed /A.X=1"});
    QCOMPARE(m_b.news, QStringList{"changed /A.X=1"});
    QTRY_COMPARE(m_service->lines(), (QStringList{"OPEN /A", "OPEN /A", "OPEN /A"}));
}

void SubscriptionsTest::closeWhileWaiting()
{
    connectAnew(10ms);
    m_manager->open(&m_a, "/A");
    m_manager->open(&m_b, "/A");
    m_manager->open(&m_c, "/C");
    m_manager->close(&m_a, "/A");
    m_manager->close(&m_c, "/C"); // the last one out
    QTest::ignoreMessage(
        QtCriticalMsg, QRegularExpression("^Expected observerOpenAttempts to contain +\"/C\" +but it did not.$"));
    receive({"o- /A", "o- /C", "CHG /A.X=1", "CHG /C.X=1"});
    QCOMPARE(m_a.news, QStringList());
    QCOMPARE(m_b.news, QStringList{"changed /A.X=1"});
    QCOMPARE(m_c.news, QStringList());
    m_manager->open(&m_c, "/D"); // and no retry follows for C before those of D
    QTRY_VERIFY(m_service->lines().count("OPEN /D") > 2);
    QCOMPARE(m_service->lines().mid(0, 4), (QStringList{"OPEN /A", "OPEN /A", "OPEN /C", "CLOSE /C"}));
    QCOMPARE(m_service->lines().count("OPEN /C"), 1);
}

void SubscriptionsTest::unexpectedConfirmation()
{
    QTest::ignoreMessage(
        QtCriticalMsg, QRegularExpression("^Expected observerOpenAttempts to contain +\"/X\" +but it did not.$"));
    receive({"o- /X", "CHG /X.Y=1"});
    QVERIFY(openNode(m_a, "/A"));
    receive({"CHG /X.Y=1", "CHG /A.B=1"});
    QCOMPARE(m_a.news, QStringList{"changed /A.B=1"});
}

void SubscriptionsTest::retriesUntilGivenUp()
{
    connectAnew(10ms);
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Failed to OPEN +\"/A\" +after +32 +attempts$"));
    m_manager->open(&m_a, "/A");
    QTRY_COMPARE(m_service->lines().size(), 32);
    QCOMPARE(m_service->lines().count("OPEN /A"), 32);
    m_manager->open(&m_b, "/B");
    QTRY_VERIFY(m_service->lines().count("OPEN /B") > 2);
    QCOMPARE(m_service->lines().count("OPEN /A"), 32);
    receive({"o- /B", "CHG /A.X=1", "CHG /B.X=1"});
    QCOMPARE(m_a.news, QStringList());
    QCOMPARE(m_b.news, QStringList{"changed /B.X=1"});
}

void SubscriptionsTest::closedDuringDispatchHearsNothing()
{
    for (RecordingSink *sink : {&m_a, &m_b, &m_c})
        QVERIFY(openNode(*sink, "/A"));
    m_a.reply = [this] { // whoever is called first ends the others' subscription, and opens other nodes
        m_manager->close(&m_b, "/A");
        m_manager->close(&m_c, "/A");
        m_manager->get(&m_a, "/A.X");
        m_manager->open(&m_b, "/B");
    };
    receive({"CHG /A.X=1", "NEW /A/child"});
    QCOMPARE(m_a.news, (QStringList{"changed /A.X=1", "added /A child"}));
    QCOMPARE(m_b.news + m_c.news, QStringList());
    m_a.reply = [this] { m_manager->close(&m_a, "/A"); };
    receive({"CHG /A.X=2", "CHG /A.X=3"});
    QCOMPARE(m_a.news.mid(2), QStringList{"changed /A.X=2"});
}

void SubscriptionsTest::destroyedSinkIsForgotten()
{
    // Only the one instance is told by the sinks themselves; here it is the test that tells.
    auto passing = std::make_unique<RecordingSink>();
    QVERIFY(openNode(*passing, "/A"));
    QVERIFY(openNode(m_b, "/A"));
    m_b.reply = [&] {
        if (passing) {
            m_manager->close(passing.get(), "/A");
            passing.reset();
        }
    };
    m_manager->close(passing.get(), "/A");
    m_manager->open(passing.get(), "/A"); // behind B now
    receive({"CHG /A.X=1", "CHG /A.X=2"});
    QVERIFY(!passing);
    QCOMPARE(m_b.news, (QStringList{"changed /A.X=1", "changed /A.X=2"}));
}

void SubscriptionsTest::reopensAfterALoss()
{
    QObject::connect(m_manager.get(), &Dt3Manager::connectionStateChanged, this, [this](bool connected) {
        if (connected)
            m_manager->open(&m_a, "/A");
        else
            m_manager->close(&m_a, "/A");
    });
    QVERIFY(openNode(m_a, "/A"));
    for (int i = 1; i <= 3; ++i) {
        QTRY_COMPARE(m_service->lines().size(), i);
        QCOMPARE(m_service->lines().last(), "OPEN /A"); // and waits unconfirmed at the next loss
        m_service->dropClient();
    }
    QTRY_COMPARE(m_service->lines().size(), 4);
    m_service->sendLines({"o- /A", "CHG /A.X=1"});
    QTRY_COMPARE(m_a.news, QStringList{"changed /A.X=1"});
}

QTEST_GUILESS_MAIN(SubscriptionsTest)
#include "subscriptionstest.moc"
