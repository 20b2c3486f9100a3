#include "simulator/commands.h"
#include "tests/simulator/coreserviceclient.h"

#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

/// panel-simulator as a process: options, exit codes, standard input, signals.
class ConsoleProcessTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_files.isValid()); }
    void init();
    void cleanup();

    void helps();
    void listsFrames();
    void refusesOptions_data();
    void refusesOptions();
    void portIsTaken();
    void programIsMissing();
    void playsAScriptFromStandardInput_data();
    void playsAScriptFromStandardInput();
    void playsAScriptFile();
    void consoleTakesCommands();
    void runsOnWithoutInput_data();
    void runsOnWithoutInput();
    void interruptedScriptIsNoSuccess();
    void runsTheProgram();
    void reportsACrash();
    void wraps();

private:
    void start(const QStringList &arguments);
    /// Waits for the end; what went to standard output and error is in m_output and m_errors.
    void finish();
    void waitForOutput(const QByteArray &text);
    /// Puts panel-simulator into a folder of its own, with this shell script as its program.
    void installWithProgram(const QByteArray &text);

    QTemporaryDir m_files;
    QString m_simulator;
    QProcess m_process;
    QByteArray m_output, m_errors;
};

void ConsoleProcessTest::init()
{
    m_simulator = QStringLiteral(PANEL_SIMULATOR);
    // Where the bed is made, so that the test sees whether it goes again.
    QVERIFY(QDir(m_files.path()).mkdir("tmp"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", m_files.filePath("tmp"));
    m_process.setProcessEnvironment(environment);
    m_process.setStandardInputFile({});
    m_output.clear();
    m_errors.clear();
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
        [this] { m_output += m_process.readAllStandardOutput(); });
    connect(
        &m_process, &QProcess::readyReadStandardError, this, [this] { m_errors += m_process.readAllStandardError(); });
}

void ConsoleProcessTest::cleanup()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
    m_process.disconnect(this);
    QDir left(m_files.filePath("tmp"));
    const QStringList entries = left.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    QVERIFY(left.removeRecursively());
    QCOMPARE(entries, QStringList());
}

void ConsoleProcessTest::start(const QStringList &arguments)
{
    m_process.start(m_simulator, arguments);
    QVERIFY2(m_process.waitForStarted(), qPrintable(m_process.errorString()));
}

void ConsoleProcessTest::finish()
{
    QTRY_COMPARE_WITH_TIMEOUT(m_process.state(), QProcess::NotRunning, 20000);
    QCOMPARE(m_process.exitStatus(), QProcess::NormalExit);
}

void ConsoleProcessTest::waitForOutput(const QByteArray &text)
{
    QTRY_VERIFY2_WITH_TIMEOUT(m_output.contains(text), (m_output + m_errors).constData(), 20000);
}

void ConsoleProcessTest::installWithProgram(const QByteArray &text)
{
    const QString folder = m_files.filePath(QString::fromLatin1(QTest::currentTestFunction()));
    QVERIFY(QDir().mkpath(folder));
    m_simulator = folder + "/panel-simulator";
    QVERIFY(QFile::copy(PANEL_SIMULATOR, m_simulator));
    if (text.isEmpty())
        return;
    QFile program(folder + "/front-panel");
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/bash\n" + text);
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void ConsoleProcessTest::helps()
{
    start({"--help"});
    finish();
    QCOMPARE(m_process.exitCode(), 0);
    for (const ExitCodeText &row : exitCodeTexts)
        QVERIFY2(m_output.contains(QByteArray::number(static_cast<int>(row.code)) + "  " + row.text), row.text);
    for (const char *option : {"--frame", "--list-frames", "--no-program", "--script", "--demo", "--wrap", "--fault"})
        QVERIFY2(m_output.contains(option), option);
    QVERIFY(m_output.contains("expect request TEXT [within MS]"));
}

void ConsoleProcessTest::listsFrames()
{
    start({"--list-frames"});
    finish();
    QCOMPARE(m_process.exitCode(), 0);
    const QList<QByteArray> rows = m_output.trimmed().split('\n');
    QCOMPARE(rows.size(), 1 + 33);
    QCOMPARE(rows[17].simplified(), QByteArray("17 47110017 48 x 48 6"));
    QCOMPARE(rows[20].simplified(), QByteArray("20 47110020 16 x 20 3"));
    QCOMPARE(rows[33].simplified(), QByteArray("33 58220003 8 x 8 1"));
}

void ConsoleProcessTest::refusesOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("no such option") << QStringList{"--fast"} << QByteArray("--help");
    QTest::newRow("no such row") << QStringList{"--frame", "34"} << QByteArray("--list-frames");
    QTest::newRow("row 0") << QStringList{"--frame", "0"} << QByteArray("--list-frames");
    QTest::newRow("no such part number") << QStringList{"--frame", "47110099"} << QByteArray("--list-frames");
    QTest::newRow("a frame by a name") << QStringList{"--frame", "big"} << QByteArray("There is no frame \"big\"");
    QTest::newRow("no such fault") << QStringList{"--fault", "rain"} << QByteArray("panel-missing=3, encoder-missing");
    QTest::newRow("a panel that cannot be missing")
        << QStringList{"--fault", "panel-missing=4"} << QByteArray("i2c-missing");
    QTest::newRow("a word without a dash") << QStringList{"start"} << QByteArray("\"start\" is no option");
    QTest::newRow("two scripts") << QStringList{"--demo", "--script", "a"} << QByteArray("--script or --demo");
    QTest::newRow("a demo of nothing") << QStringList{"--demo", "--no-program"}
                                       << QByteArray("--demo shows the program");
    QTest::newRow("nothing to wrap") << QStringList{"--no-program", "--wrap", "gdb"} << QByteArray("--wrap needs");
    QTest::newRow("standard input for two")
        << QStringList{"--wrap", "gdb", "--script", "-"} << QByteArray("script as a file");
    QTest::newRow("no such script") << QStringList{"--no-program", "--script", "/no/such.script"}
                                    << QByteArray("cannot be read");
}

void ConsoleProcessTest::refusesOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, error);
    start(arguments);
    finish();
    QCOMPARE(m_process.exitCode(), 2);
    QVERIFY2(m_errors.contains(error), m_errors.constData());
    QCOMPARE(m_output, QByteArray());
}

void ConsoleProcessTest::portIsTaken()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost, 6107));
    start({"--no-program"});
    finish();
    QCOMPARE(m_process.exitCode(), 4);
    QVERIFY2(m_errors.contains("Port 6107 on 127.0.0.1 cannot be used"), m_errors.constData());
    QVERIFY(m_errors.contains("ss -ltnp"));
}

void ConsoleProcessTest::programIsMissing()
{
    installWithProgram({});
    start({});
    finish();
    QCOMPARE(m_process.exitCode(), 4);
    QVERIFY2(m_errors.contains("front-panel is missing. Build it"), m_errors.constData());
    QVERIFY(m_errors.contains("--no-program"));
}

void ConsoleProcessTest::playsAScriptFromStandardInput_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("a good one") << QByteArray("# Wake up\nset /SYS/CECU/LCD.Message=hello\n"
                                              "expect property /SYS/CECU/LCD.Message=hello\n")
                                << 0 << QByteArray();
    QTest::newRow("none at all") << QByteArray() << 0 << QByteArray();
    QTest::newRow("a failing one") << QByteArray("\nexpect led take 1 within 20\n") << 1
                                   << QByteArray("standard input:2: LED take is 0, expected 1 within 20 ms\n");
    QTest::newRow("a wrong line further down") << QByteArray("expect led take 1 within 60000\n\ndance\n") << 2
                                               << QByteArray("standard input:3: there is no command \"dance\"");
    QTest::newRow("a line too long") << "leds\n" + QByteArray(5000, 'x') << 2
                                     << QByteArray("standard input:2: a line of more than 4096 bytes");
    QTest::newRow("an LCD that changes too soon") << QByteArray("wait-lcd-still 500 within 50") << 3
                                                  << QByteArray("standard input:1: the LCD was never the same");
}

void ConsoleProcessTest::playsAScriptFromStandardInput()
{
    QFETCH(QByteArray, script);
    QFETCH(int, code);
    QFETCH(QByteArray, error);
    start({"--no-program", "--script", "-"});
    m_process.write(script);
    m_process.closeWriteChannel();
    finish();
    QCOMPARE(m_process.exitCode(), code);
    QVERIFY2(m_errors.startsWith(error), m_errors.constData());
    QCOMPARE(m_errors.isEmpty(), code == 0);
    if (script.startsWith("# Wake"))
        QVERIFY2(m_output.contains("\n# Wake up\n> set /SYS/CECU/LCD.Message=hello\n"), m_output.constData());
}

void ConsoleProcessTest::playsAScriptFile()
{
    QFile script(m_files.filePath("tour.script"));
    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("get /.PartNumber\npress source 33\nexpect led destination 48 1 within 20\n");
    script.close();
    start({"--no-program", "--frame", "47110017", "--script", script.fileName()});
    finish();
    QCOMPARE(m_process.exitCode(), 1);
    QVERIFY2(m_errors.startsWith("tour.script:3: LED destination 48 is 0"), m_errors.constData());
    QVERIFY(m_output.contains("/.PartNumber=47110017"));

    QVERIFY(script.open(QIODevice::WriteOnly));
    script.write("# " + QByteArray(4094, 'x') + "\r\n# " + QByteArray(4095, 'x') + "\n");
    script.close();
    m_errors.clear();
    start({"--no-program", "--script", script.fileName()});
    finish();
    QCOMPARE(m_process.exitCode(), 2);
    QCOMPARE(m_errors, QByteArray("tour.script:2: a line of more than 4096 bytes\n"));
}

void ConsoleProcessTest::consoleTakesCommands()
{
    start({"--no-program", "--frame", "4"});
    m_process.write("get /.PartNumber\ndance\n" + QByteArray(5000, 'x') + "\nleds\nquit\nget /.PartNumber\n");
    finish();
    QCOMPARE(m_process.exitCode(), 0);
    QCOMPARE(m_errors, QByteArray());
    QCOMPARE(m_output,
        QByteArray("device: frame 47110004, 16 x 16, layout 2, core service on 127.0.0.1:6107\n"
                   "/.PartNumber=47110004\n"
                   "error: there is no command \"dance\"; \"help\" lists them\n"
                   "error: a line of more than 4096 bytes\n"
                   "all LEDs are 0\n"));
}

void ConsoleProcessTest::runsOnWithoutInput_data()
{
    QTest::addColumn<bool>("devNull");
    QTest::addColumn<int>("signal");
    QTest::newRow("/dev/null, SIGTERM") << true << SIGTERM;
    QTest::newRow("/dev/null, Ctrl-C") << true << SIGINT;
    QTest::newRow("a pipe that has ended, SIGTERM") << false << SIGTERM;
    QTest::newRow("a pipe that has ended, hang-up") << false << SIGHUP;
}

void ConsoleProcessTest::runsOnWithoutInput()
{
    QFETCH(bool, devNull);
    QFETCH(int, signal);
    if (devNull)
        m_process.setStandardInputFile("/dev/null");
    start({"--no-program"});
    if (!devNull) {
        m_process.write("get /.PartNumber\n");
        m_process.closeWriteChannel();
        waitForOutput("/.PartNumber=");
    }
    waitForOutput("device:");
    for (int i = 0; i < 3; ++i) // each turns its event loop, which has seen the end of input by then
        QVERIFY(!CoreServiceClient(6107).request("GET /.PartNumber").isEmpty());
    QCOMPARE(m_process.state(), QProcess::Running);
    kill(static_cast<pid_t>(m_process.processId()), signal);
    finish();
    QCOMPARE(m_process.exitCode(), 0);
    QCOMPARE(m_errors, QByteArray());
}

void ConsoleProcessTest::interruptedScriptIsNoSuccess()
{
    start({"--no-program", "--script", "-"});
    m_process.write("get /.PartNumber\nwait 60000\n");
    m_process.closeWriteChannel();
    waitForOutput("> wait 60000");
    m_process.terminate();
    finish();
    QCOMPARE(m_process.exitCode(), 1);
    QCOMPARE(m_errors, QByteArray("The script was interrupted.\n"));
}

void ConsoleProcessTest::runsTheProgram()
{
    installWithProgram(
        "echo \"in $PWD\"; trap 'echo bye; exit 0' TERM; printf 'odd \\033[31m text\\n'\n"
        "exec {core}<>/dev/tcp/127.0.0.1/6107; printf '0001#SET /SYS/CECU/LCD.AutoTake=1\\r\\n' >&$core\n"
        "read -r line <&$core; read -r line <> <(:)\n");
    start({});
    waitForOutput("request: SET /SYS/CECU/LCD.AutoTake=1\n");
    waitForOutput(
        "front-panel: in " + m_files.filePath("runsTheProgram").toUtf8() + '\n'); // its folder is where it works
    waitForOutput("front-panel: odd ?[31m text\n");                               // nothing that a terminal would obey
    m_process.write("restart\nquit\n");
    finish();
    QCOMPARE(m_process.exitCode(), 0);
    QCOMPARE(m_output.count("front-panel: in "), 2);
}

void ConsoleProcessTest::reportsACrash()
{
    installWithProgram("echo last words; kill -KILL $$\n");
    start({});
    waitForOutput("front-panel crashed; its last messages:\n    last words\n");
    waitForOutput("panel-simulator --wrap gdb");
    m_process.write("get /.PartNumber\n"); // the device runs on
    waitForOutput("/.PartNumber=");
    m_process.write("quit\n");
    finish();
    QCOMPARE(m_process.exitCode(), 0);
}

void ConsoleProcessTest::wraps()
{
    installWithProgram("read -r line; echo \"program got $line\"; exec $line\n");
    start({"--wrap", "/bin/bash -e"}); // a wrapper has the streams to itself, the program's too
    m_process.write("false\n");
    finish();
    QCOMPARE(m_process.exitCode(), 1);
    QVERIFY2(m_output.contains("program got false\n"), m_output.constData());
    QVERIFY2(m_errors.startsWith("front-panel ended with exit code 1"), m_errors.constData());
    m_output.clear();
    start({"--wrap", "/bin/bash -e"});
    m_process.write("true\n");
    finish();
    QCOMPARE(m_process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(ConsoleProcessTest)
#include "consoleprocesstest.moc"
