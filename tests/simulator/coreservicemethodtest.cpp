#include "simulator/coreservice/coreservice.h"
#include "tests/simulator/coreserviceclient.h"

#include <QDateTime>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

namespace {

const QString xp = "/MEDIA/XP/VIDEO";
const QString straight = "I1;I2;I3;I4;I5;I6;I7;I8";

} // namespace

/// What the methods of the device do, on a frame with 8 inputs and 8 outputs.
class CoreServiceMethodTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_service = std::make_unique<CoreService>(frameDescriptors()[0]);
        QVERIFY(m_service->listen(0));
        m_client = std::make_unique<CoreServiceClient>(m_service->port());
    }
    void cleanup()
    {
        m_client.reset();
        m_service.reset();
    }

    void connectsPorts_data();
    void connectsPorts();
    void locksDestinations();
    void statusFollowsThePort();
    void changesValues_data();
    void changesValues();
    void takesStaticAddressesIntoUse();
    void setsTheClock_data();
    void setsTheClock();
    void ticksWhileWatched();
    void presetNames_data();
    void presetNames();
    void presetsStoreAndLoadRoutes();
    void presetsBelongToButtons();
    void refusesPresets_data();
    void refusesPresets();
    void deviceChangesPresets();
    void upgrades();
    void restoresFactoryDefaults();

private:
    QString valueOf(const QString &path) const { return m_service->property(path).value_or("nothing"); }
    QString routes() const { return valueOf(xp + ".DestinationConnectionStatus"); }
    QString locks() const;

    std::unique_ptr<CoreService> m_service;
    std::unique_ptr<CoreServiceClient> m_client;
};

/// The letters of the destinations' status fields.
QString CoreServiceMethodTest::locks() const
{
    QString letters;
    const QStringList fields = valueOf(xp + ".DestinationPortStatus").split(';');
    for (const QString &field : fields)
        letters += field.left(1);
    return letters;
}

void CoreServiceMethodTest::connectsPorts_data()
{
    QTest::addColumn<QString>("entries");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("after");

    // destination 8 is locked
    QTest::newRow("nothing") << ""
                             << "" << straight;
    QTest::newRow("one") << "I3:-O5;"
                         << ""
                         << "I1;I2;I3;I4;I3;I6;I7;I8";
    QTest::newRow("one cut and one connected") << "I2xO2;I3:-O5;"
                                               << ""
                                               << "I1;0;I3;I4;I3;I6;I7;I8";
    QTest::newRow("no end") << "I8:-O1"
                            << ""
                            << "I8;I2;I3;I4;I5;I6;I7;I8";
    QTest::newRow("as it is") << "I1:-O1;"
                              << "" << straight;
    QTest::newRow("locked one refused, the rest done") << "I1:-O2;I1:-O8;I1:-O3;"
                                                       << "refused: I1:-O8 destination locked"
                                                       << "I1;I1;I1;I4;I5;I6;I7;I8";
    QTest::newRow("locked one not cut either") << "I8xO8;"
                                               << "refused: I8xO8 destination locked" << straight;
    QTest::newRow("no such ports") << "I9:-O1;I0:-O2;I1:-O9;I1:-O0;"
                                   << "refused: I9:-O1 no such source; I0:-O2 no such source; "
                                      "I1:-O9 no such destination; I1:-O0 no such destination"
                                   << straight;
    QTest::newRow("cut of another source") << "I1xO2;"
                                           << "refused: I1xO2 not connected" << straight;
    QTest::newRow("nonsense") << "1:2;I1:-O2;"
                              << "refused: 1:2 not understood"
                              << "I1;I1;I3;I4;I5;I6;I7;I8";
}

void CoreServiceMethodTest::connectsPorts()
{
    QFETCH(const QString, entries);
    QFETCH(const QString, error);
    QFETCH(const QString, after);
    m_client->request("CALL " + xp + ":lockDestination(O8;)");
    m_client->request("OPEN " + xp);
    const QString answer = error.isEmpty() ? "m- " + xp + ":connect" : "e- " + xp + ":connect " + error;
    QCOMPARE(m_client->request("CALL " + xp + ":connect(" + entries + ")"), QStringList{answer});
    QCOMPARE(routes(), after);
    const QStringList told
        = after == straight ? QStringList() : QStringList{"CHG " + xp + ".DestinationConnectionStatus=" + after};
    QCOMPARE(m_client->takeNews(), told);
}

void CoreServiceMethodTest::locksDestinations()
{
    QCOMPARE(locks(), "TTTTTTTT");
    QCOMPARE(m_service->callMethod(xp + ":lockDestination", "O3;O5;"), "");
    QCOMPARE(locks(), "TTLTLTTT");
    QCOMPARE(m_service->callMethod(xp + ":lockDestination", "O5;O6;"), "");
    QCOMPARE(m_service->callMethod(xp + ":unlockDestination", "O3;O4;"), "");
    QCOMPARE(locks(), "TTTTLLTT");
    QCOMPARE(m_service->callMethod(xp + ":lockDestination", "O1;O9;I2;"),
        "refused: O9 no such destination; I2 no such destination");
    QCOMPARE(locks(), "LTTTLLTT");
    QCOMPARE(m_service->callMethod(xp + ":unlockDestination", ""), "");
    QCOMPARE(locks(), "LTTTLLTT");
}

void CoreServiceMethodTest::statusFollowsThePort()
{
    const QString port = "/MEDIA/PORTS/VIDEO/O2/STATUS.";
    m_service->callMethod(xp + ":lockDestination", "O2");
    for (const char *name : {"Connected", "SignalPresent", "EmbeddedAudioPresent"})
        m_service->setProperty(port + name, "true");
    m_service->setProperty(port + "ActiveHdcpVersion", "0");
    QCOMPARE(valueOf(xp + ".DestinationPortStatus").section(';', 1, 1), "LEF"); // 3 audio, 2 HDCP, 3 signal, 3 plug
    m_service->setProperty(port + "ActiveHdcpVersion", "2");
    m_service->setProperty(port + "EmbeddedAudioPresent", "false");
    QCOMPARE(valueOf(xp + ".DestinationPortStatus").section(';', 1, 1), "LBF");

    CoreService service(frameDescriptors()[6]);
    service.setProperty("/MEDIA/PORTS/VIDEO/O17/ANALOGAUDIO.Mute", "true");
    service.callMethod(xp + ":lockDestination", "O17");
    QVERIFY(service.property(xp + ".DestinationPortStatus")->section(';', 16, 16).startsWith('U'));
    service.callMethod(xp + ":unlockDestination", "O17");
    QVERIFY(service.property(xp + ".DestinationPortStatus")->section(';', 16, 16).startsWith('M'));
}

void CoreServiceMethodTest::changesValues_data()
{
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<bool>("works");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value");

    const QString lcd = "/SYS/CECU/LCD";
    const QString audio = "/MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO";
    const auto row = [](const char *name, const QStringList &requests, bool works, const QString &path,
                         const QString &value) { QTest::newRow(name) << requests << works << path << value; };
    row("control lock by 1", {"SET /SYS/CECU/LCD.ControlLock=1"}, true, lcd + ".ControlLock", "true");
    row("control lock by 0", {"SET /SYS/CECU/LCD.ControlLock=1", "SET /SYS/CECU/LCD.ControlLock=0"}, true,
        lcd + ".ControlLock", "false");
    row("control lock by a word", {"SET /SYS/CECU/LCD.ControlLock=yes"}, false, lcd + ".ControlLock", "false");
    row("protocol with a sign", {"SET /MANAGEMENT/SERIAL.Protocol=P#2"}, true, "/MANAGEMENT/SERIAL.Protocol", "P#2");
    row("baud rate there is none of", {"SET /MANAGEMENT/SERIAL.Baudrate=300"}, false, "/MANAGEMENT/SERIAL.Baudrate",
        "57600");
    row("address of three parts", {"SET /MANAGEMENT/NETWORK.StaticIpAddress=10.0.1"}, false,
        "/MANAGEMENT/NETWORK.StaticIpAddress", "192.168.0.100");
    row("lowest gain", {"SET " + audio + ".Gain=-12"}, true, audio + ".Gain", "-12");
    row("gain beyond the range", {"SET " + audio + ".Gain=36"}, false, audio + ".Gain", "0");
    row("standby", {"CALL /MANAGEMENT/POWER:standby()"}, true, "/MANAGEMENT/POWER.Operation", "STANDBY");
    row("wake up", {"CALL /MANAGEMENT/POWER:standby()", "CALL /MANAGEMENT/POWER:wakeUp()"}, true,
        "/MANAGEMENT/POWER.Operation", "ON");
    row("a step darker", {"CALL /SYS/CECU/LCD:changeBrightness(-1)"}, true, lcd + ".Brightness", "6");
    row("brighter than the brightest", {"CALL /SYS/CECU/LCD:changeBrightness(5)"}, true, lcd + ".Brightness", "10");
    row("brightness by a word", {"CALL /SYS/CECU/LCD:changeBrightness(up)"}, false, lcd + ".Brightness", "7");
    row("volume step", {"CALL " + audio + ":stepVolumePercent(-10)"}, true, audio + ".VolumePercent", "70");
    row("decibels follow", {"CALL " + audio + ":stepVolumePercent(-10)"}, true, audio + ".VolumedB", "-18.00");
    row("volume step in decibels", {"CALL " + audio + ":stepVolumedB(6)"}, true, audio + ".VolumePercent", "90");
    row("loudest", {"CALL " + audio + ":stepVolumedB(99)"}, true, audio + ".VolumedB", "0.00");
    row("balance to the left end", {"CALL " + audio + ":stepBalance(-150)"}, true, audio + ".Balance", "-100");
    row("volume by nothing", {"CALL " + audio + ":stepVolumePercent()"}, false, audio + ".VolumePercent", "80");
    row("EDID switched", {"CALL /EDID:switch(F1:E3)"}, true, "/EDID/E/E3.MonitorName", "D1024X768");
    row("EDID switched for all", {"CALL /EDID:switchAll(F1)"}, true, "/EDID/E/E8.MonitorName", "D1024X768");
    row("EDID saved", {"CALL /EDID:copy(F1:U5)"}, true, "/EDID/U/U5.MonitorName", "D1024X768");
    row("saved EDID switched", {"CALL /EDID:copy(F1:U5)", "CALL /EDID:switch(U5:E2)"}, true, "/EDID/E/E2.MonitorName",
        "D1024X768");
    row("EDID over a factory one", {"CALL /EDID:copy(F2:F1)"}, false, "/EDID/F/F1.MonitorName", "D1024X768");
    row("EDID of a user slot that is none", {"CALL /EDID:copy(D1:U17)"}, false, "/EDID/U/U16.MonitorName", "");
    row("unknown EDID for all", {"CALL /EDID:switchAll(F99)"}, false, "/EDID/U/U1.MonitorName", "");
}

void CoreServiceMethodTest::changesValues()
{
    QFETCH(const QStringList, requests);
    QFETCH(const bool, works);
    QFETCH(const QString, path);
    QFETCH(const QString, value);
    QStringList answer;
    for (const QString &request : requests)
        answer = m_client->request(request);
    QCOMPARE(answer.size(), 1);
    QCOMPARE(!answer[0].startsWith("e- "), works);
    QCOMPARE(valueOf(path), value);
}

void CoreServiceMethodTest::takesStaticAddressesIntoUse()
{
    const QString network = "/MANAGEMENT/NETWORK";
    m_client->request("SET " + network + ".StaticIpAddress=10.0.0.7");
    m_client->request("SET " + network + ".StaticGatewayAddress=10.0.0.1");
    QCOMPARE(valueOf(network + ".IpAddress"), "192.168.0.100"); // not yet
    m_client->request("CALL " + network + ":applySettings()");
    QCOMPARE(valueOf(network + ".IpAddress"), "10.0.0.7");
    QCOMPARE(valueOf(network + ".GatewayAddress"), "10.0.0.1");

    m_client->request("SET " + network + ".DhcpEnabled=true");
    m_client->request("CALL " + network + ":applySettings()");
    QVERIFY(valueOf(network + ".IpAddress") != "10.0.0.7");
    QCOMPARE(valueOf(network + ".StaticIpAddress"), "10.0.0.7");
    QCOMPARE(m_client->request("CALL " + network + "/SECURITY:applySettings()"),
        QStringList{"m- " + network + "/SECURITY:applySettings"});
}

void CoreServiceMethodTest::setsTheClock_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("expected");
    QTest::newRow("date and time") << "2031-02-03T04:05:06"
                                   << "2031-02-03T04:05:06";
    QTest::newRow("time alone") << "T00:05:06"
                                << "2030-01-01T00:05:06";
    QTest::newRow("date alone") << "2031-02-03T"
                                << "2031-02-03T12:00:00";
    QTest::newRow("day there is none of") << "2031-02-30T04:05:06"
                                          << "";
    QTest::newRow("time without the T") << "04:05:06"
                                        << "";
}

void CoreServiceMethodTest::setsTheClock()
{
    QFETCH(const QString, argument);
    QFETCH(const QString, expected);
    const QString path = "/MANAGEMENT/DATETIME.CurrentTime";
    const QString before = "2030-01-01T12:00:00";
    m_service->setProperty(path, before);
    const QString answer = m_client->request("CALL /MANAGEMENT/DATETIME:setTime(" + argument + ")").value(0);
    QCOMPARE(answer.startsWith("m- "), !expected.isEmpty());
    const QDateTime wanted = QDateTime::fromString(expected.isEmpty() ? before : expected, Qt::ISODate);
    const qint64 off = wanted.secsTo(QDateTime::fromString(valueOf(path), Qt::ISODate));
    QVERIFY2(off >= 0 && off <= 10, qPrintable(valueOf(path)));
}

void CoreServiceMethodTest::ticksWhileWatched()
{
    const QString node = "/MANAGEMENT/DATETIME";
    QVERIFY(m_service->setProperty(node + ".CurrentTime", "2031-02-03T23:59:59"));
    m_client->request("OPEN " + node);
    QStringList times;
    while (times.size() < 2) {
        const QString line = m_client->line();
        QVERIFY2(line.startsWith("CHG " + node + '.'), qPrintable(line));
        if (line.contains("CurrentTime"))
            times.append(line.section('=', 1));
    }
    QVERIFY2(times[0].startsWith("2031-02-04T00:0") && times[0] < times[1], qPrintable(times.join(' ')));
}

void CoreServiceMethodTest::presetNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << "Board room 2";
    QTest::newRow("dots") << "v1.2.";
    QTest::newRow("quotes") << "\"it's\"";
    QTest::newRow("beyond ASCII") << QString::fromUtf8("Großer Saal 漢");
    QTest::newRow("commas and braces") << "a,VIDEO (b) {c}";
    QTest::newRow("like a method") << "a:load(b)";
    QTest::newRow("200 characters") << QString(200, 'n');
}

void CoreServiceMethodTest::presetNames()
{
    QFETCH(const QString, name);
    const QString path = "/MEDIA/PRESET/" + name;
    m_client->request("OPEN /MEDIA/PRESET");
    QCOMPARE(
        m_client->request("CALL /MEDIA/PRESET:create(" + name + ",VIDEO)"), QStringList{"m- /MEDIA/PRESET:create"});
    QCOMPARE(m_client->request("GET /MEDIA/PRESET"), QStringList{"n- " + path});
    QCOMPARE(m_client->request("GET " + path), QStringList());
    QCOMPARE(m_client->request("GET " + path + ".*"), QStringList());
    QCOMPARE(m_client->request("CALL " + path + ":load()"), QStringList{"m- " + path + ":load"});
    QCOMPARE(m_service->presetNames(), QStringList{name});
    QCOMPARE(m_client->request("CALL " + path + ":delete()"), QStringList{"m- " + path + ":delete"});
    QCOMPARE(m_client->takeNews(), (QStringList{"NEW " + path, "DEL " + path}));
    QCOMPARE(m_service->presetNames(), QStringList());
    QCOMPARE(m_client->request("CALL " + path + ":load()").size(), 1);
}

void CoreServiceMethodTest::presetsStoreAndLoadRoutes()
{
    m_client->request("OPEN /MEDIA/PRESET");
    m_service->callMethod(xp + ":connect", "I5:-O1;I2xO2;");
    m_client->request("CALL /MEDIA/PRESET:create(A,VIDEO)");
    m_service->callMethod(xp + ":connect", "I1:-O1;I2:-O2;I1:-O4;");
    m_service->callMethod(xp + ":lockDestination", "O4");
    m_client->request("CALL /MEDIA/PRESET/A:load()");
    QCOMPARE(routes(), "I5;0;I3;I1;I5;I6;I7;I8"); // the locked one kept its source

    m_service->callMethod(xp + ":connect", "I6:-O6;I7:-O1;");
    m_client->request("CALL /MEDIA/PRESET/A:save()");
    m_service->callMethod(xp + ":connect", "I1:-O1");
    m_client->request("CALL /MEDIA/PRESET/A:load()");
    QCOMPARE(routes(), "I7;0;I3;I1;I5;I6;I7;I8");

    m_service->callMethod(xp + ":connect", "I8:-O1");
    m_client->request("CALL /MEDIA/PRESET:create(A,VIDEO)"); // overwrites it
    m_service->callMethod(xp + ":connect", "I1:-O1");
    m_client->request("CALL /MEDIA/PRESET/A:load()");
    QCOMPARE(routes(), "I8;0;I3;I1;I5;I6;I7;I8");
    QCOMPARE(m_client->takeNews(), QStringList{"NEW /MEDIA/PRESET/A"}); // new only once
}

void CoreServiceMethodTest::presetsBelongToButtons()
{
    const QString button = "/MEDIA/PRESET.Button3AssignedPreset";
    m_client->request("OPEN /MEDIA/PRESET");
    m_client->request("CALL /MEDIA/PRESET:createButtonAssignedPreset(3,VIDEO)");
    QCOMPARE(m_client->takeNews(), (QStringList{"NEW /MEDIA/PRESET/Button3", "CHG " + button + "=Button3"}));

    m_service->callMethod(xp + ":connect", "I2:-O1");
    m_client->request("CALL /MEDIA/PRESET:createButtonAssignedPreset(3,VIDEO)"); // overwrites the button's own
    QCOMPARE(m_client->takeNews(), QStringList());
    m_service->callMethod(xp + ":connect", "I1:-O1");
    m_client->request("CALL /MEDIA/PRESET/Button3:load()");
    QCOMPARE(routes().section(';', 0, 0), "I2");

    m_client->request("CALL /MEDIA/PRESET/Button3:delete()");
    QCOMPARE(m_client->takeNews(), (QStringList{"DEL /MEDIA/PRESET/Button3", "CHG " + button + "="}));

    m_client->request("CALL /MEDIA/PRESET:create(Evening,VIDEO)");
    m_client->request("SET " + button + "=Evening");
    m_client->request("CALL /MEDIA/PRESET:createButtonAssignedPreset(3,VIDEO)");
    QCOMPARE(m_service->presetNames(), QStringList{"Evening"}); // whichever the button stands for
}

void CoreServiceMethodTest::refusesPresets_data()
{
    QTest::addColumn<QString>("call");
    QTest::newRow("slash in the name") << "/MEDIA/PRESET:create(a/b,VIDEO)";
    QTest::newRow("no name") << "/MEDIA/PRESET:create(,VIDEO)";
    QTest::newRow("very long name") << "/MEDIA/PRESET:create(" + QString(256, 'n') + ",VIDEO)";
    QTest::newRow("control character") << "/MEDIA/PRESET:create(a\tb,VIDEO)";
    QTest::newRow("no layer") << "/MEDIA/PRESET:create(a)";
    QTest::newRow("another layer") << "/MEDIA/PRESET:create(a,AUDIO)";
    QTest::newRow("button 0") << "/MEDIA/PRESET:createButtonAssignedPreset(0,VIDEO)";
    QTest::newRow("button there is none of") << "/MEDIA/PRESET:createButtonAssignedPreset(9,VIDEO)";
    QTest::newRow("button that is no number") << "/MEDIA/PRESET:createButtonAssignedPreset(x,VIDEO)";
    QTest::newRow("load of nothing") << "/MEDIA/PRESET/:load()";
    QTest::newRow("save of an unknown one") << "/MEDIA/PRESET/a:save()";
}

void CoreServiceMethodTest::refusesPresets()
{
    QFETCH(const QString, call);
    const QStringList answer = m_client->request("CALL " + call);
    QCOMPARE(answer.size(), 1);
    QVERIFY2(answer[0].startsWith("e- " + call.section('(', 0, 0) + ' '), qPrintable(answer[0]));
    QCOMPARE(m_service->presetNames(), QStringList());
}

void CoreServiceMethodTest::deviceChangesPresets()
{
    CoreServiceClient deaf(m_service->port()); // opened nothing
    m_client->request("OPEN /MEDIA/PRESET");
    m_service->addPreset("B");
    m_service->addPreset("A");
    m_service->addPreset("B");
    QVERIFY(m_service->removePreset("A"));
    QVERIFY(!m_service->removePreset("A"));
    QCOMPARE(m_client->takeNews(), (QStringList{"NEW /MEDIA/PRESET/B", "NEW /MEDIA/PRESET/A", "DEL /MEDIA/PRESET/A"}));
    QCOMPARE(deaf.takeNews(), QStringList());
    QCOMPARE(m_service->presetNames(), QStringList{"B"});
}

void CoreServiceMethodTest::upgrades()
{
    const QString node = "/MANAGEMENT/BOOTLOADER";
    m_client->request("OPEN " + node);
    m_service->startUpgrade(10min); // to be overtaken by the next
    QCOMPARE(valueOf(node + ".Status"), "UPDATING");
    m_service->startUpgrade(100ms);
    QStringList told;
    while (told.value(told.size() - 1) != "CHG " + node + ".Progress=0 Idle" && told.size() < 200)
        told.append(m_client->line());

    QCOMPARE(told[0], "CHG " + node + ".Status=UPDATING");
    QCOMPARE(told[told.size() - 2], "CHG " + node + ".Status=READY");
    int last = -1;
    for (const QString &line : told.mid(1, told.size() - 3)) {
        QVERIFY2(line.startsWith("CHG " + node + ".Progress="), qPrintable(line));
        const int percent = line.section('=', 1).section(' ', 0, 0).toInt();
        QVERIFY2(percent > last, qPrintable(line));
        last = percent;
    }
    QCOMPARE(last, 100);

    CoreService other(frameDescriptors()[0]);
    other.startUpgrade(30ms);
    QTRY_COMPARE(other.property(node + ".Status").value_or(""), "READY");
    QCOMPARE(m_client->takeNews(), QStringList()); // it is over, and stays so
}

void CoreServiceMethodTest::restoresFactoryDefaults()
{
    m_service->addPreset("A");
    for (const char *request : {"SET /SYS/CECU/LCD.ControlLock=1", "SET /MANAGEMENT/NETWORK.StaticIpAddress=10.0.0.7",
             "CALL /MANAGEMENT/NETWORK:applySettings()", "CALL /MEDIA/XP/VIDEO:connect(I1:-O2;)",
             "CALL /MEDIA/XP/VIDEO:lockDestination(O2;)", "CALL /EDID:switchAll(F1)",
             "SET /MEDIA/PRESET.Button1AssignedPreset=A", "CALL /MANAGEMENT/POWER:standby()"})
        QVERIFY2(!m_client->request(request).value(0).startsWith("e-"), request);
    m_service->setProperty("/SYS/CECU/HEALTH.Temperature0", "88.0 C;5.0;60.0;0.0;70.0;36.0;88.0");

    QCOMPARE(m_client->request("CALL /SYS:factoryDefaults()"), QStringList{"m- /SYS:factoryDefaults"});
    QCOMPARE(m_service->presetNames(), QStringList());
    QCOMPARE(valueOf("/SYS/CECU/LCD.ControlLock"), "false");
    QCOMPARE(valueOf("/MANAGEMENT/NETWORK.StaticIpAddress"), "192.168.0.100");
    QCOMPARE(valueOf("/MANAGEMENT/NETWORK.IpAddress"), "192.168.0.100");
    QCOMPARE(routes(), straight);
    QCOMPARE(locks(), "TTTTTTTT");
    QVERIFY(valueOf("/EDID/E/E1.MonitorName") != "D1024X768");
    QCOMPARE(valueOf("/MEDIA/PRESET.Button1AssignedPreset"), "");
    QCOMPARE(valueOf("/MANAGEMENT/POWER.Operation"), "ON");
    QVERIFY(valueOf("/SYS/CECU/HEALTH.Temperature0").startsWith("88.0 C")); // no setting
}

QTEST_GUILESS_MAIN(CoreServiceMethodTest)
#include "coreservicemethodtest.moc"
