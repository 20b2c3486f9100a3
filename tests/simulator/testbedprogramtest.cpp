#include "testbedrig.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <csignal>

using namespace std::chrono_literals;

namespace {

QString driverPath() { return QCoreApplication::applicationDirPath() + "/beddriver"; }

bool isGone(qint64 processId) { return ::kill(pid_t(processId), 0) < 0 && errno == ESRCH; }

} // namespace

/// Starting and ending programs, in a bed and without.
class TestBedProgramTest : public QObject
{
    Q_OBJECT
private slots:
    void endIsReported_data();
    void endIsReported();
    void missingProgramIsReported();
    void wrapperRunsTheProgram();
    void messagesArriveByTheLine();
    void stopIsNoEnd_data();
    void stopIsNoEnd();
    void programMakesItsLastRequestsDuringStop();
    void startReplacesTheProgram();
    void runnerTakesItsProgramAlong();
    void environmentIsAddedTo();
    void bedRemovesItsFiles_data();
    void bedRemovesItsFiles();
    void removedBedEndsItsProgram();
};

void TestBedProgramTest::endIsReported_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("crashed");
    QTest::newRow("orderly") << QStringList{"exit", "0"} << 0 << false;
    QTest::newRow("with a status") << QStringList{"exit", "3"} << 3 << false;
    QTest::newRow("by a signal") << QStringList{"crash"} << SIGKILL << true;
}

void TestBedProgramTest::endIsReported()
{
    QFETCH(QStringList, arguments);
    TestBedRig rig;
    rig.start(arguments);
    QVERIFY(rig.runner.isRunning());
    QVERIFY(rig.waitUntilEnded());
    QVERIFY(!rig.runner.isRunning());
    QTEST(rig.ended.first().at(0).toInt(), "code");
    QTEST(rig.ended.first().at(1).toBool(), "crashed");
}

void TestBedProgramTest::missingProgramIsReported()
{
    TestBedRig rig;
    QSignalSpy failed(&rig.runner, &ProgramRunner::startFailed);
    rig.start({}, "no-such-program");
    QTRY_COMPARE(failed.count(), 1);
    QVERIFY(!failed.first().first().toString().isEmpty());
    QVERIFY(!rig.runner.isRunning());
    QVERIFY(rig.run({"exit", "0"})); // the same runner can start another
    QCOMPARE(rig.ended.count(), 1);
}

void TestBedProgramTest::wrapperRunsTheProgram()
{
    TestBedRig rig;
    rig.runner.start(driverPath(), rig.bed.programEnvironment(), {"sh", "-c", "exec \"$@\"", "sh"},
        {"leds", "/dev/input/event2:7:1", "exit", "5"});
    QVERIFY(rig.waitUntilEnded());
    QCOMPARE(rig.ended.first(), (QVariantList{5, false}));
    QTRY_COMPARE(rig.bed.led(1, 7), 1);
    QCOMPARE(rig.printed, QStringList()); // its messages went past us
}

void TestBedProgramTest::messagesArriveByTheLine()
{
    TestBedRig rig;
    QVERIFY(rig.run({"folder", "say", "one :half", "say", ":", "say", "zwölf:"}));
    QStringList lines = rig.printed;
    QCOMPARE(lines.takeFirst(), "folder " + QCoreApplication::applicationDirPath());
    std::sort(lines.begin(), lines.end()); // the two streams race
    QCOMPARE(lines, (QStringList{"", "", "one half", "one half", "zwölf", "zwölf"}));
}

void TestBedProgramTest::stopIsNoEnd_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("a program that ends when told to") << "stay";
    QTest::newRow("a program that has to be killed") << "stubborn";
}

void TestBedProgramTest::stopIsNoEnd()
{
    QFETCH(QString, command);
    TestBedRig rig;
    ProgramRunner runner(nullptr, 100ms);
    QSignalSpy messages(&runner, &ProgramRunner::messageLogged), ended(&runner, &ProgramRunner::ended);
    runner.start(driverPath(), rig.bed.programEnvironment(), {}, {command});
    QTRY_COMPARE(messages.count(), 1);
    const qint64 process = runner.processId();
    runner.stop();
    QVERIFY(!runner.isRunning());
    QVERIFY(isGone(process));
    runner.start(driverPath(), rig.bed.programEnvironment(), {}, {"exit", "1"});
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(ended.first(), (QVariantList{1, false}));
}

void TestBedProgramTest::programMakesItsLastRequestsDuringStop()
{
    TestBedRig rig;
    rig.start({"farewell", "/dev/input/event2"});
    QVERIFY(rig.waitUntilPrinted("staying"));
    rig.runner.stop();
    QCOMPARE(rig.printed.mid(3), (QStringList{"device full", "released 0"}));
    QCOMPARE(rig.ended.count(), 0);
    QTRY_COMPARE(rig.bed.led(1, 40), 1);
}

void TestBedProgramTest::startReplacesTheProgram()
{
    TestBedRig rig;
    rig.start({"stay"});
    QVERIFY(rig.waitUntilPrinted("staying"));
    const qint64 first = rig.runner.processId();
    QVERIFY(rig.run({"exit", "0"}));
    QVERIFY(isGone(first));
    QCOMPARE(rig.ended.count(), 1);
}

void TestBedProgramTest::runnerTakesItsProgramAlong()
{
    TestBedRig rig;
    auto runner = std::make_unique<ProgramRunner>();
    QSignalSpy messages(runner.get(), &ProgramRunner::messageLogged);
    runner->start(driverPath(), rig.bed.programEnvironment(), {}, {"stay"});
    QTRY_COMPARE(messages.count(), 1);
    const qint64 process = runner->processId();
    runner.reset();
    QVERIFY(isGone(process));
}

void TestBedProgramTest::environmentIsAddedTo()
{
    const QByteArray before = qgetenv("ASAN_OPTIONS");
    qputenv("ASAN_OPTIONS", "detect_leaks=1");
    TestBedRig rig;
    const QProcessEnvironment environment = rig.bed.programEnvironment();
    qputenv("ASAN_OPTIONS", before);
    QCOMPARE(environment.value("ASAN_OPTIONS"), "detect_leaks=1:fast_unwind_on_malloc=0");
    QCOMPARE(environment.value("HOME"), qEnvironmentVariable("HOME"));
    const QFileInfo runtime(environment.value("XDG_RUNTIME_DIR"));
    QVERIFY(runtime.isDir());
    QCOMPARE(runtime.permissions(),
        QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
}

void TestBedProgramTest::bedRemovesItsFiles_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("while no program runs") << QStringList{"paint", "ffffff"};
    QTest::newRow("while a program has its devices open")
        << QStringList{"open", "/dev/i2c-0", "open", "/dev/input/event2", "open", "/dev/fb0", "stay"};
}

void TestBedProgramTest::bedRemovesItsFiles()
{
    QFETCH(QStringList, arguments);
    ProgramRunner runner;
    QSignalSpy messages(&runner, &ProgramRunner::messageLogged);
    QString root;
    const auto terminals = [] {
        const QDir files("/proc/self/fd");
        const QStringList numbers = files.entryList(QDir::Files | QDir::System);
        return std::count_if(numbers.begin(), numbers.end(),
            [&](const QString &number) { return QFile::symLinkTarget(files.filePath(number)).contains("ptmx"); });
    };
    const auto before = terminals();
    {
        TestBedRig rig;
        root = rig.bed.programEnvironment().value("UMOCKDEV_DIR");
        QVERIFY(QFileInfo::exists(root + "/dev/fb0"));
        QCOMPARE(terminals(), before + 5);
        runner.start(driverPath(), rig.bed.programEnvironment(), {}, arguments);
        QTRY_VERIFY(messages.count() >= arguments.count() / 2);
    }
    QVERIFY(!QFileInfo::exists(root));
    QCOMPARE(terminals(), before);
}

void TestBedProgramTest::removedBedEndsItsProgram()
{
    ProgramRunner runner;
    QSignalSpy messages(&runner, &ProgramRunner::messageLogged), ended(&runner, &ProgramRunner::ended);
    {
        TestBedRig rig;
        runner.start(driverPath(), rig.bed.programEnvironment(), {}, {"events", "/dev/input/event2:16:1"});
        QTRY_COMPARE(messages.count(), 1);
    }
    QTRY_COMPARE(ended.count(), 1);
}

QTEST_GUILESS_MAIN(TestBedProgramTest)
#include "testbedprogramtest.moc"
