#include "tests/simulator/coreserviceclient.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
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
#define STAY "while :; do read -r; done"
#define LIVE "echo lives; " STAY
#define OBEY "read -r line; echo \"program got $line\"; exec $line"

// clang-format off
const Case cases[] = {
    {"help", "--help", "", "", 0, ".*--frame.*--list-frames.*--no-program.*--script.*--demo.*--wrap.*--fault.*  4  .*"
        "expect request TEXT \\[within MS\\].*", ""},
    {"frames", "--list-frames", "", "", 0,
        "([^\n]*\n){17} *17 +47110017 +48 x 48 +6\n([^\n]*\n){15} *33 +58220003 +8 x 8 +1\n", ""},
    {"script succeeds", ALONE, "", "# Wake up\r\nset /SYS/CECU/LCD.Message=B\xc3\xbchne\n\nquit", 0,
        QString::fromUtf8(DEVICE "# Wake up\n> set /SYS/CECU/LCD.Message=B\xc3\xbchne\n> quit\n"), ""},
    {"script fails", ALONE, "", "\nexpect led take 1 within 20\n", 1, ".*",
        "standard input:2: LED take is 0, expected 1 within 20 ms\n"},
    {"script has a wrong line", ALONE, "", "wait 60000\n\ndance\n", 2, "", "standard input:3: there is no command.*"},
    {"script times out", ALONE, "", "wait-lcd-still 500 within 50", 3, ".*", "standard input:1: the LCD was never.*"},
    {"line too long", ALONE, "", "#\n" + longest + "\r\n" + longest + "x\nquit", 2, "",
        "standard input:3: a line of more than 4096 bytes\n"},
    {"line much too long, without an end", ALONE, "", longest.repeated(9), 2, "",
        "standard input:1: a line of more than 4096 bytes\n"},
    {"script file", "--no-program --frame 47110017 --script ../tour.script", "",
        "get /.PartNumber\nexpect led destination 48 1 within 20\n", 1, ".*/.PartNumber=47110017\n.*",
        "tour.script:2: LED destination 48 is 0.*"},
    {"line too long in a file", "--no-program --script ../tour.script", "", longest + "\r\n" + longest + "x\n", 2, "",
        "tour.script:2: a line of more than 4096 bytes\n"},
    {"console", "--no-program --frame 4", "",
        "get /.PartNumber\ndance\n" + longest.repeated(9) + "\nleds\nquit\nget /.PartNumber\n", 0,
        "device: frame 47110004, 16 x 16, layout 2, core service on 127.0.0.1:6107\n/.PartNumber=47110004\n"
        "error: there is no command \"dance\"; \"help\" lists them\nerror: a line of more than 4096 bytes\n"
        "all LEDs are 0\n", ""},
    {"program is missing", "", "", "", 4, "", ".*front-panel is missing. Build it.*--no-program.*"},
    {"program runs in its folder, twice", "", "echo \"in $PWD\"; printf 'odd \\033[31m text\\n'\n"
        "exec {core}<>/dev/tcp/127.0.0.1/6107; printf '0001#SET /SYS/CECU/LCD.AutoTake=1\\r\\n' >&$core; " STAY,
        "wait-ready\nexpect request no such within 1\nexpect request AutoTake\nrestart\nexpect message odd\nquit\n", 0,
        DEVICE "(?=(.*\n)?request: SET /SYS/CECU/LCD.AutoTake=1\n)(.*front-panel: in [^\n]*/consoleprocesstest-\\w+\n"
        "front-panel: odd \\?\\[31m text\n){2}.*", ""},
    {"program crashes, the device runs on", "", "echo last words; kill -KILL $$", "expect exit 0\nleds\nquit\n", 0,
        ".*front-panel crashed; its last messages:\n    last words\n[^\n]*panel-simulator --wrap gdb.*all LEDs are 0\n",
        ""},
    {"wrapped program fails", "--wrap \"/bin/bash -e\"", OBEY, "false\n", 1, DEVICE "program got false\n",
        "front-panel ended with exit code 1.*"},
    {"wrapped program succeeds", "--wrap \"/bin/bash -e\"", OBEY, "true\n", 0, DEVICE "program got true\n", ""},
    {"port is taken", "--no-program", "", "", 4, "", "Port 6107 on 127.0.0.1 cannot be used.*ss -ltnp.*"},
    // The program's end is neither a crash nor news where a signal ends it all.
    {"/dev/null, SIGTERM", "", LIVE, {}, 0, DEVICE "front-panel: lives\n", "", SIGTERM},
    {"/dev/null, Ctrl-C", "--no-program", "", {}, 0, DEVICE, "", SIGINT},
    {"an ended pipe, hang-up", "", LIVE, "expect message lives", 0, DEVICE "front-panel: lives\n", "", SIGHUP},
    {"script, SIGTERM", ALONE, "", "wait 60000", 1, DEVICE "> wait 60000\n", "The script was interrupted.\n", SIGTERM},
    {"wrapper is missing", "--wrap no-such-wrapper", OBEY, "", 4, DEVICE, ".*Is no-such-wrapper installed\\?.*"},
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
    void initTestCase();
    void init();
    void cleanup();

    void plays_data();
    void plays();

private:
    void start(const Case &row);
    QTemporaryDir m_files;
    QProcess m_process;
    QByteArray m_output, m_errors;
};

void ConsoleProcessTest::initTestCase()
{
    QVERIFY(m_files.isValid() && QDir::setCurrent(m_files.path()));
    QVERIFY(QFile::copy(PANEL_SIMULATOR, "panel-simulator"));
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
        [this] { m_output += m_process.readAllStandardOutput(); });
    connect(
        &m_process, &QProcess::readyReadStandardError, this, [this] { m_errors += m_process.readAllStandardError(); });
    qputenv("TMPDIR", QFile::encodeName(m_files.filePath("tmp"))); // where the bed is made
    m_process.setWorkingDirectory("tmp");
}

void ConsoleProcessTest::init()
{
    QVERIFY(QDir().mkdir("tmp"));
    m_output.clear();
    m_errors.clear();
}

void ConsoleProcessTest::cleanup()
{
    m_process.close();
    QVERIFY(QDir().rmdir("tmp")); // it is empty again
}

void ConsoleProcessTest::start(const Case &row)
{
    QFile file("front-panel");
    file.remove();
    if (!row.program.isEmpty())
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/bash\n" + row.program + '\n') > 0
            && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    file.close();
    m_process.setStandardInputFile(row.input.isNull() ? QProcess::nullDevice() : QString());
    m_process.start(m_files.filePath("panel-simulator"), QProcess::splitCommand(QString(row.arguments)));
    QVERIFY2(m_process.waitForStarted(), qPrintable(m_process.errorString()));
    if (!row.input.isNull())
        m_process.write(row.input);
    m_process.closeWriteChannel();
}

void ConsoleProcessTest::plays_data()
{
    QTest::addColumn<Case>("row");
    for (const Case &row : cases)
        QTest::newRow(row.name) << row;
    for (const auto &row : wrongOptions)
        QTest::newRow(row[0]) << Case{
            "", row[0], "exit 0", "", 2, "", ".*" + QRegularExpression::escape(QString(row[1])) + ".*"};
}

void ConsoleProcessTest::plays()
{
    QFETCH(Case, row);
    QFile script("tour.script");
    QVERIFY(script.open(QIODevice::WriteOnly) && script.write(row.input) == row.input.size());
    script.close();
    QTcpServer other;
    QVERIFY(row.name != QLatin1String("port is taken") || other.listen(QHostAddress::LocalHost, 6107));
    start(row);
    if (row.signal != 0) {
        QTRY_VERIFY2_WITH_TIMEOUT(matches(m_output, row.output), m_output.constData(), 20000);
        for (int i = 0; i < 3; ++i) // each turns its event loop, which has seen the end of input by then
            QVERIFY(!CoreServiceClient(6107).request("GET /.PartNumber").isEmpty());
        QCOMPARE(m_process.state(), QProcess::Running);
        kill(static_cast<pid_t>(m_process.processId()), row.signal);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_process.state(), QProcess::NotRunning, 30000);
    QCOMPARE(m_process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_process.exitCode(), row.code);
    QVERIFY2(matches(m_output, row.output) && matches(m_errors, row.errors), (m_output + m_errors).constData());
}

QTEST_GUILESS_MAIN(ConsoleProcessTest)
#include "consoleprocesstest.moc"
