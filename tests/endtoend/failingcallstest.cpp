#include "tests/endtoend/front.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

namespace {

/// What the manual pages name, as far as these calls can come to it here.
const QMap<QString, QList<int>> errors{
    {"open", {EACCES, EMFILE, EINTR, ENXIO, ENOENT, ENOMEM}},
    {"read", {EIO, EAGAIN, EINTR, EINVAL}},
    {"write", {EIO, EAGAIN, EINTR, EPIPE, ENOSPC}},
    {"ioctl", {ENOTTY, EINTR, EREMOTEIO, ETIMEDOUT, EINVAL, EAGAIN}},
    {"socket", {EMFILE, EACCES, ENOBUFS, EAFNOSUPPORT}},
    {"connect", {ECONNREFUSED, EINTR, ETIMEDOUT, ENETUNREACH, EAGAIN, EADDRNOTAVAIL}},
    {"send", {ECONNRESET, EAGAIN, EINTR, EPIPE, ENOBUFS}},
    {"setsockopt", {ENOPROTOOPT, ENOMEM}},
    {"getsockopt", {ENOBUFS, EINVAL}},
};

/// The program from its start to its end, with the menu and a key in between.
struct Run
{
    explicit Run(const QString &call = {}, const QString &target = {}, int at = 0, int error = 0)
    {
        QTemporaryDir folder;
        const QByteArray report = folder.filePath("report").toUtf8();
        qputenv("LD_PRELOAD", CALL_INJECTOR); // what we start inherits it
        qputenv("FAIL_REPORT", report);
        qputenv("FAIL_CALL", call.toUtf8());
        qputenv("FAIL_TARGET", target.toUtf8());
        qputenv("FAIL_AT", QByteArray::number(at));
        qputenv("FAIL_WITH", QByteArray::number(error));
        {
            Front front(1);
            play(front);
            messages = front.messages();
            end = front.device().programEnd();
        }
        QFile file(report);
        if (file.open(QIODevice::ReadOnly))
            calls = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }
    bool operator==(const Run &other) const { return lcd == other.lcd && leds == other.leds; }

    QStringList calls; ///< "COUNT CALL TARGET" each; empty where no call has failed.
    QStringList messages;
    std::optional<ProgramEnd> end; ///< It ended by itself.
    QImage lcd;
    QStringList leds;
    bool rests = false; ///< It takes no processor time.

private:
    void play(Front &front)
    {
        if (!front.device().powerOn().isEmpty())
            return;
        front.device().startProgram();
        (void)QTest::qWaitFor(
            [&front] { return front.device().programEnd() || front.device().isProgramReady(); }, 30000);
        if (front.device().programEnd())
            return;
        front.takeLeds();
        front.tap(1, 2);
        lcd = front.picture();
        leds = front.leds();
        rests = QTest::qWaitFor([&front] { return front.device().programEnd() || front.device().isProgramReady(); });
    }
};

} // namespace

/// Each call that the program makes fails in turn, once. It goes on as if nothing had been, or says what went wrong.
class FailingCallsTest : public QObject
{
    Q_OBJECT
public:
    /// @param all with every error and at every call, else each call on each target with one of its errors.
    explicit FailingCallsTest(bool all)
        : m_all(all)
    {
    }

private slots:
    void initTestCase();
    void isHandled_data();
    void isHandled();
    void cleanupTestCase() const { qInfo("%d calls were made to fail", m_failed); }

private:
    const bool m_all;
    std::optional<Run> m_sane;
    int m_failed = 0;
};

void FailingCallsTest::initTestCase()
{
    m_sane.emplace();
    QVERIFY(m_sane->rests);
    QVERIFY(!m_sane->leds.isEmpty());
    QVERIFY(m_sane->calls.contains("1 open /dev/fb0"));
    const Run again;
    QVERIFY(again == *m_sane && again.messages == m_sane->messages); // what differs later is the failure's doing
}

void FailingCallsTest::isHandled_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("at");
    QTest::addColumn<int>("error");
    int turn = 0;
    for (const QString &line : std::as_const(m_sane->calls)) {
        const QString call = line.section(' ', 1, 1), target = line.section(' ', 2);
        const QList<int> causes = errors[call];
        const int count = line.section(' ', 0, 0).toInt();
        for (int at = 1; at <= count; at += m_all || at < 2 ? 1 : 10) {
            for (qsizetype i = 0; i < (m_all ? causes.size() : 1); ++i) {
                const int error = causes[m_all ? i : turn++ % causes.size()];
                QTest::addRow("%s %d of %s: %s", qPrintable(call), at, qPrintable(target), strerrorname_np(error))
                    << call << target << at << error;
            }
        }
    }
}

void FailingCallsTest::isHandled()
{
    QFETCH(QString, call);
    QFETCH(QString, target);
    QFETCH(int, at);
    QFETCH(int, error);
    const Run run(call, target, at, error);
    QVERIFY2(!run.calls.isEmpty(), "the call was not made");
    ++m_failed;
    const QString said = run.messages.join('\n');
    if (target.endsWith("/libqlinuxfb.so"))
        QVERIFY(said.contains("no Qt platform plugin")); // Qt itself ends the program then, by a signal
    else if (run.end)
        QVERIFY2(run.end->how == ProgramEnd::How::Exited && run.end->exitCode != 0, qPrintable(said));
    else
        QVERIFY2(run.rests, "it spins");
    const bool says = std::any_of(run.messages.begin(), run.messages.end(),
        [this](const QString &message) { return !m_sane->messages.contains(message); });
    QVERIFY2(says || run == *m_sane, qPrintable("it does not work, and does not say so:\n" + said));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    FailingCallsTest test(arguments.removeAll("--all") > 0);
    return QTest::qExec(&test, arguments);
}

#include "failingcallstest.moc"
