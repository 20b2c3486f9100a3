#include "tests/simulator/consolerig.h"
#include "tests/simulator/coreserviceclient.h"

#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

/// The commands of console and script, against a device whose program is this test.
class ConsoleCommandTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_files.isValid());
        QVERIFY(QDir::setCurrent(m_files.path()));
    }

    void refusesWrongLines_data();
    void refusesWrongLines();
    void checksWithoutDoing();
    void readsWords_data();
    void readsWords();
    void namesKeysAsTheFrameDoes_data();
    void namesKeysAsTheFrameDoes();

    void tapHoldsTheKey();
    void commandsComeInOrder();
    void knobTurnsByDetents();

    void showsLeds();
    void waitsForAnLed();
    void missesAnLed();

    void requestsAreTakenOnce();
    void requestsAreTakenInOrder();
    void waitsForARequest();
    void requestTextDoesNotMatchTheSignature();

    void waitsForAProperty();
    void deviceCommands_data();
    void deviceCommands();
    void linkDrops();

    void comparesTheLcd_data();
    void comparesTheLcd();
    void waitsUntilTheLcdIsStill();
    void helpNamesEveryCommand();

private:
    QTemporaryDir m_files;
};

void ConsoleCommandTest::refusesWrongLines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("error");
    QTest::newRow("an unknown command") << "dance"
                                        << "no command \"dance\"; \"help\"";
    QTest::newRow("half a command offers its halves") << "expect lamp"
                                                      << "expect led KEY VALUE";
    QTest::newRow("a key is missing") << "tap"
                                      << "is no key";
    QTest::newRow("a source that the frame does not have") << "tap source 9"
                                                           << "source needs a number from 1 to 8";
    QTest::newRow("source 0") << "press source 0"
                              << "source needs a number from 1 to 8";
    QTest::newRow("a panel that no frame has") << "press 4.1"
                                               << "1.1 to 3.40";
    QTest::newRow("a button that no panel has") << "press 1.41"
                                                << "1.1 to 3.40";
    QTest::newRow("a time that is no number") << "tap take long"
                                              << "MS must be a whole number";
    QTest::newRow("a negative time") << "wait -5"
                                     << "MS must be a whole number from 1 to 600000";
    QTest::newRow("a time without end") << "wait 600001"
                                        << "from 1 to 600000";
    QTest::newRow("words too many") << "tap take 50 now"
                                    << "\"now\" is too much; usage: tap KEY [MS]";
    QTest::newRow("a speed that the knob does not have") << "turn 3 brisk"
                                                         << "\"brisk\" is too much";
    QTest::newRow("an LED without a value") << "expect led take"
                                            << "VALUE is missing";
    QTest::newRow("within what") << "expect led take 1 within soon"
                                 << "behind \"within\"";
    QTest::newRow("nothing to expect") << "expect request within 100"
                                       << "TEXT is missing";
    QTest::newRow("a property without a value") << "set /SYS/CECU/LCD.Message"
                                                << "is not PATH=VALUE";
    QTest::newRow("a method without brackets") << "call /MANAGEMENT/POWER:standby"
                                               << "is not PATH:METHOD(ARGUMENTS)";
    QTest::newRow("a quote that is not closed") << "expect message \"Front"
                                                << "not closed";
    QTest::newRow("an upgrade in no time") << "upgrade 0"
                                           << "SECONDS must be a number from 0.1 to 3600";
    QTest::newRow("more than all pixels") << "expect-lcd a.png 0 101"
                                          << "PERCENT must be a number from 0 to 100";
    QTest::newRow("help on nothing") << "help dance"
                                     << "no such command";
}

void ConsoleCommandTest::refusesWrongLines()
{
    QFETCH(QString, line);
    QFETCH(QString, error);
    ConsoleRig rig;
    QVERIFY2(rig.executor.check(line).contains(error), qPrintable(rig.executor.check(line)));
    const CommandResult result = rig.run(line);
    QCOMPARE(result.code, ExitCode::Usage);
    QCOMPARE(result.text, rig.executor.check(line));
    QVERIFY(rig.run("press take").ok()); // the next line is executed all the same, and is the first to do anything
    QCOMPARE(rig.nextKey().code, 703 + 33);
}

void ConsoleCommandTest::checksWithoutDoing()
{
    ConsoleRig rig;
    QCOMPARE(rig.executor.check("set /SYS/CECU/LCD.Message=x"), QString());
    QCOMPARE(rig.executor.check("quit"), QString());
    QCOMPARE(rig.executor.check("press save"), QString());
    QVERIFY(rig.run("expect property /SYS/CECU/LCD.Message= within 1").ok());
    QVERIFY(rig.run("press load").ok());
    QCOMPARE(rig.nextKey().code, 703 + 34);
}

void ConsoleCommandTest::readsWords_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("value");
    QTest::newRow("words are joined by a blank") << "/SYS/CECU/LCD.Message=Hello   there"
                                                 << "Hello there";
    QTest::newRow("quotes keep blanks") << "\"/SYS/CECU/LCD.Message=Hello   there\""
                                        << "Hello   there";
    QTest::newRow("quotes within a word") << "/SYS/CECU/LCD.Message=\" # \"x"
                                          << " # x";
    QTest::newRow("an escaped quote") << "/SYS/CECU/LCD.Message=say \\\"hi\\\""
                                      << "say \"hi\"";
    QTest::newRow("an escaped backslash before a quote") << "/SYS/CECU/LCD.Message=\"a\\\\\" b"
                                                         << "a\\ b";
    QTest::newRow("other backslashes stay") << "/SYS/CECU/LCD.Message=a\\nb"
                                            << "a\\nb";
    QTest::newRow("a comment ends the line") << "/SYS/CECU/LCD.Message=a # b"
                                             << "a";
    QTest::newRow("# within a word is no comment") << "/SYS/CECU/LCD.Message=P#2"
                                                   << "P#2";
    QTest::newRow("the value holds further equals signs") << "/SYS/CECU/LCD.Message=a=b"
                                                          << "a=b";
}

void ConsoleCommandTest::readsWords()
{
    QFETCH(QString, argument);
    QFETCH(QString, value);
    ConsoleRig rig;
    const CommandResult result = rig.run("set " + argument);
    QVERIFY2(result.ok(), qPrintable(result.text));
    QCOMPARE(rig.device.core().property("/SYS/CECU/LCD.Message").value_or("none"), value);
}

void ConsoleCommandTest::namesKeysAsTheFrameDoes_data()
{
    QTest::addColumn<int>("layout");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<int>("panel");
    QTest::addColumn<int>("button");
    QTest::newRow("the smallest frame's source") << 1 << QStringList{"source", "8"} << 1 << 8;
    QTest::newRow("an unknown layout is the smallest") << 0 << QStringList{"destination", "1"} << 1 << 17;
    QTest::newRow("audio moves take") << 3 << QStringList{"take"} << 1 << 36;
    QTest::newRow("a later run of sources") << 4 << QStringList{"source", "17"} << 2 << 1;
    QTest::newRow("the last destination of the largest frame") << 6 << QStringList{"destination", "48"} << 3 << 32;
    QTest::newRow("the first of a panel") << 5 << QStringList{"destination", "33"} << 3 << 1;
    QTest::newRow("a place on a panel") << 6 << QStringList{"3.40"} << 3 << 40;
}

void ConsoleCommandTest::namesKeysAsTheFrameDoes()
{
    QFETCH(int, layout);
    QFETCH(QStringList, words);
    QFETCH(int, panel);
    QFETCH(int, button);
    const QString name = words.join(' ');
    words += "rest";
    FrontKey key;
    QCOMPARE(takeKey(panelLayout(layout), &words, &key), QString());
    QCOMPARE(key.panel, panel);
    QCOMPARE(key.button, button);
    QCOMPARE(words, QStringList("rest"));
    QCOMPARE(keyName(panelLayout(layout), key), name);
}

void ConsoleCommandTest::tapHoldsTheKey()
{
    ConsoleRig rig;
    QElapsedTimer held;
    held.start();
    rig.executor.execute("tap destination 2 120");
    const PanelRecord down = rig.nextKey();
    QCOMPARE(down.code, 703 + 18);
    QCOMPARE(down.value, 1);
    const PanelRecord up = rig.nextKey();
    QCOMPARE(up.code, 703 + 18);
    QCOMPARE(up.value, 0);
    QVERIFY(held.elapsed() >= 120);
    QVERIFY(rig.result().ok());
}

void ConsoleCommandTest::commandsComeInOrder()
{
    ConsoleRig rig;
    for (const char *line : {"press take", "tap 1.9 1", "release take"})
        QVERIFY(rig.run(line).ok());
    QStringList records;
    for (int i = 0; i < 4; ++i) {
        const PanelRecord record = rig.nextKey();
        records += QStringLiteral("%1:%2").arg(record.code - 703).arg(record.value);
    }
    QCOMPARE(records.join(' '), QStringLiteral("33:1 9:1 9:0 33:0"));
}

void ConsoleCommandTest::knobTurnsByDetents()
{
    ConsoleRig rig;
    const auto knob = rig.open("/dev/input/event0");
    QVERIFY(rig.run("turn -2 fast").ok());
    QVERIFY(rig.run("turn 1").ok());
    QVector<PanelRecord> detents; // a turn each, and a synchronisation behind it that states the time
    QVector<int> turns;
    while (detents.size() < 3) {
        PanelRecord record = {};
        QCOMPARE(knob->read(reinterpret_cast<char *>(&record), sizeof record), qint64(sizeof record));
        if (record.type == 2)
            turns += record.value;
        else if (record.type == 0)
            detents += record;
    }
    QCOMPARE(turns, (QVector<int>{-1, -1, 1}));
    const auto time = [&detents](int i) { return detents[i].seconds * 1000000LL + detents[i].microseconds; };
    QCOMPARE(time(1) - time(0), 20000LL);
    QVERIFY(time(2) - time(1) >= 50000LL); // a turn of its own is no spin
}

void ConsoleCommandTest::showsLeds()
{
    ConsoleRig rig;
    QCOMPARE(rig.run("leds").text, QStringLiteral("all LEDs are 0"));
    rig.writeLed(3, 1);
    rig.writeLed(21, 2);
    rig.writeLed(36, 1);
    QVERIFY(rig.run("expect led 1.36 1").ok());
    QCOMPARE(rig.run("leds").text, QStringLiteral("source 3 = 1\ndestination 5 = 2\n1.36 = 1"));
}

void ConsoleCommandTest::waitsForAnLed()
{
    ConsoleRig rig;
    rig.executor.execute("expect led destination 5 2");
    QVERIFY(rig.executor.isBusy());
    rig.writeLed(21, 1);
    rig.writeLed(21, 2);
    QVERIFY(rig.result().ok());
}

void ConsoleCommandTest::missesAnLed()
{
    ConsoleRig rig;
    rig.writeLed(21, 1);
    QVERIFY(rig.run("expect led destination 5 1").ok());
    const CommandResult result = rig.run("expect led destination 5 2 within 30");
    QCOMPARE(result.code, ExitCode::Failed);
    QCOMPARE(result.text, QStringLiteral("LED destination 5 is 1, expected 2 within 30 ms"));
}

void ConsoleCommandTest::requestsAreTakenOnce()
{
    ConsoleRig rig;
    CoreServiceClient client(rig.device.core().port());
    client.request("GET /.PartNumber");
    QVERIFY(rig.run("expect request GET /.PartNumber").ok());
    const CommandResult again = rig.run("expect request GET /.PartNumber within 30");
    QCOMPARE(again.code, ExitCode::Failed);
    QCOMPARE(again.text,
        QStringLiteral(
            "no request with \"GET /.PartNumber\" within 30 ms; there was none since the last one expected"));
    client.request("GET /.PartNumber");
    QVERIFY(rig.run("expect request GET /.PartNumber").ok());
}

void ConsoleCommandTest::requestsAreTakenInOrder()
{
    ConsoleRig rig;
    CoreServiceClient client(rig.device.core().port());
    client.request("GET /.PartNumber");
    client.request("GET /.SerialNumber");
    client.request("GET /MANAGEMENT/UID.HwVersion");
    QVERIFY(rig.run("expect request SerialNumber").ok());
    const CommandResult passed = rig.run("expect request PartNumber within 30");
    QCOMPARE(passed.code, ExitCode::Failed); // it came before the one taken last
    QVERIFY2(passed.text.endsWith("the last ones:\n    GET /MANAGEMENT/UID.HwVersion"), qPrintable(passed.text));
    QVERIFY(rig.run("expect request HwVersion").ok()); // a failure takes nothing

    client.request("GET /.PartNumber");
    rig.executor.skipRequests();
    QCOMPARE(rig.run("expect request PartNumber within 30").code, ExitCode::Failed);
}

void ConsoleCommandTest::waitsForARequest()
{
    ConsoleRig rig;
    CoreServiceClient client(rig.device.core().port());
    rig.executor.execute("expect request SET /SYS/CECU/LCD.AutoTake=1");
    client.request("GET /.PartNumber");
    QVERIFY(rig.executor.isBusy());
    client.request("SET /SYS/CECU/LCD.AutoTake=1");
    QVERIFY(rig.result().ok());
    QVERIFY(rig.run("expect property /SYS/CECU/LCD.AutoTake=true").ok());
}

void ConsoleCommandTest::requestTextDoesNotMatchTheSignature()
{
    ConsoleRig rig;
    CoreServiceClient client(rig.device.core().port());
    client.send("4321#GET /.PartNumber\r\n");
    QCOMPARE(client.line().left(5), QStringLiteral("{4321"));
    QCOMPARE(rig.run("expect request 4321 within 30").code, ExitCode::Failed);
    QVERIFY(rig.run("expect request GET /.PartNumber").ok());
}

void ConsoleCommandTest::waitsForAProperty()
{
    ConsoleRig rig;
    CommandResult result = rig.run("expect property /SYS/CECU/LCD.Brightness=3 within 30");
    QCOMPARE(result.code, ExitCode::Failed);
    QCOMPARE(result.text, QStringLiteral("/SYS/CECU/LCD.Brightness is \"7\", expected \"3\" within 30 ms"));
    result = rig.run("expect property /SYS.Nothing=3 within 30");
    QCOMPARE(result.text, QStringLiteral("the device has no property /SYS.Nothing"));
    rig.executor.execute("expect property /SYS/CECU/LCD.Brightness=3");
    QVERIFY(rig.device.core().setProperty("/SYS/CECU/LCD.Brightness", "3"));
    QVERIFY(rig.result().ok());
}

void ConsoleCommandTest::deviceCommands_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<QString>("then");
    QTest::newRow("get shows a value") << "get /SYS/CECU/LCD.Brightness" << true
                                       << "expect property /SYS/CECU/LCD.Brightness=7";
    QTest::newRow("get has nothing to show") << "get /SYS.Nothing" << false << "";
    QTest::newRow("set reaches read-only properties") << "set /MANAGEMENT/NETWORK.LinkStatus=no link" << true
                                                      << "expect property /MANAGEMENT/NETWORK.LinkStatus=no link";
    QTest::newRow("set refuses what is not there") << "set /SYS.Nothing=1" << false << "";
    QTest::newRow("call works on the device")
        << "call /MANAGEMENT/POWER:standby()" << true << "expect property /MANAGEMENT/POWER.Operation=STANDBY";
    QTest::newRow("call passes its arguments on") << "call /MEDIA/XP/VIDEO:lockDestination(O2;)" << true << "";
    QTest::newRow("call reports what the device says") << "call /MANAGEMENT/POWER:explode()" << false << "";
    QTest::newRow("an upgrade runs and ends")
        << "upgrade 0.2" << true << "expect property /MANAGEMENT/BOOTLOADER.Status=READY";
    QTest::newRow("no preset of that name") << "preset remove Nothing" << false << "";
}

void ConsoleCommandTest::deviceCommands()
{
    QFETCH(QString, line);
    QFETCH(bool, ok);
    QFETCH(QString, then);
    ConsoleRig rig;
    const CommandResult result = rig.run(line);
    QCOMPARE(result.code, ok ? ExitCode::Ok : ExitCode::Failed);
    QCOMPARE(result.text.isEmpty(), ok && !line.startsWith("get"));
    QVERIFY2(rig.run(then).ok(), qPrintable(then));
}

void ConsoleCommandTest::linkDrops()
{
    ConsoleRig rig;
    CoreServiceClient client(rig.device.core().port());
    client.request("GET /.PartNumber");
    QVERIFY(rig.run("link drop").ok());
    QTRY_COMPARE(client.socket().state(), QAbstractSocket::UnconnectedState);
    QVERIFY(rig.run("link restore").ok());
    CoreServiceClient again(rig.device.core().port());
    QVERIFY(!again.request("GET /.PartNumber").isEmpty());
    QVERIFY(rig.run("preset add My show").ok());
    QVERIFY(rig.device.core().presetNames().contains("My show"));
    QVERIFY(rig.run("preset remove My show").ok());
}

void ConsoleCommandTest::comparesTheLcd_data()
{
    QTest::addColumn<int>("pixels"); // that differ by 8
    QTest::addColumn<QString>("tolerance");
    QTest::addColumn<QString>("error"); // empty: equal enough
    QTest::newRow("the same picture") << 0 << ""
                                      << "";
    QTest::newRow("one pixel off")
        << 1 << ""
        << "1 of 76800 pixels (0.0013 %, allowed 0 %) differ from shot.png by more than 0, at most by 8";
    QTest::newRow("a difference that is allowed") << 500 << "8"
                                                  << "";
    QTest::newRow("a difference just beyond") << 500 << "7"
                                              << "500 of 76800 pixels";
    QTest::newRow("a share that is allowed") << 768 << "0 1"
                                             << "";
    QTest::newRow("a share just beyond") << 769 << "0 1"
                                         << "769 of 76800 pixels (1 %, allowed 1 %)";
}

void ConsoleCommandTest::comparesTheLcd()
{
    QFETCH(int, pixels);
    QFETCH(QString, tolerance);
    QFETCH(QString, error);
    QFile::remove("shot.actual.png");
    ConsoleRig rig;
    const auto framebuffer = rig.open("/dev/fb0");
    const QByteArray before(320 * 240 * 4, char(0x40));
    QCOMPARE(framebuffer->write(before), before.size());
    QVERIFY(rig.run("lcd shot.png").ok());
    QVERIFY(framebuffer->seek(0));
    const QByteArray changed(pixels * 4, char(0x48));
    QCOMPARE(framebuffer->write(changed), changed.size());

    const CommandResult result = rig.run("expect-lcd shot.png " + tolerance + " within 30");
    QCOMPARE(result.ok(), error.isEmpty());
    QCOMPARE(QFile::exists("shot.actual.png"), !error.isEmpty());
    if (error.isEmpty())
        return;
    QCOMPARE(result.code, ExitCode::Failed);
    QVERIFY2(result.text.contains(error), qPrintable(result.text));
    QVERIFY(result.text.contains("shot.actual.png"));
    QCOMPARE(QImage("shot.actual.png").pixel(0, 0), qRgb(0x48, 0x48, 0x48));
    // A wait for the picture ends when it comes.
    rig.executor.execute("expect-lcd shot.png");
    QVERIFY(framebuffer->seek(0));
    QCOMPARE(framebuffer->write(before), before.size());
    QVERIFY(rig.result().ok());
}

void ConsoleCommandTest::waitsUntilTheLcdIsStill()
{
    ConsoleRig rig;
    QVERIFY(rig.run("wait-lcd-still 30").ok());
    const CommandResult result = rig.run("wait-lcd-still 60000 within 30");
    QCOMPARE(result.code, ExitCode::TimedOut);
    QCOMPARE(result.text, QStringLiteral("the LCD was never the same for 60000 ms within 30 ms"));

    const auto framebuffer = rig.open("/dev/fb0");
    QElapsedTimer time;
    time.start();
    rig.executor.execute("wait-lcd-still 1000");
    QTRY_VERIFY(time.hasExpired(100)); // as good a moment as any for a change within the second
    QCOMPARE(framebuffer->write("abcd"), 4);
    time.start();
    QVERIFY(rig.result().ok());
    QVERIFY(time.hasExpired(999)); // counted from the change

    QVERIFY(!rig.run("expect-lcd nothing.png").ok());
    QVERIFY(!rig.run("lcd no/such/folder/shot.png").ok());
}

void ConsoleCommandTest::helpNamesEveryCommand()
{
    ConsoleRig rig;
    const QString help = rig.run("help").text;
    for (const Command &command : commands())
        QVERIFY2(help.contains(QString("\n  ") + command.name + ' ') || help.startsWith(QString("  ") + command.name),
            command.name);
    const QString part = rig.run("help preset").text;
    QCOMPARE(part.count('\n'), 1);
    QVERIFY(part.contains("preset add NAME") && part.contains("preset remove NAME"));
}

QTEST_GUILESS_MAIN(ConsoleCommandTest)
#include "consolecommandtest.moc"
