#include "testbedrig.h"

#include <QCoreApplication>
#include <QTest>

namespace {

constexpr int patience = 30000; // ms

FrameDescriptor frameWith(uint32_t partNumber)
{
    FrameDescriptor frame{};
    frame.partNumber = partNumber;
    return frame;
}

} // namespace

TestBedRig::TestBedRig(const HardwareFaults &faults, uint32_t partNumber)
    : bed(frameWith(partNumber), faults)
    , ended(&runner, &ProgramRunner::ended)
{
    QObject::connect(&runner, &ProgramRunner::messageLogged, &runner, [this](const QString &line) { printed << line; });
}

void TestBedRig::start(const QStringList &arguments, const QString &helper)
{
    runner.start(QCoreApplication::applicationDirPath() + u'/' + helper, bed.programEnvironment(), {}, arguments);
}

QStringList TestBedRig::events() const
{
    QStringList found;
    for (const QString &line : printed) {
        if (line.startsWith(u"event "))
            found << line.section(u' ', 2);
    }
    return found;
}

bool TestBedRig::waitUntilPrinted(const QString &line)
{
    return QTest::qWaitFor([this, line] { return printed.contains(line); }, patience);
}

bool TestBedRig::waitUntilEnded(int times)
{
    return QTest::qWaitFor([this, times] { return ended.count() >= times; }, patience);
}

bool TestBedRig::run(const QStringList &arguments)
{
    const auto before = int(ended.count());
    start(arguments);
    return waitUntilEnded(before + 1) && ended.last() == QVariantList{0, false};
}
