#include "simulator/device.h"
#include "simulator/scriptrunner.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

namespace {

/// How a script went.
struct Outcome
{
    ExitCode code = ExitCode::Ok;
    QString text;
    QStringList progress;
};

// What the program does in these tests is a shell script's lines, these for a start. The connection gets a number that
// the shell chooses: the preload library has descriptors of its own.
const QByteArray connectAndAsk = "exec {core}<>/dev/tcp/127.0.0.1/PORT\n"
                                 "printf '0000#GET /.PartNumber\\r\\n' >&$core\n";
const QByteArray answers
    = "while read -r line <&$core; do echo \"$line\"; case \"$line\" in CHG*) break;; esac; done\n";

} // namespace

/// Scripts against a device on a free port, and a shell script in the program's place.
class ConsoleScriptTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_files.isValid()); }

    void plays_data();
    void plays();
    void checksBeforePlaying();
    void needsNoProgram();
    void restarts();
    void restartsWithoutALink();
    void reportsAProgramThatCannotStart();

private:
    Outcome play(Device &device, const QString &script, std::chrono::milliseconds readyTime = 10s);
    Device::Setup setup(const QByteArray &program);
    void writeProgram(const Device::Setup &setup, const QByteArray &text, quint16 port);

    QTemporaryDir m_files;
};

Device::Setup ConsoleScriptTest::setup(const QByteArray &program)
{
    Device::Setup setup;
    setup.frame = &frameDescriptors().front();
    setup.port = 0;
    if (!program.isEmpty())
        setup.program = m_files.filePath("front-panel");
    return setup;
}

void ConsoleScriptTest::writeProgram(const Device::Setup &setup, const QByteArray &text, quint16 port)
{
    QFile file(setup.program);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/bash\n" + QByteArray(text).replace("PORT", QByteArray::number(port)));
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

Outcome ConsoleScriptTest::play(Device &device, const QString &script, std::chrono::milliseconds readyTime)
{
    Outcome outcome;
    ScriptRunner runner(device, "test.script", script.split('\n'), readyTime);
    bool finished = false;
    connect(&runner, &ScriptRunner::progressed, &runner, [&outcome](const QString &text) { outcome.progress += text; });
    connect(&runner, &ScriptRunner::finished, &runner, [&](ExitCode code, const QString &text) {
        outcome.code = code;
        outcome.text = text;
        finished = true;
    });
    runner.start();
    if (!QTest::qWaitFor([&finished] { return finished; }, 20000))
        qFatal("the script never finished");
    return outcome;
}

void ConsoleScriptTest::plays_data()
{
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<QString>("script");
    QTest::addColumn<ExitCode>("code");
    QTest::addColumn<QString>("text"); // what the outcome's text begins with

    const QByteArray idle = connectAndAsk + "cat <&$core\n";
    const QByteArray open = connectAndAsk + "printf 'OPEN /SYS/CECU/LCD\\r\\n' >&$core\n" + answers;
    const QByteArray ask = open + "printf '0001#SET /SYS/CECU/LCD.AutoTake=1\\r\\n' >&$core\ncat <&$core\n";

    QTest::newRow("a quiet script succeeds") << idle << "\n# nothing\nwait 1\n" << ExitCode::Ok << "";
    QTest::newRow("quit ends it") << idle << "quit\nexpect led take 1" << ExitCode::Ok << "";
    QTest::newRow("a failure names its line, comments and blank lines counted")
        << idle << "# one\n\n  expect led take 1 within 20\nquit" << ExitCode::Failed
        << "test.script:3: LED take is 0, expected 1 within 20 ms";
    QTest::newRow("what the program asked at its start does not count")
        << idle << "expect request GET /.PartNumber within 20" << ExitCode::Failed << "test.script:1: no request with";
    QTest::newRow("what it asks now does")
        << ask << "set /SYS/CECU/LCD.Brightness=3\nexpect request LCD.AutoTake=1" << ExitCode::Ok << "";
    QTest::newRow("messages count from the program's start, each once")
        << "echo hello\n" + idle << "expect message hello\nexpect message hello within 20" << ExitCode::Failed
        << "test.script:2: no message with \"hello\" within 20 ms";

    QTest::newRow("a program that does not connect is not waited for for ever")
        << QByteArray("echo starting\nread -r line <> <(:)\n") << "quit" << ExitCode::TimedOut
        << "test.script: front-panel was not ready within 400 ms";
    QTest::newRow("a program that ends before it is ready")
        << QByteArray("echo no display\nexit 3\n") << "wait 1" << ExitCode::Failed
        << "test.script: front-panel ended with exit code 3; its last messages:\n    no display";
    QTest::newRow("an end that nobody expects fails at once")
        << open + "exit 0\n"
        << "set /SYS/CECU/LCD.Brightness=3\nexpect led take 1 within 60000" << ExitCode::Failed
        << "test.script:2: front-panel ended with exit code 0";
    QTest::newRow("an end that is expected") << open + "exit 0\n"
                                             << "set /SYS/CECU/LCD.Brightness=3\nexpect exit 0" << ExitCode::Ok << "";
    QTest::newRow("an end that is expected later")
        << open + "exit 7\n"
        << "set /SYS/CECU/LCD.Brightness=3\nwait 50\nexpect exit 7" << ExitCode::Ok << "";
    QTest::newRow("another exit code") << open + "exit 1\n"
                                       << "set /SYS/CECU/LCD.Brightness=3\nexpect exit 0" << ExitCode::Failed
                                       << "test.script:2: expected exit code 0, but front-panel ended with exit code 1";
    QTest::newRow("an end that does not come")
        << idle << "expect exit 0 within 30" << ExitCode::Failed << "test.script:1: front-panel still runs";
    QTest::newRow("an end behind a restart is another program's")
        << open + "exit 0\n"
        << "set /SYS/CECU/LCD.Brightness=3\nwait 60000\nrestart\nexpect exit 0" << ExitCode::Failed
        << "test.script:2: front-panel ended with exit code 0";
    QTest::newRow("a crash fails at once, even where an end is expected")
        << open + "kill -KILL $$\n"
        << "set /SYS/CECU/LCD.Brightness=3\nexpect exit 0 within 60000" << ExitCode::Failed << "test.script:2: ";
}

void ConsoleScriptTest::plays()
{
    QFETCH(QByteArray, program);
    QFETCH(QString, script);
    QFETCH(ExitCode, code);
    QFETCH(QString, text);
    const Device::Setup how = setup(program);
    Device device(how);
    QCOMPARE(device.powerOn(), QString());
    writeProgram(how, program, device.core().port());
    device.startProgram();
    const Outcome outcome = play(device, script, code == ExitCode::TimedOut ? 400ms : 10000ms);
    QVERIFY2(text.isEmpty() || outcome.text.startsWith(text), qPrintable(outcome.text));
    QCOMPARE(outcome.code, code);
    QCOMPARE(outcome.text.isEmpty(), code == ExitCode::Ok);
    if (program.contains("KILL")) {
        QVERIFY2(outcome.text.contains("front-panel crashed; its last messages:\n"), qPrintable(outcome.text));
        QVERIFY(outcome.text.contains("/SYS/CECU/LCD.Brightness=3")); // the line before the crash
        QVERIFY(outcome.text.contains("--wrap gdb"));
    }
}

void ConsoleScriptTest::checksBeforePlaying()
{
    Device device(setup({}));
    ScriptRunner sound(device, "test.script", {"# comment", "", "press source 1"});
    QCOMPARE(sound.check(), QString());
    ScriptRunner wrong(device, "test.script", {"# comment", "press source 1", "press source nine", "dance"});
    QVERIFY2(wrong.check().startsWith("test.script:3: source needs a number from 1 to 8"), qPrintable(wrong.check()));
}

void ConsoleScriptTest::needsNoProgram()
{
    Device device(setup({}));
    QCOMPARE(device.powerOn(), QString());
    const Outcome outcome = play(device, "# A comment\nget /.PartNumber\ntap take 1");
    QCOMPARE(outcome.code, ExitCode::Ok);
    QCOMPARE(
        outcome.progress, (QStringList{"# A comment", "> get /.PartNumber", "/.PartNumber=47110001", "> tap take 1"}));
    for (const char *line : {"restart", "expect exit 0"}) {
        const Outcome refused = play(device, line);
        QCOMPARE(refused.code, ExitCode::Failed);
        QVERIFY2(refused.text.startsWith("test.script:1: there is no program"), qPrintable(refused.text));
    }
}

void ConsoleScriptTest::restarts()
{
    const QByteArray program = "echo started\n" + connectAndAsk + answers + "exit 4\n";
    const Device::Setup how = setup(program);
    Device device(how);
    QCOMPARE(device.powerOn(), QString());
    writeProgram(how, program, device.core().port());
    device.startProgram();
    const Outcome outcome = play(device,
        "expect message started\n"
        "restart\n"
        "expect request GET /.PartNumber\n" // the new program's first request counts
        "expect message started\n"
        "expect message started within 20");
    QCOMPARE(outcome.code, ExitCode::Failed);
    QVERIFY2(outcome.text.startsWith("test.script:5: "), qPrintable(outcome.text));
}

void ConsoleScriptTest::restartsWithoutALink()
{
    const QByteArray program = "echo started\n" + connectAndAsk + "cat <&$core\nread -r line <> <(:)\n";
    const Device::Setup how = setup(program);
    Device device(how);
    QCOMPARE(device.powerOn(), QString());
    writeProgram(how, program, device.core().port());
    device.startProgram();
    // It cannot connect, so being ready is not waited for; that it ends over that is told all the same.
    const Outcome outcome = play(device, "link drop\nrestart\nexpect message started\nlink restore");
    QVERIFY2(outcome.code == ExitCode::Ok, qPrintable(outcome.text));
}

void ConsoleScriptTest::reportsAProgramThatCannotStart()
{
    Device::Setup how = setup("program");
    how.wrapper = {"no-such-wrapper"};
    writeProgram(how, "exit 0\n", 0);
    Device device(how);
    QCOMPARE(device.powerOn(), QString());
    device.startProgram();
    const Outcome outcome = play(device, "quit");
    QCOMPARE(outcome.code, ExitCode::Missing);
    QVERIFY2(outcome.text.contains("Is no-such-wrapper installed?"), qPrintable(outcome.text));
}

QTEST_GUILESS_MAIN(ConsoleScriptTest)
#include "consolescripttest.moc"
