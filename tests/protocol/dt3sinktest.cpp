#include "protocol/dt3sink.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "tests/support/scriptedservice.h"

#include <QSignalSpy>
#include <QTest>

/// The requests of a sink, through the one client instance on the device's own port.
class Dt3SinkTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { fillCatalogue(); }
    void openWithoutConnectionIsLogged();
    void setValue_data();
    void setValue();
    void forgetsDestroyedSinks();

private:
    struct Sink : Dt3Sink
    {
        using Dt3Sink::call;
        using Dt3Sink::get;
        using Dt3Sink::open;
        using Dt3Sink::setValue;
        void propertyReceived(const QString &, const QString &value) override { received.append(value); }
        QStringList received;
    };
    void connectOnce();

    ScriptedService m_service{6107};
};

void Dt3SinkTest::connectOnce()
{
    if (m_service.hasClient())
        return;
    Dt3Manager::instance()->connectToDevice();
    QTRY_VERIFY(m_service.hasClient());
}

void Dt3SinkTest::openWithoutConnectionIsLogged()
{
    Sink sink;
    if (m_service.hasClient())
        QSKIP("An earlier case has connected already.");
    QTest::ignoreMessage(QtWarningMsg, "DT3_OPEN_RESULT_SOCKET_NOT_OPEN in sendOpen");
    sink.open("/A");
}

void Dt3SinkTest::setValue_data()
{
    QTest::addColumn<QString>("writePath");
    QTest::addColumn<QString>("methodPath");
    QTest::addColumn<QString>("request");

    QTest::newRow("its own path") << ""
                                  << ""
                                  << "SET /T.Value=1";
    QTest::newRow("a write path") << "/T.Target"
                                  << ""
                                  << "SET /T.Target=1";
    QTest::newRow("a method") << ""
                              << "/T:setValue"
                              << "CALL /T:setValue(1)";
    QTest::newRow("a method before a write path") << "/T.Target"
                                                  << "/T:setValue"
                                                  << "CALL /T:setValue(1)";
}

void Dt3SinkTest::setValue()
{
    QFETCH(QString, writePath);
    QFETCH(QString, methodPath);
    QFETCH(QString, request);

    Dt3Property property;
    property.setPath("/T.Value");
    property.addMapping("1", "One");
    if (!writePath.isEmpty())
        property.setWritePath(writePath);
    if (!methodPath.isEmpty())
        property.setMethodPath(methodPath);
    connectOnce();
    m_service.takeLines();
    Sink sink;
    sink.setValue(property, "One");
    QTRY_COMPARE(m_service.lines().size(), 1);
    QCOMPARE(m_service.lines().front().mid(5), request);
}

void Dt3SinkTest::forgetsDestroyedSinks()
{
    connectOnce();
    m_service.takeLines();
    auto passing = std::make_unique<Sink>();
    Sink staying;
    passing->open("/P");
    passing->get("/P.X");
    staying.get("/P.Y");
    QTRY_COMPARE(m_service.lines().size(), 3);
    const QString ofPassing = m_service.lines().at(1).first(4);
    const QString ofStaying = m_service.lines().at(2).first(4);
    passing.reset();
    QTRY_COMPARE(m_service.lines().last(), "CLOSE /P");
    m_service.sendLines({'{' + ofPassing, "pr /P.X=1", "}", '{' + ofStaying, "pr /P.Y=2", "}"});
    QTRY_COMPARE(staying.received, QStringList{"2"});
}

QTEST_GUILESS_MAIN(Dt3SinkTest)
#include "dt3sinktest.moc"
