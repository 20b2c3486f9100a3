#include "simulator/coreservice/coreservice.h"
#include "tests/simulator/coreserviceclient.h"

#include <QRegularExpression>
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
            // row of the table, property, pattern of its value
            {1, "/MEDIA/PORTS/VIDEO/I1.PortType", "HDMI_AUDIO"},
            {7, "/MEDIA/PORTS/VIDEO/I5.PortType", "HDMI"},
            {7, "/MEDIA/PORTS/VIDEO/O17.PortType", "AUDIO"},
            {23, "/MEDIA/PORTS/VIDEO/I1.PortType", "DP_AUDIO"},
            {23, "/MEDIA/PORTS/VIDEO/I24.PortType", "DP"},
            {7, xp + ".DestinationPortStatus", "([TLMU][0-9A-F]{2};){19}[TLMU][0-9A-F]{2}"},
            {17, "/SYS/OB12/PORT4/HEALTH.Voltage4_1V0", "1.00 V;0.95;1.05;0.90;1.10;0.99;1.01"},
            {17, "/SYS/IB12/PORT1/HEALTH.Temperature0", "47.5 C;5.0;60.0;0.0;70.0;46.5;48.5"},
            {17, "/MANAGEMENT/UID.AddonHwVersion6", "V20_INPUT"}, // five kinds of input boards, five of output boards
            {17, "/MANAGEMENT/UID.AddonHwVersion7", "V12_OUTPUT"},
            {1, "/MANAGEMENT/UID.AddonHwVersion3", "V20_INPUT"}, // the second input board
            {1, "/MANAGEMENT/UID.AddonHwVersion4", "V12_OUTPUT"},
            {1, "/MANAGEMENT/UID.AddonHwVersion6", "-"},
        };
        for (const auto &[row, path, pattern] : cases) {
            const QString value = Rig{row}.value(path);
            const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern));
            QVERIFY2(whole.match(value).hasMatch(), qPrintable(path + " is " + value));
        }
    }

    void connectsPorts()
    {
        const QString straight = "I1;I2;I3;I4;I5;I6;I7;I8"; // destination 8 is locked
        const std::tuple<QString, QString, QString> cases[] = {
            {"", "", straight},
            {"I2xO2;I3:-O5", "", "I1;0;I3;I4;I3;I6;I7;I8"},
            {"I1:-O1;", "", straight}, // as it is
            {"I1:-O2;I1:-O8;I1:-O3;", "I1:-O8 destination locked", "I1;I1;I1;I4;I5;I6;I7;I8"},
            {"I8xO8;", "I8xO8 destination locked", straight},
            {"I9:-O1;I0:-O2;", "I9:-O1 no such source; I0:-O2 no such source", straight},
            {"I1:-O9;I1:-O0;", "I1:-O9 no such destination; I1:-O0 no such destination", straight},
            {"I1xO2;", "I1xO2 not connected", straight},
            {"1:2;I1:-O2;", "1:2 not understood", "I1;I1;I3;I4;I5;I6;I7;I8"},
        };
        for (const auto &[entries, refused, after] : cases) {
            Rig rig;
            rig.call(xp + ":lockDestination(O8;)");
            rig.client.request("OPEN " + xp);
            QCOMPARE(rig.call(xp + ":connect(" + entries + ")"),
                refused.isEmpty() ? "m- " + xp + ":connect" : "e- " + xp + ":connect refused: " + refused);
            QCOMPARE(rig.routes(), after);
            QCOMPARE(rig.client.takeNews().join(""),
                after == straight ? "" : "CHG " + xp + ".DestinationConnectionStatus=" + after);
        }
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
        const QString audio = "/MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO", network = "/MANAGEMENT/NETWORK",
                      apply = "CALL /MANAGEMENT/NETWORK:applySettings()", power = "/MANAGEMENT/POWER";
        const std::tuple<QStringList, QString, QString> cases[] = {
            // requests, property, its value then
            {{"SET /SYS/CECU/LCD.ControlLock=1"}, "/SYS/CECU/LCD.ControlLock", "true"},
            {{"SET " + audio + ".Gain=-12"}, audio + ".Gain", "-12"},
            {{"SET " + network + ".StaticIpAddress=10.0.0.7"}, network + ".IpAddress", "192.168.0.100"}, // not yet
            {{"SET " + network + ".StaticIpAddress=10.0.0.7", apply}, network + ".IpAddress", "10.0.0.7"},
            {{"SET " + network + ".DhcpEnabled=true", apply}, network + ".IpAddress", "192.168.0.57"},
            {{"CALL " + power + ":standby()", "CALL " + power + ":wakeUp()"}, power + ".Operation", "ON"},
            {{"CALL /SYS/CECU/LCD:changeBrightness(-1)"}, "/SYS/CECU/LCD.Brightness", "6"},
            {{"CALL /SYS/CECU/LCD:changeBrightness(5)"}, "/SYS/CECU/LCD.Brightness", "10"},
            {{"CALL " + audio + ":stepVolumePercent(-10)"}, audio + ".VolumedB", "-18.00"},
            {{"CALL " + audio + ":stepBalance(-150)"}, audio + ".Balance", "-100"},
            {{"CALL /EDID:switchAll(F1)"}, "/EDID/E/E8.MonitorName", "D1024X768"},
            {{"CALL /EDID:copy(F1:U5)", "CALL /EDID:switch(U5:E2)"}, "/EDID/E/E2.MonitorName", "D1024X768"},
        };
        for (const auto &[requests, path, value] : cases) {
            Rig rig;
            for (const QString &request : requests)
                QVERIFY2(!rig.client.request(request).value(0, "e-").startsWith("e-"), qPrintable(request));
            QVERIFY2(rig.value(path) == value, qPrintable(requests.last() + ": " + rig.value(path)));
        }
    }

    void refusesNonsense()
    {
        Rig rig;
        for (const QString request : {"SET /SYS/CECU/LCD.ControlLock=yes", "SET /MANAGEMENT/SERIAL.Baudrate=300",
                 "SET /MANAGEMENT/NETWORK.StaticIpAddress=10.0.1", "SET /MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO.Gain=36",
                 "SET /MANAGEMENT/POWER.Operation=ON", "CALL /SYS/CECU/LCD:changeBrightness(up)",
                 "CALL /MEDIA/PORTS/VIDEO/I1/ANALOGAUDIO:stepBalance()", "CALL /EDID:copy(F2:F1)",
                 "CALL /EDID:copy(D1:U17)", "CALL /EDID:switchAll(F99)", "CALL /MANAGEMENT/DATETIME:setTime(04:05:06)",
                 "CALL /MANAGEMENT/DATETIME:setTime(2031-02-30T04:05:06)", "CALL /MEDIA/PRESET:create(a/b,VIDEO)",
                 "CALL /MEDIA/PRESET:create(,VIDEO)", "CALL /MEDIA/PRESET:create(a\tb,VIDEO)",
                 "CALL /MEDIA/PRESET:create(a,AUDIO)", "CALL /MEDIA/PRESET:createButtonAssignedPreset(0,VIDEO)",
                 "CALL /MEDIA/PRESET:createButtonAssignedPreset(9,VIDEO)", "CALL /MEDIA/PRESET/a:save()"})
            QVERIFY2(rig.client.request(request).value(0).startsWith("e- /"), qPrintable(request));
        QCOMPARE(rig.service.presetNames(), QStringList());
        QCOMPARE(rig.value("/SYS/CECU/LCD.ControlLock") + rig.value("/EDID/F/F1.MonitorName"), "falseD1024X768");
        QVERIFY(rig.call(presets + ":create(" + QString(256, 'n') + ",VIDEO)").startsWith("e- "));
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
        for (const QString &name : {QString("Board room 2"), QString("v1.2."), QString::fromUtf8("\"Großer\" Saal 漢"),
                 QString("a,VIDEO (b) {c}"), QString("a:load(b)"), QString(255, 'n')}) {
            Rig rig;
            const QString path = presets + '/' + name;
            rig.client.request("OPEN " + presets);
            QCOMPARE(rig.call(presets + ":create(" + name + ",VIDEO)"), "m- " + presets + ":create");
            QCOMPARE(rig.client.request("GET " + presets), QStringList{"n- " + path});
            QCOMPARE(rig.client.request("GET " + path + ".*"), QStringList());
            QCOMPARE(rig.call(path + ":load()"), "m- " + path + ":load");
            QCOMPARE(rig.call(path + ":delete()"), "m- " + path + ":delete");
            QCOMPARE(rig.client.takeNews(), (QStringList{"NEW " + path, "DEL " + path}));
            QVERIFY(rig.call(path + ":load()").startsWith("e- "));
        }
    }

    void presetsStoreAndLoadRoutes()
    {
        Rig rig;
        CoreServiceClient deaf(rig.service.port()); // opened nothing
        rig.client.request("OPEN " + presets);
        rig.call(xp + ":connect(I5:-O1;I2xO2;)");
        rig.call(presets + ":create(A,VIDEO)");
        rig.call(xp + ":connect(I1:-O1;I2:-O2;I1:-O4;)");
        rig.call(xp + ":lockDestination(O4;)");
        rig.call(presets + "/A:load()");
        QCOMPARE(rig.routes(), "I5;0;I3;I1;I5;I6;I7;I8");               // the locked one kept its source
        for (const QString store : {"/A:save()", ":create(A,VIDEO)"}) { // each overwrites it
            rig.call(xp + ":connect(I7:-O1;I6:-O6;)");
            rig.call(presets + store);
            rig.call(xp + ":connect(I1:-O1;)");
            rig.call(presets + "/A:load()");
            QCOMPARE(rig.routes(), "I7;0;I3;I1;I5;I6;I7;I8");
        }
        rig.service.addPreset("B");
        QVERIFY(rig.service.removePreset("A"));
        QVERIFY(!rig.service.removePreset("A"));
        QCOMPARE(rig.client.takeNews().join(", "), "NEW /MEDIA/PRESET/A, NEW /MEDIA/PRESET/B, DEL /MEDIA/PRESET/A");
        QCOMPARE(deaf.takeNews(), QStringList());
        QCOMPARE(rig.service.presetNames(), QStringList{"B"});
    }

    void presetsBelongToButtons()
    {
        Rig rig;
        const QString button = presets + ".Button3AssignedPreset",
                      assign = presets + ":createButtonAssignedPreset(3,VIDEO)";
        rig.client.request("OPEN " + presets);
        rig.call(assign);
        QCOMPARE(rig.client.takeNews(), (QStringList{"NEW /MEDIA/PRESET/Button3", "CHG " + button + "=Button3"}));
        rig.call(xp + ":connect(I2:-O1;)");
        rig.call(assign); // overwrites the button's own
        rig.call(xp + ":connect(I1:-O1;)");
        rig.call("/MEDIA/PRESET/Button3:load()");
        QVERIFY(rig.routes().startsWith("I2;"));
        rig.call("/MEDIA/PRESET/Button3:delete()");
        QCOMPARE(rig.client.takeNews(), (QStringList{"DEL /MEDIA/PRESET/Button3", "CHG " + button + "="}));
        rig.call(presets + ":create(Evening,VIDEO)");
        rig.client.request("SET " + button + "=Evening");
        rig.call(assign); // whichever it stands for
        QCOMPARE(rig.service.presetNames(), QStringList{"Evening"});
    }

    void upgrades()
    {
        Rig rig;
        rig.client.request("OPEN /MANAGEMENT/BOOTLOADER");
        rig.service.startUpgrade(10min); // to be overtaken by the next
        rig.service.startUpgrade(50ms);
        QStringList told;
        while (told.value(told.size() - 1) != "CHG /MANAGEMENT/BOOTLOADER.Progress=0 Idle" && told.size() < 200)
            told.append(rig.client.line());
        QCOMPARE(told[0], "CHG /MANAGEMENT/BOOTLOADER.Status=UPDATING");
        QCOMPARE(told[told.size() - 3], "CHG /MANAGEMENT/BOOTLOADER.Progress=100 Writing firmware");
        QCOMPARE(told[told.size() - 2], "CHG /MANAGEMENT/BOOTLOADER.Status=READY");
        Rig other;
        other.service.startUpgrade(20ms); // for the time it takes
        QTRY_COMPARE(other.value("/MANAGEMENT/BOOTLOADER.Status"), "READY");
        QCOMPARE(rig.client.takeNews(), QStringList()); // it is over, and stays so
    }

    void restoresFactoryDefaults()
    {
        Rig rig, untouched;
        rig.service.addPreset("A");
        for (const char *request :
            {"SET /SYS/CECU/LCD.ControlLock=1", "CALL /MEDIA/XP/VIDEO:connect(I1:-O2;)", "CALL /EDID:switchAll(F1)",
                "CALL /MEDIA/XP/VIDEO:lockDestination(O2;)", "SET /MEDIA/PRESET.Button1AssignedPreset=A"})
            QVERIFY2(!rig.client.request(request).value(0, "e-").startsWith("e-"), request);
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
