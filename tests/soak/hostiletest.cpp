#include "protocol/linesplitter.h"
#include "tests/soak/panelcheck.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

using namespace std::chrono_literals;

namespace {

/// What a service sends that is none.
struct Flood
{
    std::function<QByteArray(int piece)> piece;
    int pieces = 0;
    std::chrono::milliseconds pause = 0ms; ///< Between two pieces; 0 for as fast as they are read.
    bool reads = true;
};

/// Confirms what the program asks at first, then floods it.
class HostileService : public QObject
{
public:
    explicit HostileService(const Flood &flood)
        : m_flood(flood)
    {
        if (!m_server.listen(QHostAddress::LocalHost, Device::servicePort))
            qFatal("The port is taken: %s", qPrintable(m_server.errorString()));
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            m_client = m_server.nextPendingConnection();
            connect(m_client, &QTcpSocket::readyRead, this, &HostileService::confirm);
        });
        connect(&m_timer, &QTimer::timeout, this, &HostileService::write);
    }
    bool isDone() const { return m_client && m_sent == m_flood.pieces && m_client->bytesToWrite() == 0; }

private:
    void confirm()
    {
        if (m_client->readBufferSize() > 0)
            return; // it has heard enough
        while (m_client->canReadLine()) {
            const QByteArray line = m_client->readLine().trimmed();
            if (line.startsWith("OPEN "))
                m_client->write("o- " + line.mid(5) + "\r\n");
            else if (line.endsWith("GET /MEDIA/PRESET")) // the last of what the program asks for by itself
                start();
            else if (line.contains("#GET "))
                m_client->write('{' + line.first(4) + "\r\npr " + line.mid(9)
                    + (line.endsWith("/.PartNumber") ? "=47110001" : "=-") + "\r\n}\r\n");
        }
    }
    void start()
    {
        if (!m_flood.reads)
            m_client->setReadBufferSize(1);
        if (m_flood.pause > 0ms)
            return m_timer.start(m_flood.pause);
        connect(m_client, &QTcpSocket::bytesWritten, this, &HostileService::pump);
        pump();
    }
    void pump()
    {
        while (m_sent < m_flood.pieces && m_client->bytesToWrite() < (1 << 16))
            write();
    }
    void write()
    {
        if (m_sent < m_flood.pieces)
            m_client->write(m_flood.piece(m_sent++));
    }

    const Flood m_flood;
    QTcpServer m_server;
    QTcpSocket *m_client = nullptr; // the server's
    QTimer m_timer;
    int m_sent = 0;
};

/// Pieces of 64 KiB.
Flood bytes(const QByteArray &pattern, int mebibytes)
{
    return {[all = pattern.repeated((1 << 16) / int(pattern.size()))](int) { return all; }, 16 * mebibytes};
}

/// A hundred lines each. @param line with the line's number for %1.
Flood lines(const char *line, int count)
{
    const auto hundred = [text = QString(line)](int piece) {
        QByteArray all;
        for (int i = 0; i < 100; ++i)
            all += text.arg(100 * piece + i).toUtf8() + "\r\n";
        return all;
    };
    return {hundred, count / 100};
}

} // namespace

/// The program under a service that is broken or means it harm.
class HostileTest : public QObject
{
    Q_OBJECT
public:
    /// @param part of the full sizes that are sent.
    explicit HostileTest(int part)
        : m_part(part)
    {
    }

private slots:
    void staysUsable_data();
    void staysUsable();

private:
    const int m_part;
};

void HostileTest::staysUsable_data()
{
    QTest::addColumn<Flood>("flood");
    const int million = 1000000 / m_part, gibi = 1024 / m_part;
    QTest::newRow("no line end") << bytes("x", gibi);
    QTest::newRow("empty lines") << bytes("\r\n", gibi);
    QTest::newRow("NULs") << bytes(QByteArray(1, '\0'), gibi);
    QTest::newRow("block starts") << lines("{%1", million);
    QTest::newRow("new properties") << lines("CHG /SYS/CECU/LCD.N%1=1", million);
    QTest::newRow("new presets") << lines("NEW /MEDIA/PRESET/N%1", million);
    QTest::newRow("new nodes") << lines("NEW /SYS/CECU/LCD/N%1", million);
    const auto values = [gibi](const QByteArray &path, const QByteArray &pattern) {
        const QByteArray start = "CHG " + path + '=';
        const qsizetype room = qsizetype(LineSplitter::maxLineLength) - start.size();
        return Flood{[line = start + pattern.repeated(room / pattern.size()) + "\r\n"](int) { return line; }, gibi};
    };
    QTest::newRow("messages of a mebibyte") << values("/SYS/CECU/LCD.Message", "x");
    QTest::newRow("routings of a mebibyte") << values("/MEDIA/XP/VIDEO.DestinationConnectionStatus", "I1;");
    QTest::newRow("never reads") << Flood{[](int) { return "CHG /SYS/CECU/LCD.X=1\r\n"; }, 20000 / m_part, 1ms, false};
    QTest::newRow("a byte now and then") << Flood{[](int) { return "x"; }, 20000 / m_part, 10ms};
}

void HostileTest::staysUsable()
{
    QFETCH(const Flood, flood);
    Front front(1);
    QVERIFY(front.start());
    QSignalSpy leds(&front.device().bed(), &TestBed::ledWritten);
    const QImage menu = front.picture();
    const auto press = [&front, &leds](int source) { // and connect it, so that there is a request to send
        front.tap(1, source);
        const bool answered = comesTrue(leds, [&front, source] { return front.led(1, source) == 1; });
        front.tap(1, 17);
        front.tap(1, 33);
        return answered;
    };
    QVERIFY(press(2)); // a key and a loss, for what they need for good
    front.device().core().dropLink();
    front.picture();
    const double rest = programMemory(front.device());

    double most = rest;
    qint64 slowest = 0;
    int presses = 0;
    {
        HostileService service(flood);
        QVERIFY(QTest::qWaitFor([&front] { return front.messages().count("Connected.") == 2; }));
        do {
            QElapsedTimer timer;
            timer.start();
            QVERIFY(press(1 + presses++ % 8));
            slowest = std::max(slowest, timer.elapsed());
            most = std::max(most, programMemory(front.device()));
        } while (!service.isDone());
    }
    qInfo("%d keys, the slowest answered after %lld ms; memory at rest %.0f KiB, at most %+.0f", presses, slowest, rest,
        most - rest);
    QVERIFY(slowest < (m_part == 1 ? 100 : 2000)); // a machine that builds and tests has other things to do
#ifndef __SANITIZE_ADDRESS__                       // which keeps what is given back
    const double aim = 4096;                       // and a quarter for what the allocator keeps of it, which varies
    QVERIFY(most - rest < 1.25 * aim);
#endif
    front.takeRequests();
    QVERIFY(front.device().core().restoreLink());
    QVERIFY(QTest::qWaitFor([&front] { return front.device().isProgramReady(); }, 30000));
    QCOMPARE(menuProblem(front, menu), QString());
    QRandomGenerator random(1);
    QCOMPARE(routingProblem(front, random), QString());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    HostileTest test(arguments.removeAll("--full") ? 1 : 64); // --full: a gibibyte, a million lines a row
    return QTest::qExec(&test, arguments);
}

#include "hostiletest.moc"
