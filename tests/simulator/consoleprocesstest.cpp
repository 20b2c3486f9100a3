#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace {

struct Case // NOLINT(clang-analyzer-optin.performance.Padding): columns in reading order
{
    const char *name, *arguments; ///< As in a shell.
    QByteArray program;           ///< A shell script; none is installed where it is empty.
    QByteArray input;             ///< Standard input (null: /dev/null), and the contents of tour.script.
    int code;
    QString output, errors; ///< Patterns of all that is printed.
    int signal = 0;         ///< Sent when the output is there.
};

bool matches(const QByteArray &text, const QString &pattern)
{
    const QRegularExpression whole(
        QRegularExpression::anchoredPattern(pattern), QRegularExpression::DotMatchesEverythingOption);
    return whole.match(QString::fromUtf8(text)).hasMatch();
}

const QByteArray longest(4096, '#');
#define ALONE "--no-program --script -"
#define DEVICE "device: frame 47110001, 8 x 8, layout 1, core service on 127.0.0.1:6107\n"
#define PAGE "page: http://127.0.0.1:[1-9][0-9]*\n"
#define STAY "exec sleep 600"
#define LIVE "echo lives; " STAY
#define OBEY "read -r line; echo \"program got $line\"; exec $line"

// clang-format off
const Case cases[] = {
    {"help", "--help", "", "", 0, ".*--frame.*--list-frames.*--no-program.*--script.*--demo.*--wrap.*--fault.*  4  .*"
        "expect request TEXT \\[within MS\\].*", ""},
    {"frames", "--list-frames", "", "", 0,
        "([^\n]*\n){17} *17 +47110017 +48 x 48 +6\n([^\n]*\n){15} *33 +58220003 +8 x 8 +1\n", ""},
    {"script succeeds", ALONE, "", "# Wake up\r\n\n  set /SYS/CECU/LCD.Message=B\xc3\xbchne\nquit", 0,
        QString::fromUtf8(DEVICE "# Wake up\n> set /SYS/CECU/LCD.Message=B\xc3\xbchne\n> quit\n"), ""},
    {"script has a wrong line", ALONE, "", "wait 60000\n\ndance\n", 2, "", "standard input:3: there is no command.*"},
    {"line too long", ALONE, "", "#\n" + longest + "\r\n" + longest + "x\nquit", 2, "",
        "standard input:3: a line of more than 4096 bytes\n"},
    {"line much too long, without an end", ALONE, "", longest.repeated(9), 2, "",
        "standard input:1: a line of more than 4096 bytes\n"},
    {"script file", "--no-program --frame 47110017 --script ../tour.script", "",
        "get /.PartNumber\nexpect led destination 48 1 within 20\n", 1, ".*/.PartNumber=47110017\n.*",
        "tour.script:2: LED destination 48 is 0.*"},
    {"line too long in a file", "--no-program --script ../tour.script", "", longest + "\r\n" + longest + "x\n", 2, "",
        "tour.script:2: a line of more than 4096 bytes\n"},
    {"console", "--no-program --frame 4", "", "get /.PartNumber\ndance\n" + longest.repeated(9) + "\nget /SYS.No\n"
        "call /MANAGEMENT/POWER:explode()\nrestart\npreset remove None\nexpect property /SYS.No=3 within 20\n"
        "expect property /SYS/CECU/LCD.Message=x within 20\nexpect-lcd nothing.png\nlcd no/such/shot.png\nleds\n"
        "quit\nget /.PartNumber\n", 0,
        "device: frame 47110004, 16 x 16, layout 2, core service on 127.0.0.1:6107\n" PAGE "/.PartNumber=47110004\n"
        "error: there is no command \"dance\"; \"help\" lists them\nerror: a line of more than 4096 bytes\n"
        "error: the device has no property /SYS.No\nerror: no such method\nerror: there is no program.*\n"
        "error: there is no preset \"None\".*\nerror: the device has no property /SYS.No\n"
        "error: /SYS/CECU/LCD.Message is \"\", expected \"x\" within 20 ms\n"
        "error: cannot read nothing.png.*\nerror: cannot write no/such/shot.png.*\nall LEDs are 0\n", ""},
    {"program is missing", "", "", "", 4, "", ".*front-panel is missing. Build it.*--no-program.*"},
    {"program runs in its folder, twice", "", "echo \"in $PWD\"; printf 'odd \\033[31m text\\n'\n"
        "exec {core}<>/dev/tcp/127.0.0.1/6107; printf '0001#SET /SYS/CECU/LCD.AutoTake=1\\r\\n' >&$core; " STAY,
        "wait-ready\nexpect request no such within 1\nexpect request AutoTake\nrestart\nexpect message odd\nquit\n", 0,
        DEVICE PAGE "(?=(.*\n)?request: SET /SYS/CECU/LCD.AutoTake=1\n)(.*front-panel: in [^\n]*/consoleprocesstest-\\w+\n"
        "front-panel: odd \\?\\[31m text\n){2}.*", ""},
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
};

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
        for (const auto &[arguments, error] : wrongOptions)
            QTest::newRow(arguments) << Case{
                "", arguments, "exit 0", "", 2, "", ".*" + QRegularExpression::escape(QString(error)) + ".*"};
    }

    void plays()
    {
        QFETCH(Case, row);
        QDir().mkdir("tmp");
        QFile("front-panel").remove();
        QVERIFY(row.program.isEmpty() || write("front-panel", "#!/bin/bash\n" + row.program + '\n'));
        QVERIFY(write("tour.script", row.input));
        QTcpServer other;
        QVERIFY(row.name != QLatin1String("port is taken") || other.listen(QHostAddress::LocalHost, 6107));
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
        QCOMPARE(process.exitCode(), row.code);
        output += process.readAllStandardOutput();
        const QByteArray errors = process.readAllStandardError();
        QVERIFY2(matches(output, row.output) && matches(errors, row.errors), output + errors);
        QVERIFY(QDir().rmdir("tmp")); // it is empty again
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
