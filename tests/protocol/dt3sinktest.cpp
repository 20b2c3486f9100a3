#include "protocol/dt3sink.h"

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"
#include "tests/support/scriptedservice.h"

#include <QSignalSpy>
#include <QTest>

/// The requests of a sink, through the one client instance on the device's own port.
class Dt3SinkTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { Dt3Manager::instance()->connectToDevice(); }
    void init();
    void openWithoutConnectionIsLogged();
    void setValue();
    void forgetsDestroyedSinks();

private:
    struct Sink final : Dt3Sink
    {
        using Dt3Sink::get, Dt3Sink::open, Dt3Sink::setValue;
        void propertyReceived(const QString &, const QString &value) override { received.append(value); }
        QStringList received;
    };
    ScriptedService m_service{6107};
};

void Dt3SinkTest::init()
{
    QTRY_VERIFY(m_service.hasClient());
    m_service.takeLines();
}

void Dt3SinkTest::openWithoutConnectionIsLogged()
{
    QSignalSpy state(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged);
    m_service.refuseClients();
    m_service.dropClient();
    QTRY_VERIFY(state.contains(QVariantList{false}));
    QTest::ignoreMessage(QtWarningMsg, "DT3_OPEN_RESULT_SOCKET_NOT_OPEN in sendOpen");
    Sink().open("/A");
    QVERIFY(m_service.acceptClients());
    QTRY_COMPARE(state.last(), QVariantList{true});
}

void Dt3SinkTest::setValue()
{
    Dt3Property property;
    property.setPath("/T.Value");
    property.addMapping("1", "One");
    Sink sink;
    sink.setValue(property, "One");
    property.setWritePath("/T.Target");
    sink.setValue(property, "One");
    property.setMethodPath("/T:setValue");
    sink.setValue(property, "One");
    QTRY_COMPARE(m_service.lines().size(), 3);
    QCOMPARE(m_service.lines().join(' ').remove(QRegularExpression("\\d{4}#")),
        "SET /T.Value=1 SET /T.Target=1 CALL /T:setValue(1)");
}

void Dt3SinkTest::forgetsDestroyedSinks()
{
    auto passing = std::make_unique<Sink>();
    Sink staying;
    passing->open("/P");
    passing->get("/P.X");
    staying.get("/P.Y");
    QTRY_COMPARE(m_service.lines().size(), 3);
    const QString ofPassing = m_service.lines().at(1).first(4), ofStaying = m_service.lines().at(2).first(4);
    passing.reset();
    QTRY_COMPARE(m_service.lines().last(), "CLOSE /P");
    m_service.sendLines({'{' + ofPassing, "pr /P.X=1", "}", '{' + ofStaying, "pr /P.Y=2", "}"});
    QTRY_COMPARE(staying.received, QStringList{"2"});
}

QTEST_GUILESS_MAIN(Dt3SinkTest)
#include "dt3sinktest.moc"
