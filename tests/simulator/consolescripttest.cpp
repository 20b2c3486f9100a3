#include "simulator/device.h"
#include "simulator/frontkey.h"
#include "simulator/scriptrunner.h"
#include "simulator/words.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

namespace {

// What the programs of these tests can do. Descriptors get numbers that the shell chooses: the preload library has
// some of its own.
const QByteArray tools = R"sh(#!/bin/bash
link() { exec {core}<>/dev/tcp/127.0.0.1/PORT; ask 'GET /.PartNumber'; } # which makes it ready
ask() { printf '0001#%s\r\n' "$1" >&$core; }
change() { # waits for the script to change a property
    link; printf 'OPEN /SYS/CECU/LCD\r\n' >&$core
    while read -r line <&$core; do echo "$line"; [[ $line = CHG* ]] && break; done; }
device() { exec {device}<>/dev/input/event$1; }
records() { head -c $((16 * $1)) <&$device | od -An -v -td4 -w16 | while read -r s us code value; do
    now=$((s * 1000000 + us)); echo "$((code & 65535)) $((code >> 16)) $value +$((now - before))"; before=$now; done; }
light() { printf "\0\0\0\0\0\0\0\0\x11\0\x$(printf %02x $1)\0\x0$2\0\0\0" >&$device; }
stay() { while :; do read -r; done; }
)sh";

struct Case // NOLINT(clang-analyzer-optin.performance.Padding): columns in reading order
{
    const char *name, *program, *script; ///< Without a program where it is empty.
    ExitCode code;
    const char *text;  ///< In what is reported; '|' separates several.
    int leastTime = 0; ///< ms
};

constexpr auto Ok = ExitCode::Ok, Failed = ExitCode::Failed, TimedOut = ExitCode::TimedOut;
#define CHANGE "set /SYS/CECU/LCD.Brightness=3\n"
#define ASKS "change; ask 'SET a=1'; ask 'SET b=1'; ask 'SET c=1'; stay"

// clang-format off
constexpr Case cases[] = {
    {"tap and wait take their time, quit ends it", "",
        "tap take 150\nwait 150\nwait-lcd-still 30\nquit\nexpect led take 1", Ok, "", 300},
    {"device commands", "", "set /MANAGEMENT/NETWORK.LinkStatus=no   link\n"
        "expect property /MANAGEMENT/NETWORK.LinkStatus=no link\ncall /MANAGEMENT/POWER:standby()\n"
        "expect property /MANAGEMENT/POWER.Operation=STANDBY\ncall /MEDIA/XP/VIDEO:lockDestination(O2;)\n"
        "preset add My show\npreset remove My show\nupgrade 0.2\n"
        "expect property /MANAGEMENT/BOOTLOADER.Status=READY\nleds", Ok, "all LEDs are 0"},
    {"the LCD changes", "link; while sleep 0.01; do printf a 1<>/dev/fb0; sleep 0.01; printf b 1<>/dev/fb0; done",
        "wait-lcd-still 1500 within 2000", TimedOut, "the LCD was never the same for 1500 ms within 2000 ms"},
    {"a picture with tolerance", "change; head -c 2000 /dev/zero | tr '\\0' '\\10' 1<>/dev/fb0; echo painted; stay",
        "lcd shot.png\nexpect-lcd shot.png\n" CHANGE "expect message painted\nexpect-lcd shot.png 8\n"
        "expect-lcd shot.png 0 0.66\nexpect-lcd shot.png 7 0.65 within 20", Failed, "test.script:7: 500 of 76800 pixels"
        " (0.651 %, allowed 0.65 %) differ from shot.png by more than 7, at most by 8|shot.actual.png"},

    {"buttons in order", "device 2; link; records 8; stay", "press take\ntap 1.9 1\nrelease take\n"
        "expect message 1 736 1\nexpect message 1 712 1\nexpect message 1 712 0\nexpect message 1 736 0", Ok, ""},
    {"two detents of a spin, and a turn that is none", "device 0; link; records 6; stay", "turn -2 fast\nturn 1\n"
        "expect message 2 0 -1\nexpect message 2 0 -1 +20000\nexpect message 2 0 1 +120000", Ok, ""},
    {"LEDs by name, and the line of a wrong one", "device 2; light 3 1; light 21 2; light 36 1; link; stay",
        "# one\n\n  expect led 1.36 1\nleds\nexpect led destination 5 1 within 20", Failed,
        "source 3 = 1\ndestination 5 = 2\n1.36 = 1|test.script:5: LED destination 5 is 2, expected 1 within 20 ms"},
    {"an LED that comes", "device 2; link; records 1; light 21 1; light 21 2; stay",
        "press take\nexpect led destination 5 2", Ok, ""},
    {"requests in between are passed, each is taken once", ASKS,
        CHANGE "expect request a=1\nexpect request c=1\nexpect request c=1 within 20", Failed,
        "test.script:4: no request with \"c=1\" within 20 ms; there was none since the last one expected"},
    {"a signature is no text of a request", ASKS, CHANGE "expect request b=1\nexpect request 0001 within 200", Failed,
        "test.script:3: no request with \"0001\" within 200 ms; the last ones:\n    SET c=1"},
    {"the first requests do not count", "link; stay", "expect request PartNumber within 20", Failed, "no request with"},
    {"messages count from the start, each once", "echo hello; link; stay",
        "expect message hello\nexpect message hello within 20", Failed, "test.script:2: no message with \"hello\""},

    {"a program that never connects", "echo starting; stay", "quit", TimedOut, "test.script: front-panel was not"},
    {"a program that ends before it is ready", "echo no display; exit 3", "wait 1", Failed,
        "test.script: front-panel ended with exit code 3; its last messages:\n    no display"},
    {"an end that is expected later", "change; exit 7", CHANGE "wait 50\nexpect exit 7", Ok, ""},
    {"another exit code", "change; exit 1", CHANGE "expect exit 0", Failed,
        "test.script:2: expected exit code 0, but front-panel ended with exit code 1"},
    {"an end that does not come", "link; stay", "expect exit 0 within 30", Failed, "1: front-panel still runs"},
    {"an end behind a restart is another program's", "change; exit 0",
        CHANGE "expect led take 1 within 60000\nrestart\nexpect exit 0", Failed,
        "test.script:2: front-panel ended with exit code 0"},
    {"a crash fails at once", "change; kill -KILL $$", CHANGE "wait 60000\nexpect exit 0", Failed,
        "test.script:2: front-panel crashed; its last messages:\n|/SYS/CECU/LCD.Brightness=3\n|--wrap gdb"},
    {"what the new program sends counts after a restart", "echo started; link; stay",
        "expect message started\nrestart\nexpect request GET /.PartNumber\nexpect message started\n"
        "expect message started within 20", Failed, "test.script:5: no message"},
    {"a restart without a link is not waited for", "echo started; link && cat <&$core >/dev/null; echo cut; stay",
        "link drop\nexpect message cut\nrestart\nexpect message started\nlink restore\nrestart\n"
        "expect request PartNumber", Ok, ""},
};

constexpr const char *wrongLines[][2] = { // and what is said of them
    {"dance", "no command \"dance\"; \"help\""}, {"expect lamp", "expect led KEY VALUE"}, {"tap", "is no key"},
    {"tap source 9", "source needs a number from 1 to 8"}, {"press source 0", "source needs a number from 1 to 8"},
    {"press 4.1", "1.1 to 3.40"}, {"press 1.41", "1.1 to 3.40"}, {"tap take long", "MS must be a whole number"},
    {"wait -5", "MS must be a whole number from 1 to 600000"}, {"wait 600001", "from 1 to 600000"},
    {"tap take 50 now", "\"now\" is too much; usage: tap KEY [MS]"}, {"turn 3 brisk", "\"brisk\" is too much"},
    {"expect led take", "VALUE is missing"}, {"expect led take 1 within soon", "behind \"within\""},
    {"expect request within 100", "TEXT is missing"}, {"set /SYS/CECU/LCD.Message", "is not PATH=VALUE"},
    {"call /MANAGEMENT/POWER:standby", "is not PATH:METHOD(ARGUMENTS)"}, {"expect message \"Front", "not closed"},
    {"upgrade 0", "SECONDS must be a number from 0.1 to 3600"}, {"help dance", "no such command"},
    {"expect-lcd a.png 0 101", "PERCENT must be a number from 0 to 100"}};
// clang-format on
#undef CHANGE
#undef ASKS

Device::Setup setup(const QString &program)
{
    Device::Setup setup;
    setup.frame = &frameDescriptors().front();
    setup.program = program;
    setup.port = 0;
    return setup;
}

} // namespace

/// Commands and scripts on a device at a free port, with a shell script in the program's place.
class ConsoleScriptTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_files.isValid() && QDir::setCurrent(m_files.path())); }

    void plays_data()
    {
        QTest::addColumn<Case>("row");
        for (const Case &row : cases)
            QTest::newRow(row.name) << row;
    }

    void plays()
    {
        QFETCH(Case, row);
        const QString program = *row.program ? m_files.filePath("front-panel") : QString();
        Device device(setup(program));
        QCOMPARE(device.powerOn(), QString());
        if (!program.isEmpty()) {
            QFile file(program);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
            const QByteArray port = QByteArray::number(device.core().port());
            file.write(QByteArray(tools).replace("PORT", port) + row.program + '\n');
            file.close();
            device.startProgram();
        }
        QElapsedTimer time;
        time.start();
        QStringList lines;
        std::optional<ExitCode> end;
        const bool connects = QByteArrayView(row.program).contains("link");
        ScriptRunner runner(device, "test.script", QString(row.script).split('\n'), connects ? 20s : 1s);
        connect(&runner, &ScriptRunner::progressed, &runner, [&lines](const QString &text) { lines += text; });
        connect(&runner, &ScriptRunner::finished, &runner, [&](ExitCode code, const QString &text) {
            lines += text;
            end = code;
        });
        runner.start();
        QTRY_VERIFY_WITH_TIMEOUT(end, 30000);
        const QString report = lines.join('\n');
        QVERIFY2(*end == row.code && (*end == Ok) == lines.last().isEmpty(), qPrintable(report));
        for (const QString &text : QString(row.text).split('|'))
            QVERIFY2(report.contains(text), qPrintable(report));
        QVERIFY(time.elapsed() >= row.leastTime);
    }

    void refusesWrongLines()
    {
        Device device(setup({}));
        for (const auto &[line, error] : wrongLines) {
            const QString seen = ScriptRunner(device, "x", {"set /SYS/CECU/LCD.Message=x", line, "quit"}, 1s).check();
            QVERIFY2(seen.startsWith("x:2: ") && seen.contains(error), qPrintable(line + (": " + seen)));
        }
        QCOMPARE(device.core().property("/SYS/CECU/LCD.Message").value_or("none"), QString()); // nothing has been done
    }

    void readsWords()
    {
        // only quote and backslash are escaped, and a comment begins at a word's begin
        QCOMPARE(splitWords(R"(  tap   "a   b" " # "x "" say \"hi\" "a\\" b\n P#2 # rest)").list.join('|'),
            R"(tap|a   b| # x||say|"hi"|a\|b\n|P#2)");
    }

    void namesKeysAsTheFrameDoes()
    {
        const auto place = [](int layout, const QString &name) {
            FrontKey key;
            QStringList words = (name + " rest").split(' ');
            const QString error = takeKey(panelLayout(layout), &words, &key);
            const QString back = keyName(panelLayout(layout), key) + ' ' + words.join(' ');
            return back == name + " rest" ? QString("%1.%2").arg(key.panel).arg(key.button) : error + back;
        };
        QCOMPARE(place(0, "destination 1"), "1.17"); // an unknown layout is the smallest
        QCOMPARE(place(3, "take"), "1.36");          // audio moves it
        QCOMPARE(place(4, "source 17") + ' ' + place(5, "destination 33"), "2.1 3.1");
        QCOMPARE(place(6, "destination 48") + ' ' + place(6, "3.40"), "3.32 3.40");
    }

private:
    QTemporaryDir m_files;
};

QTEST_GUILESS_MAIN(ConsoleScriptTest)
#include "consolescripttest.moc"
