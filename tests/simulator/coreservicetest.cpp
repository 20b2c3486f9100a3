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
    void cleanup() { m_service.reset(); }

    void answersRequests_data();
    void answersRequests();
    void readsLinesAsTheyCome_data();
    void readsLinesAsTheyCome();
    void escapesValues_data();
    void escapesValues();
    void tellsChangesToThoseWhoOpenedTheNode();
    void confirmsEveryOpen();
    void tellsChangesBeforeItAnswers();
    void reportsEveryLine();
    void ignoresOverlongLine();
    void answersEverythingOfABusyClient();
    void cutsOffClientThatNeverReads();
    void dropsAndRestoresTheLink();
    void survivesLinkDroppedInsideARequest();
    void reportsTakenPort();

private:
    std::unique_ptr<CoreService> m_service;
};

void CoreServiceTest::answersRequests_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char *name, const char *request, const char *answer) {
        QTest::newRow(name) << QString(request) << QString(answer);
    };
    row("read-only property", "GET /.PartNumber", "pr /.PartNumber=47110001");
    row("writable property", "GET /SYS/CECU/LCD.AutoTake", "pw /SYS/CECU/LCD.AutoTake=false");
    row("all properties of a node", "GET /MANAGEMENT/BOOTLOADER.*",
        "pr /MANAGEMENT/BOOTLOADER.Status=READY\npr /MANAGEMENT/BOOTLOADER.Progress=0 Idle");
    row("no properties in a node", "GET /MEDIA.*", "");
    row("children of a node", "GET /EDID", "n- /EDID/F\nn- /EDID/D\nn- /EDID/U\nn- /EDID/E");
    row("children of the root", "GET /", "n- /MANAGEMENT\nn- /SYS\nn- /MEDIA\nn- /EDID");
    row("node without children", "GET /MEDIA/PRESET", "");
    row("set", "SET /SYS/CECU/LCD.Message=a=b", "s- /SYS/CECU/LCD.Message");
    row("call", "CALL /MANAGEMENT/POWER:wakeUp()", "m- /MANAGEMENT/POWER:wakeUp");
    row("open", "OPEN /SYS", "o- /SYS");
    row("close of what was never opened", "CLOSE /SYS", "c- /SYS");
    row("unknown node", "GET /NOWHERE", "e- /NOWHERE no such node");
    row("all properties of an unknown node", "GET /NO.*", "e- /NO.* no such node");
    row("unknown property", "GET /SYS.Colour", "e- /SYS.Colour no such property");
    row("set of an unknown property", "SET /SYS.Colour=1", "e- /SYS.Colour no such property");
    row("set of an unknown node", "SET /NO.Colour=1", "e- /NO.Colour no such node");
    row("set of a read-only property", "SET /.PartNumber=1", "e- /.PartNumber read-only");
    row("set to a refused value", "SET /SYS/CECU/BUZZER.Enabled=#",
        "e- /SYS/CECU/BUZZER.Enabled value not accepted: \\#");
    row("unknown method", "CALL /SYS:explode()", "e- /SYS:explode no such method");
    row("method of an unknown node", "CALL /NO:standby()", "e- /NO:standby no such node");
    row("call of no method", "CALL /SYS()", "e- /SYS not a method");
    row("open of an unknown node", "OPEN /NO", "e- /NO no such node");
    row("close of an unknown node", "CLOSE /NO", "e- /NO no such node");
    row("unknown verb", "TAKE /SYS", "e- ? not understood");
    row("verb alone", "GET", "e- ? not understood");
    row("path without a slash", "GET SYS", "e- ? not understood");
    row("set without a value", "SET /SYS/CECU/LCD.Message", "e- ? not understood");
    row("call without an end", "CALL /SYS:factoryDefaults(", "e- ? not understood");
}

void CoreServiceTest::answersRequests()
{
    QFETCH(const QString, request);
    QFETCH(const QString, answer);
    CoreServiceClient client(m_service->port());
    QCOMPARE(client.request(request).join('\n'), answer);
    client.send(request.toUtf8() + "\r\n"); // without a signature the same, without braces
    QCOMPARE(client.takeNews().join('\n'), answer);
}

void CoreServiceTest::readsLinesAsTheyCome_data()
{
    QTest::addColumn<QList<QByteArray>>("pieces");
    QTest::addColumn<QStringList>("answers");

    const QStringList one = {"{0042", "pr /.PartNumber=47110001", "}"};
    QTest::newRow("line in three pieces") << QList<QByteArray>{"0042#GET /.Pa", "rtNumber\r", "\n"} << one;
    QTest::newRow("bare line feed") << QList<QByteArray>{"0042#GET /.PartNumber\n"} << one;
    QTest::newRow("five digits") << QList<QByteArray>{"10042#GET /MEDIA.*\r\n"} << QStringList{"{10042", "}"};
    QTest::newRow("empty lines are nothing") << QList<QByteArray>{"\r\n\n\r\n0042#GET /.PartNumber\r\n"} << one;
    QTest::newRow("two lines at once, one torn") << QList<QByteArray>{"OPEN /SYS\r\nOPEN /MEDIA\r\nOPEN /E", "DID\r\n"}
                                                 << QStringList{"o- /SYS", "o- /MEDIA", "o- /EDID"};
    QTest::newRow("letter of two bytes torn in the middle")
        << QList<QByteArray>{"SET /SYS/CECU/LCD.Message=\xc3", "\xbc\r\nGET /SYS/CECU/LCD.Message\r\n"}
        << QStringList{"s- /SYS/CECU/LCD.Message", QString::fromUtf8("pw /SYS/CECU/LCD.Message=\xc3\xbc")};
    QTest::newRow("signature that is none")
        << QList<QByteArray>{"12#GET /SYS\r\n"} << QStringList{"e- ? not understood"};
    QTest::newRow("signed nonsense") << QList<QByteArray>{"0007#?\r\n"}
                                     << QStringList{"{0007", "e- ? not understood", "}"};
}

void CoreServiceTest::readsLinesAsTheyCome()
{
    QFETCH(const QList<QByteArray>, pieces);
    QFETCH(const QStringList, answers);
    CoreServiceClient client(m_service->port());
    CoreServiceClient pacer(m_service->port());
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

void CoreServiceTest::escapesValues_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("travelling");

    QTest::newRow("plain") << "Hello, world = 1; \"x\""
                           << "Hello, world = 1; \"x\"";
    QTest::newRow("braces and signs") << "#%(){}"
                                      << "\\#\\%\\(\\)\\{\\}";
    QTest::newRow("backslash before a letter") << "C:\\new"
                                               << "C:\\\\new";
    QTest::newRow("line ends and tab") << "a\nb\rc\td"
                                       << "a\\nb\\rc\\td";
    QTest::newRow("beyond ASCII") << QString::fromUtf8("Größe 漢字 🎛")
                                  << QString::fromUtf8("Größe 漢字 🎛");
}

void CoreServiceTest::escapesValues()
{
    QFETCH(const QString, value);
    QFETCH(const QString, travelling);
    CoreServiceClient client(m_service->port());
    client.request("OPEN /SYS/CECU/LCD");
    QVERIFY(m_service->setProperty("/SYS/CECU/LCD.Message", value));
    QCOMPARE(client.value("/SYS/CECU/LCD.Message"), travelling);
    QCOMPARE(client.takeNews(), QStringList{"CHG /SYS/CECU/LCD.Message=" + travelling});

    if (value.contains('\n'))
        return; // cannot be sent as one line
    client.request("SET /SYS/CECU/LCD.Message=");
    client.request("SET /SYS/CECU/LCD.Message=" + value); // requests travel as they are
    QCOMPARE(m_service->property("/SYS/CECU/LCD.Message"), value);
}

void CoreServiceTest::tellsChangesToThoseWhoOpenedTheNode()
{
    CoreServiceClient writer(m_service->port());
    CoreServiceClient watcher(m_service->port());
    QCOMPARE(watcher.request("OPEN /SYS/CECU/LCD"), QStringList{"o- /SYS/CECU/LCD"});

    writer.request("SET /SYS/CECU/LCD.ControlLock=1");
    writer.request("SET /SYS/CECU/LCD.ControlLock=true"); // is what it was
    writer.request("SET /SYS/CECU/BUZZER.Enabled=0");     // another node
    m_service->setProperty("/SYS/CECU/LCD.Brightness", "3");
    QCOMPARE(watcher.takeNews(), (QStringList{"CHG /SYS/CECU/LCD.ControlLock=true", "CHG /SYS/CECU/LCD.Brightness=3"}));
    QCOMPARE(writer.takeNews(), QStringList());

    watcher.request("CLOSE /SYS/CECU/LCD");
    writer.request("SET /SYS/CECU/LCD.ControlLock=0");
    watcher.request("OPEN /SYS/CECU/LCD");
    writer.request("SET /SYS/CECU/LCD.AutoTake=1");
    QCOMPARE(watcher.takeNews(), QStringList{"CHG /SYS/CECU/LCD.AutoTake=true"});
}

void CoreServiceTest::confirmsEveryOpen()
{
    CoreServiceClient client(m_service->port());
    client.send("OPEN /MEDIA/XP/VIDEO\r\nOPEN /MEDIA/XP/VIDEO\r\n");
    QCOMPARE(client.takeNews(), (QStringList{"o- /MEDIA/XP/VIDEO", "o- /MEDIA/XP/VIDEO"}));
    client.request("CALL /MEDIA/XP/VIDEO:lockDestination(O1;)");
    QCOMPARE(client.takeNews().size(), 1); // told once, though opened twice
    client.send("CLOSE /MEDIA/XP/VIDEO\r\n");
    client.request("CALL /MEDIA/XP/VIDEO:unlockDestination(O1;)");
    QCOMPARE(client.takeNews(), QStringList{"c- /MEDIA/XP/VIDEO"});
}

void CoreServiceTest::tellsChangesBeforeItAnswers()
{
    CoreServiceClient client(m_service->port());
    client.send("OPEN /SYS/CECU/LCD\r\n0001#SET /SYS/CECU/LCD.AutoTake=1\r\n0002#GET /MEDIA.*\r\n");
    const QStringList expected = {
        "o- /SYS/CECU/LCD", "CHG /SYS/CECU/LCD.AutoTake=true", "{0001", "s- /SYS/CECU/LCD.AutoTake", "}", "{0002", "}"};
    for (const QString &line : expected)
        QCOMPARE(client.line(), line);
}

void CoreServiceTest::reportsEveryLine()
{
    QSignalSpy received(m_service.get(), &CoreService::requestReceived);
    QSignalSpy sent(m_service.get(), &CoreService::lineSent);
    CoreServiceClient first(m_service->port());
    CoreServiceClient second(m_service->port());
    first.send("OPEN /SYS/CECU/LCD\r\n");
    QCOMPARE(first.line(), "o- /SYS/CECU/LCD");
    second.send("nonsense\r\n0003#SET /SYS/CECU/LCD.Message=Hi\r\n");
    QCOMPARE(first.line(), "CHG /SYS/CECU/LCD.Message=Hi");

    const auto texts = [](const QSignalSpy &spy) {
        QStringList list;
        for (const QList<QVariant> &arguments : spy)
            list.append(arguments[0].toString());
        return list;
    };
    QTRY_COMPARE(texts(sent),
        (QStringList{"o- /SYS/CECU/LCD", "e- ? not understood", "CHG /SYS/CECU/LCD.Message=Hi", "{0003",
            "s- /SYS/CECU/LCD.Message", "}"}));
    QCOMPARE(texts(received), (QStringList{"OPEN /SYS/CECU/LCD", "nonsense", "0003#SET /SYS/CECU/LCD.Message=Hi"}));
}

void CoreServiceTest::ignoresOverlongLine()
{
    CoreServiceClient client(m_service->port());
    const QByteArray set = "0001#SET /SYS/CECU/LCD.Message=";
    client.send(set + QByteArray(65536 - set.size(), 'x') + "\r\n"); // just fits
    for (const char *line : {"{0001", "s- /SYS/CECU/LCD.Message", "}"})
        QCOMPARE(client.line(), line);
    client.send("0002#SET /SYS/CECU/LCD.Message=" + QByteArray(300000, 'y') + "\r\n");
    for (const char *line : {"{0002", "e- ? line too long, ignored", "}"})
        QCOMPARE(client.line(), line);
    for (const char *end : {"z\n", "\rz\n"}) {
        client.send(QByteArray(65536, 'z') + end);
        QCOMPARE(client.line(), "e- ? line too long, ignored");
    }
    QCOMPARE(client.value("/SYS/CECU/LCD.Message").size(), 65536 - set.size());
}

void CoreServiceTest::answersEverythingOfABusyClient()
{
    constexpr int count = 5000;
    CoreServiceClient client(m_service->port());
    QByteArray requests;
    for (int i = 0; i < count; ++i)
        requests += QByteArray::number(10000 + i) + "#GET /MANAGEMENT/UID.*\r\n";
    client.send(requests);
    QStringList blocks;
    while (blocks.size() < count) {
        const QString line = client.line();
        QVERIFY(!line.isNull());
        if (line.startsWith('{'))
            blocks.append(line);
    }
    QCOMPARE(blocks.first(), "{10000");
    QCOMPARE(blocks.last(), "{14999");
    QCOMPARE(QSet<QString>(blocks.begin(), blocks.end()).size(), count);
}

void CoreServiceTest::cutsOffClientThatNeverReads()
{
    QTcpSocket sleeper;
    sleeper.setReadBufferSize(1);
    sleeper.connectToHost(QHostAddress::LocalHost, m_service->port());
    QTRY_COMPARE(sleeper.state(), QAbstractSocket::ConnectedState);
    sleeper.write("OPEN /SYS/CECU/LCD\r\n");
    CoreServiceClient client(m_service->port());
    client.request("OPEN /SYS/CECU/LCD");
    QSignalSpy received(m_service.get(), &CoreService::requestReceived);
    QTRY_COMPARE(sleeper.bytesToWrite(), 0);
    QCOMPARE(client.takeNews(), QStringList()); // what the sleeper sent has been taken by now

    QTest::ignoreMessage(QtWarningMsg, "A client does not read what it asked for: cut off.");
    QSignalSpy sent(m_service.get(), &CoreService::lineSent);
    const QString text(60000, 'm');
    for (int told = 2, i = 0; told == 2; ++i) {
        QVERIFY2(i < 1000, "the sleeper holds 60 MB by now");
        sent.clear();
        m_service->setProperty("/SYS/CECU/LCD.Message", QString::number(i) + text);
        told = static_cast<int>(sent.count());
        QVERIFY(client.line().startsWith("CHG ")); // who reads stays
    }
    QCOMPARE(client.value("/SYS/CECU/LCD.Brightness"), "7");
}

void CoreServiceTest::dropsAndRestoresTheLink()
{
    const quint16 port = m_service->port();
    CoreServiceClient client(port);
    client.request("OPEN /SYS/CECU/LCD");
    QVERIFY(m_service->isLinkUp());

    m_service->dropLink();
    QVERIFY(!m_service->isLinkUp());
    QTRY_COMPARE(client.socket().state(), QAbstractSocket::UnconnectedState);
    QTcpSocket refused;
    refused.connectToHost(QHostAddress::LocalHost, port);
    QTRY_COMPARE(refused.error(), QAbstractSocket::ConnectionRefusedError);
    m_service->setProperty("/SYS/CECU/LCD.AutoTake", "true");

    QVERIFY(m_service->restoreLink());
    QVERIFY(m_service->isLinkUp());
    QCOMPARE(m_service->port(), port);
    CoreServiceClient again(port);
    QCOMPARE(again.value("/SYS/CECU/LCD.AutoTake"), "true"); // the device lived on
    m_service->setProperty("/SYS/CECU/LCD.AutoTake", "false");
    QCOMPARE(again.takeNews(), QStringList()); // what was opened went with the link
}

void CoreServiceTest::survivesLinkDroppedInsideARequest()
{
    connect(m_service.get(), &CoreService::requestReceived, this, [this] { m_service->dropLink(); });
    CoreServiceClient client(m_service->port());
    QSignalSpy received(m_service.get(), &CoreService::requestReceived);
    QSignalSpy sent(m_service.get(), &CoreService::lineSent);
    client.send("GET /\r\nGET /SYS\r\n");
    QTRY_COMPARE(client.socket().state(), QAbstractSocket::UnconnectedState);
    QCOMPARE(received.count(), 1);
    QCOMPARE(sent.count(), 0);
    QVERIFY(m_service->restoreLink());
}

void CoreServiceTest::reportsTakenPort()
{
    CoreService second(frameDescriptors()[0]);
    QVERIFY(!second.listen(m_service->port()));
    QVERIFY(!second.errorString().isEmpty());

    m_service->dropLink();
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost, m_service->port()));
    QVERIFY(!m_service->restoreLink());
    QVERIFY(!m_service->isLinkUp());
}

QTEST_GUILESS_MAIN(CoreServiceTest)
#include "coreservicetest.moc"
