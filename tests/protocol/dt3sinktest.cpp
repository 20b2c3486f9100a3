#include "protocol/dt3sink.h"

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"
#include "tests/support/scriptedservice.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {

struct Sink final : Dt3Sink
{
    using Dt3Sink::get, Dt3Sink::open, Dt3Sink::setValue;
    void propertyReceived(const QString &, const QString &value) override { received.append(value); }
    QStringList received;
};

} // namespace

/// The requests of a sink, through the one client instance on the device's own port.
class Dt3SinkTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QTest::ignoreMessage(QtWarningMsg, "DT3_OPEN_RESULT_SOCKET_NOT_OPEN in sendOpen");
        Sink().open("/A");
        QSignalSpy connected(Dt3Manager::instance(), &Dt3Manager::connectionStateChanged);
        Dt3Manager::instance()->connectToDevice();
        QVERIFY(connected.wait());
    }

    void setValue()
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
        QCOMPARE(m_service.takeLines().join(' ').remove(QRegularExpression("\\d{4}#")),
            "SET /T.Value=1 SET /T.Target=1 CALL /T:setValue(1)");
    }

    void forgetsDestroyedSinks()
    {
        auto passing = std::make_unique<Sink>();
        Sink staying;
        passing->open("/P");
        passing->get("/P.X");
        staying.get("/P.Y");
        QTRY_COMPARE(m_service.lines().size(), 3);
        passing.reset();
        QTRY_COMPARE(m_service.lines().size(), 4);
        const QStringList lines = m_service.takeLines();
        QCOMPARE(lines.last(), "CLOSE /P");
        m_service.sendLines({'{' + lines[1].first(4), "pr /P.X=1", "}", '{' + lines[2].first(4), "pr /P.Y=2", "}"});
        QTRY_COMPARE(staying.received, QStringList{"2"});
    }

private:
    ScriptedService m_service{6107};
};

QTEST_GUILESS_MAIN(Dt3SinkTest)
#include "dt3sinktest.moc"
