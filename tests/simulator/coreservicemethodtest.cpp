#include "simulator/coreservice/coreservice.h"
#include "tests/simulator/coreserviceclient.h"

#include <QTest>

using namespace std::chrono_literals;

namespace {

const QString xp = "/MEDIA/XP/VIDEO", presets = "/MEDIA/PRESET";

/// A frame and somebody who asks it; the first row of the table has 8 inputs and 8 outputs.
struct Rig
{
    size_t row = 1;
    CoreService service{frameDescriptors()[row - 1]};
    CoreServiceClient client{service.listen(0) ? service.port() : quint16(0)};

    QString value(const QString &path) const { return service.property(path).value_or("nothing"); }
    QString routes() const { return value(xp + ".DestinationConnectionStatus"); }
    QString status(int output) const { return value(xp + ".DestinationPortStatus").split(';')[output - 1]; }
    QString call(const QString &method) { return client.request("CALL " + method).join('\n'); }
    void play(const QStringList &requests)
    {
        for (const QString &request : requests)
            client.request(request);
    }
};

} // namespace

/// What the methods of the device do.
class CoreServiceMethodTest : public QObject
{
    Q_OBJECT
private slots:
    void framesHaveTheirParts()
    {
        const std::tuple<size_t, QString, QString> cases[] = {
            // row of the table, property, its value
            {7, "/MEDIA/PORTS/VIDEO/I5.PortType", "HDMI"},
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

    void connectsPorts()
    {
        Rig rig;
        rig.call(xp + ":lockDestination(O8;)");
        rig.client.request("OPEN " + xp);
        QCOMPARE(rig.call(xp + ":connect(I1:-O2;I1:-O8;I8xO8;I9:-O1;I0:-O1;I1:-O9;I1:-O0;I1xO4;1:2;I3xO3;I3:-O5)"),
            "e- " + xp
                + ":connect refused: I1:-O8 destination locked; I8xO8 destination locked; I9:-O1 no such source;"
                  " I0:-O1 no such source; I1:-O9 no such destination; I1:-O0 no such destination; I1xO4 not connected;"
                  " 1:2 not understood");
        QCOMPARE(rig.call(xp + ":connect(I1:-O2;)"), "m- " + xp + ":connect"); // as it is
        const QString routes = "I1;I1;0;I4;I3;I6;I7;I8";
        QCOMPARE(rig.routes(), routes);
        QCOMPARE(rig.client.takeNews(), QStringList{"CHG " + xp + ".DestinationConnectionStatus=" + routes});
    }

    void statusFollowsLocksAndPorts()
    {
        Rig rig{7};
        // Of destinations 2, 3 and 17: locked, transmitting, muted, or locked and muted.
        const auto letters = [&rig] {
            return QStringList{rig.status(2).left(1), rig.status(3).left(1), rig.status(17).left(1)}.join(' ');
        };
        rig.service.setProperty("/MEDIA/PORTS/VIDEO/O17/ANALOGAUDIO.Mute", "true");
        rig.service.setProperty("/MEDIA/PORTS/VIDEO/O2/ANALOGAUDIO.Mute", "true"); // has more than audio to it
        QCOMPARE(letters(), "T T M");
        QCOMPARE(rig.service.callMethod(xp + ":lockDestination", "O2;O17;"), "");
        QCOMPARE(letters(), "L T U");
        QCOMPARE(rig.service.callMethod(xp + ":lockDestination", "O3;O21;I2;"),
            "refused: O21 no such destination; I2 no such destination");
        QCOMPARE(rig.service.callMethod(xp + ":unlockDestination", "O17;O4;"), "");
        QCOMPARE(letters(), "L L M");
        QCOMPARE(rig.status(2), "LFF");
        rig.service.setProperty("/MEDIA/PORTS/VIDEO/O2/STATUS.ActiveHdcpVersion", "0");
        QCOMPARE(rig.status(2), "LEF"); // from the left two bits each: audio, no HDCP, signal, plug
    }

    void changesValues()
    {
        const QString lcd = "/SYS/CECU/LCD", audio = "/MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO",
                      network = "/MANAGEMENT/NETWORK", power = "/MANAGEMENT/POWER", edid = "/EDID/E/E8.MonitorName";
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
        };
        Rig rig;
        for (const auto &[request, path, value] : steps) {
            QVERIFY2(!rig.client.request(request).value(0, "e-").startsWith("e-"), qPrintable(request));
            QVERIFY2(rig.value(path) == value, qPrintable(request + ": " + rig.value(path)));
        }
    }

    void refusesNonsense()
    {
        Rig rig;
        for (const QString &request : QStringList{"SET /SYS/CECU/LCD.ControlLock=yes", "CALL /EDID:copy(F2:F1)",
                 "SET /MANAGEMENT/SERIAL.Baudrate=300", "SET /MANAGEMENT/NETWORK.StaticIpAddress=10.0.1",
                 "SET /MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO.Gain=36", "SET /MANAGEMENT/POWER.Operation=ON",
                 "CALL /MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO:stepBalance()", "CALL /SYS/CECU/LCD:changeBrightness(up)",
                 "CALL /EDID:copy(D1:U17)", "CALL /EDID:switchAll(F99)", "CALL /MANAGEMENT/DATETIME:setTime(04:05:06)",
                 "CALL /MANAGEMENT/DATETIME:setTime(2031-02-30T04:05:06)", "CALL /MEDIA/PRESET:create(a/b,VIDEO)",
                 "CALL /MEDIA/PRESET:create(,VIDEO)", "CALL /MEDIA/PRESET:create(a\tb,VIDEO)",
                 "CALL /MEDIA/PRESET:create(a,AUDIO)", "CALL /MEDIA/PRESET:createButtonAssignedPreset(0,VIDEO)",
                 "CALL /MEDIA/PRESET:createButtonAssignedPreset(9,VIDEO)",
                 "CALL /MEDIA/PRESET:create(" + QString(256, 'n') + ",VIDEO)"})
            QVERIFY2(rig.client.request(request).value(0).startsWith("e- /"), qPrintable(request));
        QCOMPARE(rig.service.presetNames(), QStringList());
    }

    void setsTheClockAndTicks()
    {
        Rig rig;
        const QString node = "/MANAGEMENT/DATETIME";
        rig.service.setProperty(node + ".CurrentTime", "2030-01-01T12:00:00");
        rig.call(node + ":setTime(2031-02-03T)");
        QVERIFY(rig.value(node + ".CurrentTime").startsWith("2031-02-03T12:0"));
        rig.call(node + ":setTime(T23:59:59)");
        rig.client.request("OPEN " + node);
        QString news; // watched, it tells every second
        QTRY_VERIFY((news += rig.client.takeNews().join(' ')).count("CurrentTime=2031-02-04T00:00:0") >= 2);
    }

    void presetNames()
    {
        Rig rig;
        CoreServiceClient deaf(rig.service.port()); // opened nothing
        rig.client.request("OPEN " + presets);
        for (const QString &name : {QString("v1.2."), QString::fromUtf8("\"Großer\" Saal 漢"),
                 QString("a,VIDEO (b) {c}"), QString("a:load(b)"), QString(255, 'n')}) {
            const QString path = presets + '/' + name;
            QCOMPARE(rig.call(presets + ":create(" + name + ",VIDEO)"), "m- " + presets + ":create");
            rig.service.addPreset(name); // there already
            QCOMPARE(rig.client.request("GET " + presets), QStringList{"n- " + path});
            QCOMPARE(rig.client.request("GET " + path + ".*"), QStringList());
            QCOMPARE(rig.call(path + ":load()"), "m- " + path + ":load");
            QCOMPARE(rig.call(path + ":delete()"), "m- " + path + ":delete");
            QCOMPARE(rig.client.takeNews(), (QStringList{"NEW " + path, "DEL " + path}));
            QVERIFY(rig.call(path + ":load()").startsWith("e- "));
        }
        QCOMPARE(deaf.takeNews(), QStringList());
    }

    void presetsStoreAndLoadRoutes()
    {
        Rig rig;
        const QString connect = "CALL " + xp + ":connect", load = "CALL /MEDIA/PRESET/A:load()";
        rig.service.addPreset("A");
        rig.play({connect + "(I1:-O3;I1:-O4;)", "CALL " + xp + ":lockDestination(O4;)", load});
        QCOMPARE(rig.routes(), "I1;I2;I3;I1;I5;I6;I7;I8"); // the locked one kept its source
        // each overwrites it
        for (const auto &[source, store] : {std::pair("I5", ":create(A,VIDEO)"), {"I7", "/A:save()"}}) {
            rig.play({connect + '(' + source + ":-O1;I2xO2;)", "CALL " + presets + store, connect + "(I1:-O1;I2:-O2;)",
                load});
            QCOMPARE(rig.routes(), source + QString(";0;I3;I1;I5;I6;I7;I8"));
        }
    }

    void presetsBelongToButtons()
    {
        Rig rig;
        const QString button = presets + ".Button3AssignedPreset", assigned = "CHG " + button + '=';
        const QString assign = "CALL " + presets + ":createButtonAssignedPreset(3,VIDEO)";
        const QString connect = "CALL " + xp + ":connect", own = "/MEDIA/PRESET/Button3";
        rig.play({"OPEN " + presets, assign, connect + "(I2:-O1;)", assign, // overwrites the button's own
            connect + "(I1:-O1;)", "CALL " + own + ":load()"});
        QVERIFY(rig.routes().startsWith("I2;"));
        rig.play({"CALL " + own + ":delete()", "CALL " + presets + ":create(Evening,VIDEO)",
            "SET " + button + "=Evening", assign}); // whichever it stands for
        QCOMPARE(rig.client.takeNews(),
            (QStringList{"NEW " + own, assigned + "Button3", "DEL " + own, assigned, "NEW /MEDIA/PRESET/Evening",
                assigned + "Evening"}));
    }

    void upgrades()
    {
        Rig rig;
        const QString node = "CHG /MANAGEMENT/BOOTLOADER", idle = node + ".Progress=0 Idle";
        rig.client.request("OPEN /MANAGEMENT/BOOTLOADER");
        rig.service.startUpgrade(10min); // to be overtaken by the next
        rig.service.startUpgrade(20ms);
        QStringList told;
        QTRY_VERIFY((told += rig.client.takeNews()).endsWith(idle)); // asked every 50 ms: it is over, and stays so
        QCOMPARE(told[0], node + ".Status=UPDATING");
        QCOMPARE(told.mid(told.size() - 3),
            (QStringList{node + ".Progress=100 Writing firmware", node + ".Status=READY", idle}));
    }

    void restoresFactoryDefaults()
    {
        Rig rig, untouched;
        rig.service.addPreset("A");
        rig.play(
            {"SET /SYS/CECU/LCD.ControlLock=1", "CALL /MEDIA/XP/VIDEO:connect(I1:-O2;)", "CALL /EDID:switchAll(F1)",
                "CALL /MEDIA/XP/VIDEO:lockDestination(O2;)", "SET /MEDIA/PRESET.Button1AssignedPreset=A"});
        rig.service.setProperty("/SYS/CECU/HEALTH.Temperature0", "88.0 C");
        QCOMPARE(rig.call("/SYS:factoryDefaults()"), "m- /SYS:factoryDefaults");
        QCOMPARE(rig.service.presetNames(), QStringList());
        for (const QString &path : {QString("/SYS/CECU/LCD.ControlLock"), xp + ".DestinationConnectionStatus",
                 xp + ".DestinationPortStatus", QString("/EDID/E/E1.MonitorName"), presets + ".Button1AssignedPreset"})
            QCOMPARE(rig.value(path), untouched.value(path));
        QCOMPARE(rig.value("/SYS/CECU/HEALTH.Temperature0"), "88.0 C"); // no setting
    }
};

QTEST_GUILESS_MAIN(CoreServiceMethodTest)
#include "coreservicemethodtest.moc"
