#include "tests/endtoend/front.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <unistd.h>

namespace {

/// What the manual pages name, as far as these calls can come to it here.
const QMap<QString, QList<int>> errors{
    {"open", {EACCES, EMFILE, EINTR, ENXIO, ENOENT, ENOMEM, ENFILE, ENODEV, EPERM, EBUSY}},
    {"read", {EIO, EAGAIN, EINTR, EINVAL, ENODEV}},
    {"write", {EIO, EAGAIN, EINTR, EPIPE, ENOSPC, ENODEV}},
    {"ioctl", {ENOTTY, EINTR, EREMOTEIO, ETIMEDOUT, EINVAL, EAGAIN, ENODEV}},
    {"socket", {EMFILE, EACCES, ENOBUFS, EAFNOSUPPORT, ENFILE, ENOMEM}},
    {"connect", {ECONNREFUSED, EINTR, ETIMEDOUT, ENETUNREACH, EAGAIN, EADDRNOTAVAIL, EACCES, EPERM}},
    {"send", {ECONNRESET, EAGAIN, EINTR, EPIPE, ENOBUFS, ENOMEM, ENOTCONN}},
    {"setsockopt", {ENOPROTOOPT, ENOMEM}},
    {"getsockopt", {ENOBUFS, EINVAL}},
    {"getsockname", {ENOBUFS}},
    {"getpeername", {ENOBUFS, ENOTCONN}},
};

struct Failure
{
    QString call, target;
    int at = 0, error = 0;
};

/// Of the program so far, in seconds.
double processorTime(const Device &device)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(device.programProcessId()));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QStringList fields = QString::fromLatin1(file.readAll()).section(") ", 1).split(' ');
    return (fields[11].toDouble() + fields[12].toDouble()) / double(sysconf(_SC_CLK_TCK));
}

/// The program from its start to its end, with the menu and a key in between.
struct Run
{
    /// @param sane what it is like without a failure; without it, this is one.
    explicit Run(const Failure &failure = {}, const Run *sane = nullptr)
    {
        QTemporaryDir folder;
        QFile report(folder.filePath("report"));
        qputenv("LD_PRELOAD", CALL_INJECTOR); // what we start inherits it
        qputenv("FAIL_REPORT", report.fileName().toUtf8());
        qputenv("FAIL_CALL", failure.call.toUtf8());
        qputenv("FAIL_TARGET", failure.target.toUtf8());
        qputenv("FAIL_AT", QByteArray::number(failure.at));
        qputenv("FAIL_WITH", QByteArray::number(failure.error));
        {
            Front front(1);
            play(front, sane);
            messages = front.messages();
            end = front.device().programEnd();
        }
        if (report.open(QIODevice::ReadOnly))
            calls = QString::fromUtf8(report.readAll()).split('\n', Qt::SkipEmptyParts);
    }

    QStringList calls; ///< "COUNT CALL TARGET" each; empty where no call has failed.
    QStringList messages;
    std::optional<ProgramEnd> end; ///< It ended by itself.
    QImage lcd;
    QString leds;
    bool isGood = false;   ///< Front and LCD are as without the failure, or it says something else.
    bool isAtRest = false; ///< It takes next to no processor time.

private:
    void play(Front &front, const Run *sane)
    {
        const Device &device = front.device();
        const QString problem = front.device().powerOn();
        if (!problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        front.device().startProgram();
        (void)QTest::qWaitFor([&device] { return device.programEnd() || device.isProgramReady(); }, 30000);
        if (device.programEnd())
            return;
        front.tap(1, 2);
        if (sane) {
            const auto works = [&] { return front.litLeds() == sane->leds && front.device().bed().lcd() == sane->lcd; };
            const auto saysMore = [&] {
                return std::any_of(front.messages().begin(), front.messages().end(),
                    [sane](const QString &message) { return !sane->messages.contains(message); });
            };
            isGood = QTest::qWaitFor([&] { return works() || saysMore(); }, 20000);
        } else {
            isGood = QTest::qWaitFor([&front] { return front.led(1, 2) == 1; });
            lcd = front.picture();
            leds = front.litLeds();
        }
        for (int look = 0; look < 20 && !isAtRest; ++look) {
            const double before = processorTime(device);
            QElapsedTimer timer;
            timer.start();
            Front::pass(300);
            isAtRest = device.programEnd() || processorTime(device) - before < 0.0002 * double(timer.elapsed());
        }
    }
};

} // namespace

/// Each call that the program makes fails in turn, once. It goes on as if nothing had been, or says what went wrong.
class FailingCallsTest : public QObject
{
    Q_OBJECT
public:
    /// @param all at every call and with every error, else at calls 1, 2, 12, 22, ... on each target, with one error.
    explicit FailingCallsTest(bool all)
        : m_all(all)
    {
    }

private slots:
    void initTestCase();
    void isHandled_data();
    void isHandled();
    void cleanupTestCase() const;

private:
    const bool m_all;
    std::optional<Run> m_sane;
    int m_planned = 0, m_failed = 0; ///< Calls of the rows that were run.
};

void FailingCallsTest::initTestCase()
{
    m_sane.emplace();
    QVERIFY(m_sane->isGood && m_sane->isAtRest);
    QVERIFY(m_sane->calls.contains("1 open /dev/fb0"));
}

void FailingCallsTest::isHandled_data()
{
    QTest::addColumn<Failure>("failure");
    int planned = 0;
    for (const QString &line : std::as_const(m_sane->calls)) {
        const QString call = line.section(' ', 1, 1), target = line.section(' ', 2);
        const QList<int> causes = errors[call];
        const int count = line.section(' ', 0, 0).toInt();
        for (int at = 1; at <= count; at += m_all || at < 2 ? 1 : 10) {
            for (qsizetype i = 0; i < (m_all ? causes.size() : 1); ++i) {
                const int error = causes[m_all ? i : planned % causes.size()];
                QTest::addRow("%s %d of %s: %s", qPrintable(call), at, qPrintable(target), strerrorname_np(error))
                    << Failure{call, target, at, error};
                ++planned;
            }
        }
    }
}

void FailingCallsTest::isHandled()
{
    QFETCH(const Failure, failure);
    ++m_planned;
    const Run run(failure, &*m_sane);
    if (run.calls.isEmpty())
        return; // what arrives together is read together; cleanupTestCase() counts how many were made to fail
    ++m_failed;
    const QString said = run.messages.join('\n');
    if (run.end && failure.target.endsWith("/libqlinuxfb.so")) { // Qt itself ends the program then, by a signal
        QVERIFY(said.contains("no Qt platform plugin"));
    } else if (run.end) {
        QVERIFY2(run.end->how == ProgramEnd::How::Exited && run.end->exitCode != 0, qPrintable(said));
    } else {
        QVERIFY2(run.isAtRest, "it spins");
        QVERIFY2(run.isGood, qPrintable("it does not work, and does not say so:\n" + said));
    }
}

void FailingCallsTest::cleanupTestCase() const
{
    qInfo("%d of %d calls were made to fail", m_failed, m_planned);
    QVERIFY(10 * m_failed >= 9 * m_planned);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    FailingCallsTest test(arguments.removeAll("--all") > 0);
    return QTest::qExec(&test, arguments);
}

#include "failingcallstest.moc"
