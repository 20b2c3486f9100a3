#include "simulator/coreservice/coreservice.h"

#include "tests/simulator/coreserviceclient.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

/// The line protocol: requests and answers, subscriptions, and what clients may do wrong.
class CoreServiceTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_service = std::make_unique<CoreService>(frameDescriptors()[0]);
        QVERIFY(m_service->listen(0));
    }

    void answersRequests()
    {
        const std::pair<QString, QString> cases[] = {
            {"GET /.PartNumber", "pr /.PartNumber=47110001"},
            {"GET /SYS/CECU/LCD.AutoTake", "pw /SYS/CECU/LCD.AutoTake=false"},
            {"GET /MANAGEMENT/BOOTLOADER.*",
                "pr /MANAGEMENT/BOOTLOADER.Status=READY\npr /MANAGEMENT/BOOTLOADER.Progress=0 Idle"},
            {"GET /MEDIA.*", ""},
            {"GET /", "n- /MANAGEMENT\nn- /SYS\nn- /MEDIA\nn- /EDID"},
            {"SET /SYS/CECU/LCD.Message=a=b", "s- /SYS/CECU/LCD.Message"},
            {"CLOSE /MEDIA", "c- /MEDIA"}, // never opened
            {"GET /NOWHERE", "e- /NOWHERE no such node"},
            {"GET /SYS.Colour", "e- /SYS.Colour no such property"},
            {"SET /SYS.Colour=1", "e- /SYS.Colour no such property"},
            {"SET /.PartNumber=1", "e- /.PartNumber read-only"},
            {"SET /SYS/CECU/BUZZER.Enabled=#", "e- /SYS/CECU/BUZZER.Enabled value not accepted: \\#"},
            {"CALL /SYS:explode()", "e- /SYS:explode no such method"},
            {"CALL /NO:standby()", "e- /NO:standby no such node"},
            {"CALL /SYS()", "e- /SYS not a method"},
            {"OPEN /NO", "e- /NO no such node"},
            {"CLOSE /NO", "e- /NO no such node"},
            {"12#GET /SYS", "e- ? not understood"}, // signature too short
            {"GET SYS", "e- ? not understood"},
            {"SET /SYS/CECU/LCD.Message", "e- ? not understood"},
            {"CALL /SYS:factoryDefaults(", "e- ? not understood"},
        };
        CoreServiceClient client(m_service->port());
        for (const auto &[request, answer] : cases) {
            QCOMPARE(client.request(request).join('\n'), answer);
            client.send(request.toUtf8() + "\r\n"); // without a signature the same, without braces
            QCOMPARE(client.takeNews().join('\n'), answer);
        }
    }

    void readsLinesAsTheyCome()
    {
        const std::tuple<QList<QByteArray>, QStringList> cases[] = {
            {{"OPEN /SYS\r\n0042#GET /.Pa", "rtNumber\r", "\n"}, {"o- /SYS", "{0042", "pr /.PartNumber=47110001", "}"}},
            {{"\r\n\n\r\nOPEN /SYS\n"}, {"o- /SYS"}}, // empty lines and bare line feeds
            {{"OPEN /\xc3", "\xbc\r\n"}, {QString::fromUtf8("e- /\xc3\xbc no such node")}},
            {{QByteArray("0007#\0\xff{}\r\n", 11)}, {"{0007", "e- ? not understood", "}"}},
        };
        CoreServiceClient pacer(m_service->port());
        for (const auto &[pieces, answers] : cases) {
            CoreServiceClient client(m_service->port());
            client.socket().setSocketOption(QAbstractSocket::LowDelayOption, 1);
            for (const QByteArray &piece : pieces) {
                client.send(piece);
                QTRY_COMPARE(client.socket().bytesToWrite(), 0);
                pacer.request("GET /"); // by now the piece has arrived alone
            }
            for (const QString &answer : answers)
                QCOMPARE(client.line(), answer);
            QCOMPARE(client.takeNews(), QStringList());
        }
    }

    void overlongLinesAreIgnored()
    {
        CoreServiceClient client(m_service->port());
        const QString set = "SET /SYS/CECU/LCD.Message=", fits(65536 - set.size() - 5, 'x'); // the signature takes five
        QCOMPARE(client.request(set + fits), QStringList{"s- /SYS/CECU/LCD.Message"});
        QCOMPARE(client.request(set + QString(300000, 'y')), QStringList{"e- ? line too long, ignored"});
        for (const char *end : {"z\n", "\rz\n"}) {
            client.send(QByteArray(65536, 'z') + end);
            QCOMPARE(client.line(), "e- ? line too long, ignored");
        }
        QCOMPARE(m_service->property(m_lcd + ".Message"), fits);
    }

    void escapesValues()
    {
        CoreServiceClient client(m_service->port());
        client.request("OPEN " + m_lcd);
        m_service->setProperty(m_lcd + ".Message", QString::fromUtf8("ü=\"#%(){}\\n\n\r\t"));
        const QString line = m_lcd + QString::fromUtf8(".Message=ü=\"\\#\\%\\(\\)\\{\\}\\\\n\\n\\r\\t");
        QCOMPARE(client.takeNews(), QStringList{"CHG " + line});
        QCOMPARE(client.request("GET " + m_lcd + ".Message"), QStringList{"pw " + line});
        client.request("SET " + m_lcd + ".Message=\\n{#1}"); // requests travel as they are
        QCOMPARE(m_service->property(m_lcd + ".Message"), "\\n{#1}");
    }

    void tellsChangesToThoseWhoOpenedTheNode()
    {
        CoreServiceClient writer(m_service->port()), watcher(m_service->port());
        watcher.send("OPEN /SYS/CECU/LCD\r\nOPEN /SYS/CECU/LCD\r\n"); // is told once all the same
        QCOMPARE(watcher.takeNews(), (QStringList{"o- " + m_lcd, "o- " + m_lcd}));
        for (const char *request : {"SET /SYS/CECU/LCD.ControlLock=1", "SET /SYS/CECU/LCD.ControlLock=true",
                 "SET /SYS/CECU/BUZZER.Enabled=0"}) // the second changes nothing, the third another node
            writer.request(request);
        QCOMPARE(watcher.takeNews(), QStringList{"CHG " + m_lcd + ".ControlLock=true"});
        QCOMPARE(writer.takeNews(), QStringList());

        watcher.request("CLOSE " + m_lcd);
        writer.request("SET /SYS/CECU/LCD.ControlLock=0");
        watcher.send("OPEN /SYS/CECU/LCD\r\n0001#SET /SYS/CECU/LCD.AutoTake=1\r\n"); // first the news, then the answer
        for (const char *line : {"o- /SYS/CECU/LCD", "CHG /SYS/CECU/LCD.AutoTake=true", "{0001"})
            QCOMPARE(watcher.line(), line);
    }

    void answersEverythingOfABusyClient()
    {
        CoreServiceClient client(m_service->port());
        QByteArray requests;
        QStringList answers;
        for (int i = 10000; i < 15000; ++i) {
            requests += QByteArray::number(i) + "#GET /MANAGEMENT/POWER.Psu1\r\n";
            answers += {'{' + QString::number(i), "pr /MANAGEMENT/POWER.Psu1=running", "}"};
        }
        client.send(requests);
        for (const QString &answer : answers)
            QCOMPARE(client.line(), answer);
    }

    void cutsOffClientThatNeverReads()
    {
        QSignalSpy sent(m_service.get(), &CoreService::lineSent);
        QTcpSocket sleeper;
        sleeper.setReadBufferSize(1);
        sleeper.connectToHost(QHostAddress::LocalHost, m_service->port());
        sleeper.write("OPEN /SYS/CECU/LCD\r\n");
        CoreServiceClient client(m_service->port());
        client.request("OPEN " + m_lcd);
        QTRY_COMPARE(sent.count(), 4); // both are served
        QTest::ignoreMessage(QtWarningMsg, "A client does not read what it asked for: cut off.");
        for (int told = 2, i = 0; told == 2; ++i) {
            QVERIFY2(i < 1000, "the sleeper holds 60 MB by now");
            sent.clear();
            m_service->setProperty(m_lcd + ".Message", QString::number(i) + QString(60000, 'm'));
            told = static_cast<int>(sent.count());
            QVERIFY(client.line().startsWith("CHG ")); // who reads stays
        }
    }

    void dropsAndRestoresTheLink()
    {
        CoreServiceClient client(m_service->port());
        QSignalSpy received(m_service.get(), &CoreService::requestReceived);
        connect(m_service.get(), &CoreService::requestReceived, this, [this] { m_service->dropLink(); });
        client.send("OPEN /SYS/CECU/LCD\r\nGET /SYS\r\n"); // the second comes too late
        QTRY_COMPARE(client.socket().state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(received.count() + client.socket().bytesAvailable(), 1);
        QVERIFY(!m_service->isLinkUp());
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost, m_service->port())); // nobody else is there
        QVERIFY(!m_service->restoreLink());
        other.close();
        QVERIFY(m_service->restoreLink());
        m_service->disconnect(this);
        CoreServiceClient again(m_service->port());
        m_service->setProperty(m_lcd + ".AutoTake", "true"); // what was opened went with the link
        QCOMPARE(again.takeNews(), QStringList());
        QCOMPARE(again.request("GET " + m_lcd + ".AutoTake"), QStringList{"pw " + m_lcd + ".AutoTake=true"});
    }

private:
    const QString m_lcd = "/SYS/CECU/LCD";
    std::unique_ptr<CoreService> m_service;
};

QTEST_GUILESS_MAIN(CoreServiceTest)
#include "coreservicetest.moc"
