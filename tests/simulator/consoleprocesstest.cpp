#include "simulator/frontkey.h"
#include "tests/simulator/programtools.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace {

const QByteArray tools = programTools + R"sh(
change() { # waits for the script to change a property
    printf 'OPEN /SYS/CECU/LCD\r\n' >&$core
    while read -r line <&$core; do echo "$line"; [[ $line = CHG* ]] && break; done; }
device() { exec {device}<>/dev/input/event$1; }
records() { head -c $((16 * $1)) <&$device | od -An -v -td4 -w16 | while read -r s us code value; do
    now=$((s * 1000000 + us)); echo "$((code & 65535)) $((code >> 16)) $value +$((now - before))"; before=$now; done; }
)sh";

struct Case // NOLINT(clang-analyzer-optin.performance.Padding): columns in reading order
{
    const char *name, *arguments; ///< As in a shell.
    QByteArray program;           ///< A shell script that has the tools; none is installed where it is empty.
    QByteArray input;             ///< Standard input (null: /dev/null), and the contents of tour.script.
    int code;
    QString output, errors; ///< Patterns of all that is printed.
    int signal = 0;         ///< Sent when the output is there.
    int leastTime = 0;      ///< ms
};

bool matches(const QByteArray &text, const QString &pattern)
{
    const QRegularExpression whole(
        QRegularExpression::anchoredPattern(pattern), QRegularExpression::DotMatchesEverythingOption);
    return whole.match(QString::fromUtf8(text)).hasMatch();
}

const QByteArray longest(4096, '#');
#define ALONE "--no-program --script -"
#define PLAYED "--script -"
#define AT "standard input:"
#define DEVICE "device: frame 47110001, 8 x 8, layout 1, core service on 127.0.0.1:6107\n"
#define PAGE "page: http://127.0.0.1:[1-9][0-9]*\n"
#define STAY "exec sleep 600"
#define LIVE "echo lives; " STAY
#define CHANGE "set /SYS/CECU/LCD.Brightness=3\n"
#define OBEY "read -r line; echo \"program got $line\"; exec $line"

// clang-format off
const Case cases[] = {
    {"help", "--help", "", "", 0, ".*--frame.*--list-frames.*--no-program.*--script.*--demo.*--wrap.*--fault.*  4  .*"
        "expect request TEXT \\[within MS\\].*", ""},
    {"frames", "--list-frames", "", "", 0,
        "([^\n]*\n){17} *17 +47110017 +48 x 48 +6\n([^\n]*\n){15} *33 +58220003 +8 x 8 +1\n", ""},
    {"script succeeds", ALONE, "", "# Wake up\r\n\n  set /SYS/CECU/LCD.Message=B\xc3\xbchne\nquit", 0,
        QString::fromUtf8(DEVICE "# Wake up\n> set /SYS/CECU/LCD.Message=B\xc3\xbchne\n> quit\n"), ""},
    {"script has a wrong line", ALONE, "", "wait 60000\n\ndance\n", 2, "", AT "3: there is no command.*"},
    {"line too long", ALONE, "", "#\n" + longest + "\r\n" + longest + "x\nquit", 2, "",
        AT "3: a line of more than 4096 bytes\n"},
    {"line much too long, without an end", ALONE, "", longest.repeated(9), 2, "",
        AT "1: a line of more than 4096 bytes\n"},
    {"script file", "--no-program --frame 47110017 --script ../tour.script", "",
        "get /.PartNumber\nexpect led destination 48 1 within 20\n", 1, ".*/.PartNumber=47110017\n.*",
        "tour.script:2: LED destination 48 is 0.*"},
    {"line too long in a file", "--no-program --script ../tour.script", "", longest + "\r\n" + longest + "x\n", 2, "",
        "tour.script:2: a line of more than 4096 bytes\n"},
    {"console", "--no-program --frame 4", "", "get /.PartNumber\ndance\n" + longest.repeated(9) + "\nget /SYS.No\n"
        "call /MANAGEMENT/POWER:explode()\nrestart\npreset remove None\nexpect property /SYS.No=3 within 20\n"
        "expect property /SYS/CECU/LCD.Message=x within 20\nexpect-lcd nothing.png\nlcd no/such/shot.png\nleds\n"
        R"(set   /SYS/CECU/LCD.Message="a   b" "# x" "" say \"hi\" "a\\" b\n P#2 # rest)" // blanks, quotes, comments
        "\nget /SYS/CECU/LCD.Message\nquit\nget /.PartNumber\n", 0,
        "device: frame 47110004, 16 x 16, layout 2, core service on 127.0.0.1:6107\n" PAGE "/.PartNumber=47110004\n"
        "error: there is no command \"dance\"; \"help\" lists them\nerror: a line of more than 4096 bytes\n"
        "error: the device has no property /SYS.No\nerror: no such method\nerror: there is no program.*\n"
        "error: there is no preset \"None\".*\nerror: the device has no property /SYS.No\n"
        "error: /SYS/CECU/LCD.Message is \"\", expected \"x\" within 20 ms\n"
        "error: cannot read nothing.png.*\nerror: cannot write no/such/shot.png.*\nall LEDs are 0\n"
        R"(/SYS/CECU/LCD.Message=a   b # x  say "hi" a\\ b\\n P#2)" "\n", ""},
    {"program is missing", "", "", "", 4, "", ".*front-panel is missing. Build it.*--no-program.*"},
    {"program runs in its folder, twice", "", "echo \"in $PWD\"; printf 'odd \\033[31m text\\n'\n"
        "link; ask 'SET /SYS/CECU/LCD.AutoTake=1'; " STAY,
        "wait-ready\nexpect request no such within 1\nexpect request AutoTake\nrestart\nexpect message odd\nquit\n", 0,
        DEVICE PAGE "(?=(.*\n)?request: SET /SYS/CECU/LCD.AutoTake=1\n)"
        "(.*front-panel: in [^\n]*/consoleprocesstest-\\w+\nfront-panel: odd \\?\\[31m text\n){2}.*", ""},
    {"program crashes, the device runs on", "", "echo last words; kill -KILL $$", "expect exit 0\nleds\nquit\n", 0,
        ".*front-panel crashed; its last messages:\n    last words\n[^\n]*panel-simulator --wrap gdb.*all LEDs are 0\n",
        ""},
    {"wrapped program fails", "--wrap \"/bin/bash -e\"", OBEY, "false\n", 1, DEVICE PAGE "program got false\n",
        "front-panel ended with exit code 1.*"},
    {"wrapped program succeeds", "--wrap \"/bin/bash -e\"", OBEY, "true\n", 0, DEVICE PAGE "program got true\n", ""},
    {"port is taken", "--no-program", "", "", 4, "", "Port 6107 on 127.0.0.1 cannot be used.*ss -ltnp.*"},
    // The program's end is neither a crash nor news where a signal ends it all.
    {"/dev/null, Ctrl-C", "", LIVE, {}, 0, DEVICE PAGE "front-panel: lives\n", "", SIGINT},
    {"an ended pipe, hang-up", "", LIVE, "expect message lives", 0, DEVICE PAGE "front-panel: lives\n", "", SIGHUP},
    {"script, SIGTERM", ALONE, "", "wait 60000", 1, DEVICE "> wait 60000\n", "The script was interrupted.\n", SIGTERM},
    {"wrapper is missing", "--wrap no-such-wrapper", OBEY, "", 4, DEVICE PAGE, ".*Is no-such-wrapper installed\\?.*"},

    {"tap and wait take their time, quit ends it", ALONE, "",
        "tap take 600\nwait 400\nwait-lcd-still 30\nquit\nexpect led take 1", 0, ".*", "", 0, 1000},
    {"device commands", ALONE, "", "set /MANAGEMENT/NETWORK.LinkStatus=no   link\n"
        "expect property /MANAGEMENT/NETWORK.LinkStatus=no link\ncall /MANAGEMENT/POWER:standby()\n"
        "expect property /MANAGEMENT/POWER.Operation=STANDBY\ncall /MEDIA/XP/VIDEO:lockDestination(O2;)\n"
        "preset add My show\npreset remove My show\nupgrade 0.2\n"
        "expect property /MANAGEMENT/BOOTLOADER.Status=READY\n", 0, ".*", ""},
    {"the LCD changes", PLAYED,
        "link; while sleep 0.01; do printf a 1<>/dev/fb0; sleep 0.01; printf b 1<>/dev/fb0; done",
        "wait-lcd-still 1500 within 2000", 3, ".*", AT "1: the LCD was never the same for 1500 ms within 2000 ms\n"},
    {"a picture with tolerance", PLAYED,
        "link; change; head -c 2000 /dev/zero | tr '\\0' '\\10' 1<>/dev/fb0; echo painted; " STAY,
        "lcd ../shot.png\nexpect-lcd ../shot.png\n" CHANGE "expect message painted\nexpect-lcd ../shot.png 8\n"
        "expect-lcd ../shot.png 0 0.66\nexpect-lcd ../shot.png 7 0.65 within 20", 1, ".*",
        AT "7: 500 of 76800 pixels \\(0.651 %, allowed 0.65 %\\) differ from ../shot.png by more than 7, at most by 8;"
        " the actual picture is in ../shot.actual.png\n"},
    {"buttons in order", PLAYED, "device 2; link; records 8; " STAY, "press take\ntap 1.9 1\nrelease take\n"
        "expect message 1 736 1\nexpect message 1 712 1\nexpect message 1 712 0\nexpect message 1 736 0", 0, ".*", ""},
    {"two detents of a spin, and a turn that is none", PLAYED, "device 0; link; records 6; " STAY,
        "turn -2 fast\nturn 1\nexpect message 2 0 -1\nexpect message 2 0 -1 +20000\n"
        "expect message 2 0 1 +120000", 0, ".*", ""},
    {"LEDs by name, and the line of a wrong one", PLAYED, "device 2; light 3 1; light 21 2; light 36 1; link; " STAY,
        "# one\n\n  expect led 1.36 1\nleds\nexpect led destination 5 1 within 20", 1,
        ".*\nsource 3 = 1\ndestination 5 = 2\n1.36 = 1\n.*",
        AT "5: LED destination 5 is 2, expected 1 within 20 ms\n"},
    {"requests in between are passed, a signature is no text", PLAYED,
        "link; change; ask 'SET a=1'; ask 'SET b=1'; ask 'SET c=1'; " STAY,
        CHANGE "expect request b=1\nexpect request 0001 within 200", 1, ".*",
        AT "3: no request with \"0001\" within 200 ms; the last ones:\n    SET c=1\n"},
    {"the first requests do not count", PLAYED, "link; " STAY, "expect request PartNumber within 20", 1, ".*",
        AT "1: no request with \"PartNumber\" within 20 ms; there was none since the last one expected\n"},
    {"messages count from the start, each once", PLAYED, "echo hello; link; " STAY,
        "expect message hello\nexpect message hello within 20", 1, ".*", AT "2: no message with \"hello\".*"},

    {"a program that never connects", "", "echo starting; " STAY, "wait-ready 100\nquit\n", 0,
        ".*error: front-panel was not ready within 100 ms.*its last messages:\n    starting\n.*", ""},
    {"a program that ends before it is ready", PLAYED, "echo no display; exit 3", "wait 1", 1, ".*",
        "standard input: front-panel ended with exit code 3; its last messages:\n    no display\n.*"},
    {"an end that is expected later", PLAYED, "link; change; exit 7", CHANGE "wait 50\nexpect exit 7", 0, ".*", ""},
    {"another exit code", PLAYED, "link; change; exit 1", CHANGE "expect exit 0", 1, ".*",
        AT "2: expected exit code 0, but front-panel ended with exit code 1.*"},
    {"an end that does not come", PLAYED, "link; " STAY, "expect exit 0 within 30", 1, ".*",
        AT "1: front-panel still runs.*"},
    {"an end behind a restart is another program's", PLAYED, "link; change; exit 0",
        CHANGE "expect led take 1 within 60000\nrestart\nexpect exit 0", 1, ".*",
        AT "2: front-panel ended with exit code 0.*"},
    {"a crash fails at once", PLAYED, "link; change; kill -KILL $$", CHANGE "wait 60000\nexpect exit 0", 1, ".*",
        AT "2: front-panel crashed; its last messages:\n.*/SYS/CECU/LCD.Brightness=3.*--wrap gdb.*"},
    {"what the new program sends counts after a restart", PLAYED, "echo started; link; " STAY,
        "expect message started\nrestart\nexpect request GET /.PartNumber\nexpect message started\n"
        "expect message started within 20", 1, ".*", AT "5: no message.*"},
    {"a restart without a link is not waited for", PLAYED,
        "echo started; link && cat <&$core >/dev/null; echo cut; " STAY,
        "link drop\nexpect message cut\nrestart\nexpect message started\nlink restore\nrestart\n"
        "expect request PartNumber", 0, ".*", ""},
};

constexpr const char *wrongLines[][2] = { // and what is said of them
    {"dance", "no command \"dance\"; \"help\""}, {"expect lamp", "expect led KEY VALUE"}, {"tap", "is no key"},
    {"tap source 9", "source needs a number from 1 to 8"}, {"press source 0", "source needs a number from 1 to 8"},
    {"press 4.1", "1.1 to 3.40"}, {"press 1.41", "1.1 to 3.40"}, {"tap take long", "MS must be a whole number"},
    {"wait -5", "MS must be a whole number from 1 to 600000"}, {"wait 600001", "from 1 to 600000"},
    {"tap take 50 now", "\"now\" is too much; usage: tap KEY [MS]"}, {"expect led take", "VALUE is missing"},
    {"expect led take 1 within soon", "behind \"within\""}, {"expect request within 100", "TEXT is missing"},
    {"set /SYS/CECU/LCD.Message", "is not PATH=VALUE"}, {"upgrade 0", "SECONDS must be a number from 0.1 to 3600"},
    {"call /MANAGEMENT/POWER:standby", "is not PATH:METHOD(ARGUMENTS)"}, {"expect message \"Front", "not closed"},
    {"help dance", "no such command"}, {"turn 3 brisk", "\"brisk\" is too much"},
    {"expect-lcd a.png 0 101", "PERCENT must be a number from 0 to 100"}};

constexpr const char *wrongOptions[][2] = { // and what is said of them
    {"--fast", "--help"}, {"--frame 34", "--list-frames"}, {"--frame 0", "--list-frames"},
    {"--frame 47110099", "--list-frames"}, {"--frame big", "no frame \"big\""}, {"start", "\"start\" is no option"},
    {"--fault rain", "panel-missing=3, encoder-missing"}, {"--fault panel-missing=4", "i2c-missing"},
    {"--demo --script a", "--script or --demo"}, {"--demo --no-program", "--demo shows the program"},
    {"--no-program --wrap gdb", "--wrap needs"}, {"--wrap gdb --script -", "script as a file"},
    {"--no-program --script /no/such.script", "cannot be read"}};
// clang-format on

} // namespace

/// panel-simulator as a process: options, exit codes, standard input, signals. A shell script is its program.
class ConsoleProcessTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_files.isValid() && QDir::setCurrent(m_files.path()));
        QVERIFY(QFile::copy(PANEL_SIMULATOR, "panel-simulator"));
        qputenv("TMPDIR", QFile::encodeName(m_files.filePath("tmp"))); // where the bed is made
    }

    void plays_data()
    {
        QTest::addColumn<Case>("row");
        for (const Case &row : cases)
            QTest::newRow(row.name) << row;
        for (const auto &[line, error] : wrongLines) // nothing before it has been done
            QTest::newRow(line) << Case{"", ALONE, "", QByteArray("leds\n") + line + "\nquit", 2, "",
                AT "2: .*" + QRegularExpression::escape(QString(error)) + ".*"};
        for (const auto &[arguments, error] : wrongOptions)
            QTest::newRow(arguments) << Case{
                "", arguments, "exit 0", "", 2, "", ".*" + QRegularExpression::escape(QString(error)) + ".*"};
    }

    void plays()
    {
        QFETCH(Case, row);
        QDir("tmp").removeRecursively(); // what a row that failed has left
        QDir().mkdir("tmp");
        QFile("front-panel").remove();
        QVERIFY(row.program.isEmpty() || write("front-panel", tools + row.program + '\n'));
        QVERIFY(write("tour.script", row.input));
        QTcpServer other;
        QVERIFY(row.name != QLatin1String("port is taken") || other.listen(QHostAddress::LocalHost, 6107));
        QElapsedTimer time;
        time.start();
        QProcess process;
        process.setWorkingDirectory("tmp");
        if (row.input.isNull())
            process.setStandardInputFile(QProcess::nullDevice());
        process.start(m_files.filePath("panel-simulator"), QProcess::splitCommand(QString(row.arguments)));
        process.write(row.input);
        process.closeWriteChannel();
        QByteArray output;
        if (row.signal != 0) {
            QTRY_VERIFY2_WITH_TIMEOUT(matches(output += process.readAllStandardOutput(), row.output), output, 20000);
            QTcpSocket client;
            client.connectToHost(QHostAddress::LocalHost, 6107);
            for (int i = 0; i < 3; ++i) // each turns its event loop, which has seen the end of input by then
                QVERIFY(client.write("GET /.PartNumber\r\n") > 0 && client.waitForReadyRead());
            QCOMPARE(process.state(), QProcess::Running);
            kill(static_cast<pid_t>(process.processId()), row.signal);
        }
        QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 30000);
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QVERIFY(time.elapsed() >= row.leastTime);
        output += process.readAllStandardOutput();
        const QByteArray errors = process.readAllStandardError();
        QVERIFY2(process.exitCode() == row.code, output + errors);
        QVERIFY2(matches(output, row.output) && matches(errors, row.errors), output + errors);
        QVERIFY(QDir().rmdir("tmp")); // it is empty again
    }

    void namesKeysAsTheFrameDoes()
    {
        const std::pair<int, QString> names[] = {{0, "destination 1"}, {3, "take"}, {4, "source 17"},
            {5, "destination 33"}, {6, "destination 48"}, {6, "3.40"}}; // behind the layout
        QString places;
        for (const auto &[layout, name] : names) {
            FrontKey key;
            QStringList words = (name + " rest").split(' ');
            QCOMPARE(takeKey(panelLayout(layout), &words, &key), QString());
            QCOMPARE(keyName(panelLayout(layout), key) + ' ' + words.join(' '), name + " rest");
            places += QString("%1.%2 ").arg(key.panel).arg(key.button);
        }
        QCOMPARE(places, "1.17 1.36 2.1 3.1 3.32 3.40 "); // an unknown layout is the smallest, audio moves the keys
    }

private:
    static bool write(const QString &name, const QByteArray &contents)
    {
        QFile file(name);
        return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size()
            && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QTemporaryDir m_files;
};

QTEST_GUILESS_MAIN(ConsoleProcessTest)
#include "consoleprocesstest.moc"
