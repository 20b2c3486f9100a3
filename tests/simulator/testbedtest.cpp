#include "simulator/hardware/testbed.h"

#include "simulator/hardware/programrunner.h"
#include "tests/simulator/programtools.h"

#include <QAbstractEventDispatcher>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <cerrno>
#include <csignal>

namespace {

// "open N" opens an input device for good, "records N" prints type, code, value of so many records of it.
const QString tools = programTools + R"sh(open() { exec {device}<>/dev/input/event$1; echo open; }
records() { head -c $((16 * $1)) <&$device | od -An -v -td4 -w16 | while read -r s us code value; do
    echo "$((code & 65535)) $((code >> 16)) $value"; done; }
)sh";

/// A bed and a shell script that lives in it.
struct Rig
{
    Rig()
    {
        QObject::connect(&runner, &ProgramRunner::messageLogged, &runner, [this](const QString &s) { printed << s; });
    }

    /// Waits until it has printed "open".
    bool start(const QString &script)
    {
        printed.clear();
        runner.start("/bin/bash", bed->programEnvironment(), {}, {"-c", tools + script});
        return QTest::qWaitFor([this] { return printed.contains("open"); }, 30000);
    }

    bool ends() { return !ended.isEmpty() || ended.wait(30000); }

    std::unique_ptr<TestBed> bed = std::make_unique<TestBed>(frameDescriptors().front());
    ProgramRunner runner{nullptr, std::chrono::seconds(3)};
    QSignalSpy ended{&runner, &ProgramRunner::ended};
    QStringList printed;
};

/// Nothing is left for the event loop to do.
bool isIdle() { return !QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents); }

} // namespace

/// What the front-panel program never does to its bed, or cannot tell: shell scripts in its place.
class TestBedTest : public QObject
{
    Q_OBJECT
private slots:
    void burstWaitsForASlowProgram()
    {
        Rig rig;
        QByteArray bytes; // more than the kernel keeps for a terminal, and all that a terminal could take for its own
        for (int i = 0; i < 57600; ++i)
            bytes += char(i + i / 256);
        QVERIFY(rig.start("exec {go}<>/dev/input/event2; open 3; head -c 1 <&$go >/dev/null\n"
                          "head -c 57600 <&$device | od -An -v -tx1 -w57600"));
        for (int at = 0; at < bytes.size(); at += 1000)
            rig.bed->deliverRaw(2, bytes.mid(at, 1000));
        rig.bed->setButton(1, 1, true); // begins to read
        QVERIFY(rig.ends());
        QVERIFY(rig.printed.last().remove(' ') == QLatin1String(bytes.toHex()));
    }

    void keysAreLostWhileNobodyListens()
    {
        Rig rig;
        rig.bed->setButton(1, 1, true);
        QVERIFY(rig.start("open 2; read -r"));
        QTest::ignoreMessage(QtWarningMsg, "The program does not read its input device: 65504 bytes are lost");
        rig.bed->deliverRaw(1, QByteArray(65536, '\0'));
        rig.bed->deliverRaw(1, QByteArray(65504, '\0'));
        rig.runner.stop();
        rig.bed->setButton(1, 3, true);
        QVERIFY(rig.start("open 2; records 2"));
        rig.bed->setButton(1, 2, true);
        QVERIFY(rig.ends());
        QCOMPARE(rig.printed.join(", "), "open, 1 705 1, 0 0 0");
    }

    void ledRecordsComeInParts()
    {
        Rig rig;
        const QSignalSpy written(rig.bed.get(), &TestBed::ledWritten);
        QVERIFY(rig.start(R"(half='\0\0\0\0\0\0\0\0'
            open 3; printf "$half" >&$device; echo half; head -c 1 <&$device >/dev/null
            printf "\\x11\\0\\x16\\0\\1\\0\\0\\0$half\\x11\\0\\x28\\0\\2\\0\\0\\0$half" >&$device)"));
        QTRY_COMPARE(rig.printed.last(), "half");
        QTRY_VERIFY(isIdle()); // the first half has been read
        rig.bed->setButton(2, 1, true);
        QTRY_COMPARE(written, (QList<QVariantList>{{2, 22, 1}, {2, 40, 2}}));
        QVERIFY(rig.ends());
        QTRY_VERIFY(isIdle()); // a terminal without a program is in hang-up all the time: the loop must not turn for it
        // the half at the end went with its program; the panel keeps its LEDs lit
        QVERIFY(rig.start("open 3; light 1 1; read -r"));
        QTRY_COMPARE(rig.bed->led(2, 1), 1);
        QCOMPARE(rig.bed->led(2, 22), 1);
    }

    void bedsDoNotMeet()
    {
        Rig one, other;
        QVERIFY(
            other.start("open 2; records 2") && one.start("open 2; printf '\\377' 1<>/dev/fb0; light 1 1; records 2"));
        one.bed->setButton(1, 1, true);
        other.bed->setButton(1, 2, true);
        QVERIFY(one.ends() && other.ends());
        QCOMPARE((one.printed + other.printed).join(", "), "open, 1 704 1, 0 0 0, open, 1 705 1, 0 0 0");
        QTRY_COMPARE(one.bed->led(1, 1), 1);
        QCOMPARE(other.bed->led(1, 1), 0);
        QVERIFY(one.bed->lcd().pixel(0, 0) != qRgb(0, 0, 0) && other.bed->lcd().pixel(0, 0) == qRgb(0, 0, 0));
    }

    void stopIsNoEnd()
    {
        for (const QString &heeds : QStringList{"echo bye; exit 0", ""}) {
            Rig rig;
            QVERIFY(rig.start("trap '" + heeds + "' TERM; echo open; while :; do read -r -t 0.1; done"));
            const pid_t process = pid_t(rig.runner.processId());
            rig.runner.stop();
            QVERIFY(!rig.runner.isRunning() && kill(process, 0) < 0 && errno == ESRCH);
            QCOMPARE(rig.printed.join(' '), heeds.isEmpty() ? "open" : "open bye");
            QVERIFY(rig.start("echo open; exit 1") && rig.ends());
            QCOMPARE(rig.ended, (QList<QVariantList>{{1, false}}));
        }
    }

    void removedBedLeavesNothing()
    {
        Rig rig;
        const QString root = rig.bed->programEnvironment().value("UMOCKDEV_DIR");
        QVERIFY(QFileInfo::exists(root + "/dev/fb0"));
        // A request would wait for its answer for ever, deaf to signals.
        QVERIFY(rig.start(R"(exec {device}<>/dev/input/event2
            perl -e '$| = 1; $b = "x" x 8; open(F, "+<", "/dev/i2c-0") && ioctl(F, 0x705, $b) && print "open\n";
                     1 while ioctl(F, 0x705, $b)'
            head -c 1 <&$device)"));
        rig.bed.reset();
        QVERIFY(!QFileInfo::exists(root));
        QVERIFY(rig.ends());
    }
};

QTEST_GUILESS_MAIN(TestBedTest)
#include "testbedtest.moc"
