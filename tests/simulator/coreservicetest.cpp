#include "simulator/coreservice/coreservice.h"

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace std::chrono_literals;

namespace {

const QString lcd = "/SYS/CECU/LCD", xp = "/MEDIA/XP/VIDEO", presets = "/MEDIA/PRESET";

/// A client on a socket of its own, in the test's thread: every wait turns the event loop.
class Client
{
public:
    explicit Client(quint16 port) { socket.connectToHost(QHostAddress::LocalHost, port); }

    /// The next line, whatever it is; null when none comes.
    QString line()
    {
        while (!socket.canReadLine())
            if (!QSignalSpy(&socket, &QIODevice::readyRead).wait())
                return {};
        const QByteArray line = socket.readLine();
        return line.endsWith("\r\n") ? QString::fromUtf8(line.chopped(2)) : "no line end: " + QString::fromUtf8(line);
    }

    /// The block that answers the request, without its braces. The lines before it are kept as news.
    QString request(const QString &text)
    {
        const QString signature = QString::number(m_signature++);
        socket.write((signature + '#' + text + "\r\n").toUtf8());
        QStringList block;
        for (QString next = line(); !next.isNull() && next != '{' + signature; next = line())
            m_news.append(next);
        for (QString next = line(); !next.isNull() && next != "}"; next = line())
            block.append(next);
        return block.join('\n');
    }

    /// What arrived outside blocks since the last call, up to what the service has written by now.
    QString news()
    {
        request("GET /");
        return std::exchange(m_news, {}).join('\n');
    }

    QTcpSocket socket;

private:
    QStringList m_news;
    int m_signature = 1000;
};

/// A frame and somebody who asks it; the first row of the table has 8 inputs and 8 outputs.
struct Rig
{
    size_t row = 1;
    CoreService service{frameDescriptors()[row - 1]};
    Client client{service.listen(0) ? service.port() : quint16(0)};

    QString value(const QString &path) const { return service.property(path).value_or("nothing"); }
    void ask(const QStringList &requests)
    {
        for (const QString &request : requests)
            client.request(request);
    }
};

} // namespace

/// The line protocol with what clients may do wrong, and what the device does when it is asked to.
class CoreServiceTest : public QObject
{
    Q_OBJECT
private slots:
    void answersRequests()
    {
        const std::pair<QString, QString> cases[] = {
            {"GET /MANAGEMENT/BOOTLOADER.*",
                "pr /MANAGEMENT/BOOTLOADER.Status=READY\npr /MANAGEMENT/BOOTLOADER.Progress=0 Idle"},
            {"GET /MEDIA.*", ""},
            {"GET /", "n- /MANAGEMENT\nn- /SYS\nn- /MEDIA\nn- /EDID"},
            {"GET /SYS/CECU/LCD.Message", "pw /SYS/CECU/LCD.Message=ü=\"\\#\\%\\(\\)\\{\\}\\\\n\\n\\r\\t"},
            {"SET /SYS/CECU/LCD.Message=a=\\n{#1}", "s- /SYS/CECU/LCD.Message"}, // requests travel as they are
            {"GET /SYS/CECU/LCD.Message", "pw /SYS/CECU/LCD.Message=a=\\\\n\\{\\#1\\}"},
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
        Rig rig;
        rig.service.setProperty(lcd + ".Message", "ü=\"#%(){}\\n\n\r\t");
        for (const auto &[request, answer] : cases) {
            QCOMPARE(rig.client.request(request), answer);
            rig.client.socket.write(request.toUtf8() + "\r\n"); // without a signature the same, without braces
            QCOMPARE(rig.client.news(), answer);
        }
    }

    void readsLinesAsTheyCome()
    {
        const std::pair<QList<QByteArray>, QString> cases[] = {
            {{"OPEN /SYS\r\n0042#GET /.Pa", "rtNumber\r", "\n"}, "o- /SYS\n{0042\npr /.PartNumber=47110001\n}"},
            {{"\r\n\n\r\nOPEN /SYS\n"}, "o- /SYS"}, // empty lines and bare line feeds
            {{QByteArray("OPEN /SYS\n").repeated(5000)}, QString("o- /SYS\n").repeated(5000).chopped(1)},
            {{"OPEN /\xc3", "\xbc\r\n"}, "e- /ü no such node"},
            {{QByteArray("0007#\0\xff{}\r\n", 11)}, "{0007\ne- ? not understood\n}"},
            {{QByteArray(65536, 'z') + "\n"}, "e- ? not understood"},
            {{QByteArray(65536, 'z') + "\r\n"}, "e- ? not understood"},
            {{QByteArray(65536, 'z') + "z\n"}, "e- ? line too long, ignored"},
            {{QByteArray(65536, 'z') + "\rz\n"}, "e- ? line too long, ignored"},
            {{"0042#GET " + QByteArray(300000, 'y') + "\n"}, "{0042\ne- ? line too long, ignored\n}"},
        };
        Rig rig;
        for (const auto &[pieces, answer] : cases) {
            Client client(rig.service.port());
            client.socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
            for (const QByteArray &piece : pieces) {
                client.socket.write(piece);
                QTRY_COMPARE(client.socket.bytesToWrite(), 0);
                rig.client.request("GET /"); // by now the piece has arrived alone
            }
            QCOMPARE(client.news(), answer);
        }
    }

    void tellsChangesToThoseWhoOpenedTheNode()
    {
        Rig rig;
        Client watcher(rig.service.port());
        watcher.socket.write("OPEN /SYS/CECU/LCD\r\nOPEN /SYS/CECU/LCD\r\n"); // is told once all the same
        QCOMPARE(watcher.news(), "o- /SYS/CECU/LCD\no- /SYS/CECU/LCD");
        // the second changes nothing, the third another node
        rig.ask({"SET /SYS/CECU/LCD.Message=#", "SET /SYS/CECU/LCD.Message=#", "SET /SYS/CECU/BUZZER.Enabled=0"});
        QCOMPARE(watcher.news(), "CHG /SYS/CECU/LCD.Message=\\#");
        QCOMPARE(rig.client.news(), QString());

        watcher.request("CLOSE " + lcd);
        rig.client.request("SET /SYS/CECU/LCD.ControlLock=1");
        watcher.socket.write("OPEN /SYS/CECU/LCD\r\n0001#SET /SYS/CECU/LCD.AutoTake=1\r\n");
        QCOMPARE(watcher.news(), // the change before the answer
            "o- /SYS/CECU/LCD\nCHG /SYS/CECU/LCD.AutoTake=true\n{0001\ns- /SYS/CECU/LCD.AutoTake\n}");
    }

    void cutsOffClientThatNeverReads()
    {
        Rig rig;
        Client sleeper(rig.service.port());
        for (Client *client : {&sleeper, &rig.client})
            client->request("OPEN " + lcd);
        sleeper.socket.setReadBufferSize(1);
        const QSignalSpy sent(&rig.service, &CoreService::lineSent);
        QTest::ignoreMessage(QtWarningMsg, "A client does not read what it asked for: cut off.");
        for (int i = 0; sent.count() == 2 * i; ++i) { // both are told
            QVERIFY2(i < 1000, "the sleeper holds 60 MB by now");
            rig.service.setProperty(lcd + ".Message", QString::number(i) + QString(60000, 'm'));
            QVERIFY(rig.client.line().startsWith("CHG ")); // who reads stays
        }
    }

    void dropsAndRestoresTheLink()
    {
        Rig rig;
        QSignalSpy received(&rig.service, &CoreService::requestReceived);
        auto drop = connect(&rig.service, &CoreService::requestReceived, this, [&rig] { rig.service.dropLink(); });
        rig.client.socket.write("OPEN /SYS/CECU/LCD\r\nGET /SYS\r\n"); // the second comes too late
        QTRY_COMPARE(rig.client.socket.state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(received.count() + rig.client.socket.bytesAvailable(), 1);
        QVERIFY(!rig.service.isLinkUp());
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost, rig.service.port())); // nobody else is there
        QVERIFY(!rig.service.restoreLink());
        other.close();
        QVERIFY(rig.service.restoreLink() && disconnect(drop));
        Client again(rig.service.port());
        rig.service.setProperty(lcd + ".AutoTake", "true"); // what was opened went with the link
        QCOMPARE(again.news(), QString());
        QCOMPARE(again.request("GET " + lcd + ".AutoTake"), "pw /SYS/CECU/LCD.AutoTake=true");
    }

    void framesHaveTheirParts()
    {
        const std::tuple<size_t, QString, QString> cases[] = {
            // row of the table, property, its value
            {7, "/MEDIA/PORTS/VIDEO/I4.PortType", "HDMI_AUDIO"},
            {7, "/MEDIA/PORTS/VIDEO/O17.PortType", "AUDIO"},
            {23, "/MEDIA/PORTS/VIDEO/I1.PortType", "DP_AUDIO"},
            {17, "/SYS/OB12/PORT4/HEALTH.Voltage4_1V0", "1.00 V;0.95;1.05;0.90;1.10;0.99;1.01"},
            {17, "/SYS/IB12/PORT1/HEALTH.Temperature0", "47.5 C;5.0;60.0;0.0;70.0;46.5;48.5"},
            {17, "/MANAGEMENT/UID.AddonHwVersion6", "V20_INPUT"}, // five kinds of input boards, five of output boards
            {17, "/MANAGEMENT/UID.AddonHwVersion7", "V12_OUTPUT"},
            {1, "/MANAGEMENT/UID.AddonHwVersion4", "V12_OUTPUT"}, // behind two input boards
            {1, "/MANAGEMENT/UID.AddonHwVersion6", "-"},
        };
        for (const auto &[row, path, value] : cases)
            QCOMPARE(path + " is " + Rig{row}.value(path), path + " is " + value);
    }

    void connectsLocksAndLoadsPresets()
    {
        Rig rig{27}; // 16 inputs, 12 outputs, of which the last four have audio alone
        const QString port = "/MEDIA/PORTS/VIDEO/O", mute = "/ANALOGAUDIO.Mute=1", connect = "CALL " + xp + ":connect",
                      lock = "CALL " + xp + ":lockDestination", load = "CALL /MEDIA/PRESET/A:load()";
        const std::pair<QStringList, QString> steps[] = {
            // requests, then status and source of destinations 1 to 4 and 9: T, locked L, muted M, locked and muted U
            {{lock + "(O2;O9;)"}, "TFF:I1 LEF:I2 TAF:I3 TAA:I4 LFF:I9"},
            {{"SET " + port + '2' + mute, "SET " + port + '9' + mute}, "TFF:I1 LEF:I2 TAF:I3 TAA:I4 UFF:I9"},
            {{connect + "(I5:-O1;I5:-O2;I3xO3;I5:-O9)"}, "TFF:I5 LEF:I2 TAF:0 TAA:I4 UFF:I9"},
            {{"CALL " + presets + ":create(A,VIDEO)", "CALL " + xp + ":unlockDestination(O9;O4)"},
                "TFF:I5 LEF:I2 TAF:0 TAA:I4 MFF:I9"},
            {{connect + "(I1:-O1;I6:-O3;I7:-O9;)", lock + "(O9;)"}, "TFF:I1 LEF:I2 TAF:I6 TAA:I4 UFF:I7"},
            {{load}, "TFF:I5 LEF:I2 TAF:0 TAA:I4 UFF:I7"}, // the locked one kept its source
            {{connect + "(I8:-O4)", "CALL /MEDIA/PRESET/A:save()", connect + "(I1:-O4)", load},
                "TFF:I5 LEF:I2 TAF:0 TAA:I8 UFF:I7"},
            {{connect + "(I2:-O4)", "CALL " + presets + ":create(A,VIDEO)", connect + "(I1:-O4)", load},
                "TFF:I5 LEF:I2 TAF:0 TAA:I2 UFF:I7"},
            {{"CALL /SYS:factoryDefaults()"}, "TFF:I1 TEF:I2 TAF:I3 TAA:I4 TFF:I9"}, // the signal is no setting
        };
        rig.service.setProperty(port + "2/STATUS.ActiveHdcpVersion", "0");
        for (const auto &[requests, expected] : steps) {
            rig.ask(requests);
            QStringList seen;
            for (const int i : {0, 1, 2, 3, 8})
                seen += rig.value(xp + ".DestinationPortStatus").split(';')[i] + ':'
                    + rig.value(xp + ".DestinationConnectionStatus").split(';')[i];
            QCOMPARE(requests.join(' ') + ": " + seen.join(' '), requests.join(' ') + ": " + expected);
        }
        QCOMPARE(rig.service.presetNames(), QStringList());
    }

    void refusesNonsense()
    {
        Rig rig;
        rig.ask({"OPEN " + xp, "CALL " + xp + ":lockDestination(O8;)"});
        QCOMPARE(rig.client.request(
                     "CALL " + xp + ":connect(I1:-O2;I1:-O8;I8xO8;I3xO3;I9:-O1;I0:-O1;I1:-O9;I1:-O0;I1xO4;1:2;)"),
            "e- " + xp
                + ":connect refused: I1:-O8 destination locked; I8xO8 destination locked; I9:-O1 no such source;"
                  " I0:-O1 no such source; I1:-O9 no such destination; I1:-O0 no such destination; I1xO4 not connected;"
                  " 1:2 not understood");
        QCOMPARE(rig.client.request("CALL " + xp + ":lockDestination(O8;O9;I2;)"),
            "e- " + xp + ":lockDestination refused: O9 no such destination; I2 no such destination");
        QCOMPARE(rig.client.news().count("CHG "), 2); // of the lock, and of both routes that can be done
        for (const QString &request :
            QStringList{"SET /SYS/CECU/LCD.ControlLock=yes", "SET /MANAGEMENT/SERIAL.Baudrate=300",
                "SET /MANAGEMENT/NETWORK.StaticIpAddress=10.0.1", "SET /MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO.Gain=36",
                "SET /MANAGEMENT/POWER.Operation=ON", "CALL /MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO:stepBalance()",
                "CALL /SYS/CECU/LCD:changeBrightness(up)", "CALL /EDID:copy(F2:F1)", "CALL /EDID:copy(D1:U17)",
                "CALL /EDID:switchAll(F99)", "CALL /MANAGEMENT/DATETIME:setTime(04:05:06)",
                "CALL /MANAGEMENT/DATETIME:setTime(2031-02-30T04:05:06)", "CALL /MEDIA/PRESET:create(a/b,VIDEO)",
                "CALL /MEDIA/PRESET:create(,VIDEO)", "CALL /MEDIA/PRESET:create(a\tb,VIDEO)",
                "CALL /MEDIA/PRESET:create(a,AUDIO)", "CALL /MEDIA/PRESET:createButtonAssignedPreset(0,VIDEO)",
                "CALL /MEDIA/PRESET:createButtonAssignedPreset(9,VIDEO)"})
            QVERIFY2(rig.client.request(request).startsWith("e- /"), qPrintable(request));
        QVERIFY(rig.client.request("CALL " + presets + ":create(" + QString(256, 'n') + ",VIDEO)").startsWith("e- /"));
        QCOMPARE(rig.service.presetNames(), QStringList());
    }

    void changesValues()
    {
        const QString audio = "/MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO", network = "/MANAGEMENT/NETWORK",
                      power = "/MANAGEMENT/POWER", edid = "/EDID/E/E8.MonitorName";
        const std::tuple<QString, QString, QString> steps[] = {
            // request, property, its value then
            {"SET " + audio + ".Gain=-12", audio + ".Gain", "-12"},
            {"SET " + network + ".StaticIpAddress=10.0.0.7", network + ".IpAddress", "192.168.0.100"}, // not yet
            {"CALL " + network + ":applySettings()", network + ".IpAddress", "10.0.0.7"},
            {"SET " + network + ".DhcpEnabled=1", network + ".DhcpEnabled", "true"},
            {"CALL " + network + ":applySettings()", network + ".IpAddress", "192.168.0.57"},
            {"CALL " + power + ":standby()", power + ".Operation", "STANDBY"},
            {"CALL " + power + ":wakeUp()", power + ".Operation", "ON"},
            {"CALL " + lcd + ":changeBrightness(-1)", lcd + ".Brightness", "6"},
            {"CALL " + lcd + ":changeBrightness(5)", lcd + ".Brightness", "10"},
            {"CALL " + audio + ":stepVolumePercent(-10)", audio + ".VolumedB", "-18.00"},
            {"CALL " + audio + ":stepBalance(-150)", audio + ".Balance", "-100"},
            {"CALL /EDID:switchAll(F1)", edid, "D1024X768"},
            {"CALL /EDID:copy(F2:U5)", edid, "D1024X768"},
            {"CALL /EDID:switch(U5:E8)", edid, "D1280X1024"},
            {"CALL /SYS:factoryDefaults()", edid, "H1080P60"},
        };
        Rig rig;
        for (const auto &[request, path, value] : steps) {
            QVERIFY2(!rig.client.request(request).startsWith("e-"), qPrintable(request));
            QCOMPARE(request + ": " + rig.value(path), request + ": " + value);
        }
    }

    void setsTheClockAndTicks()
    {
        Rig rig;
        const QString node = "/MANAGEMENT/DATETIME";
        rig.service.setProperty(node + ".CurrentTime", "2030-01-01T12:00:00");
        rig.client.request("CALL " + node + ":setTime(2031-02-03T)");
        QVERIFY(rig.value(node + ".CurrentTime").startsWith("2031-02-03T12:0"));
        rig.ask({"CALL " + node + ":setTime(T23:59:59)", "OPEN " + node});
        QString news; // watched, it tells every second
        QTRY_VERIFY((news += rig.client.news()).count("CurrentTime=2031-02-04T00:00:0") >= 2);
    }

    void presetNames()
    {
        Rig rig;
        Client deaf(rig.service.port()); // opened nothing
        rig.client.request("OPEN " + presets);
        for (const QString &name : {QString("v1.2."), QString("\"Großer\" Saal 漢"), QString("a,VIDEO (b) {c}"),
                 QString("a:load(b)"), QString(255, 'n')}) {
            const QString path = presets + '/' + name;
            QCOMPARE(
                rig.client.request("CALL " + presets + ":create(" + name + ",VIDEO)"), "m- " + presets + ":create");
            rig.service.addPreset(name); // there already
            QCOMPARE(rig.client.request("GET " + presets), "n- " + path);
            QCOMPARE(rig.client.request("GET " + path + ".*"), QString());
            QCOMPARE(rig.client.request("CALL " + path + ":load()"), "m- " + path + ":load");
            QCOMPARE(rig.client.request("CALL " + path + ":delete()"), "m- " + path + ":delete");
            QCOMPARE(rig.client.news(), "NEW " + path + "\nDEL " + path);
            QVERIFY(rig.client.request("CALL " + path + ":load()").startsWith("e- "));
        }
        QCOMPARE(deaf.news(), QString());
    }

    void presetsBelongToButtons()
    {
        Rig rig;
        const QString assign = "CALL " + presets + ":createButtonAssignedPreset(3,VIDEO)", own = presets + "/Button3",
                      connect = "CALL " + xp + ":connect", told = "CHG /MEDIA/PRESET.Button3AssignedPreset=";
        rig.ask({"OPEN " + presets, assign, connect + "(I2:-O1;)", assign, // overwrites the button's own
            connect + "(I1:-O1;)", "CALL " + own + ":load()"});
        QVERIFY(rig.value(xp + ".DestinationConnectionStatus").startsWith("I2;"));
        rig.ask({"CALL " + own + ":delete()", "CALL " + presets + ":create(Evening,VIDEO)",
            "SET " + presets + ".Button3AssignedPreset=Evening", assign}); // whichever it stands for
        QCOMPARE(rig.client.news().split('\n'),
            (QStringList{
                "NEW " + own, told + "Button3", "DEL " + own, told, "NEW " + presets + "/Evening", told + "Evening"}));
    }

    void upgrades()
    {
        Rig rig;
        const QString node = "CHG /MANAGEMENT/BOOTLOADER", idle = node + ".Progress=0 Idle";
        rig.client.request("OPEN /MANAGEMENT/BOOTLOADER");
        rig.service.startUpgrade(10min); // to be overtaken by the next
        rig.service.startUpgrade(20ms);
        QStringList told;
        QTRY_VERIFY((told += rig.client.news().split('\n', Qt::SkipEmptyParts)).endsWith(idle)); // over, and stays so
        QCOMPARE(told[0], node + ".Status=UPDATING");
        QCOMPARE(told.mid(told.size() - 3),
            (QStringList{node + ".Progress=100 Writing firmware", node + ".Status=READY", idle}));
    }
};

QTEST_GUILESS_MAIN(CoreServiceTest)
#include "coreservicetest.moc"
