#include "tests/simulator/consolerig.h"

#include <QSignalSpy>
#include <QSocketNotifier>
#include <QTest>

#include <linux/input-event-codes.h>
#include <unistd.h>

namespace {

Device::Setup setup()
{
    Device::Setup setup;
    setup.frame = &frameDescriptors().front();
    setup.port = 0;
    return setup;
}

} // namespace

ConsoleRig::ConsoleRig()
    : device(setup())
    , executor(device)
{
    QObject::connect(
        &executor, &CommandExecutor::finished, &executor, [this](const CommandResult &result) { m_result = result; });
    const QString error = device.powerOn();
    if (!error.isEmpty())
        qFatal("%s", qPrintable(error));
    m_panel = open(QStringLiteral("/dev/input/event2"));
    // The preload library tells the bed of an open() through this socket; without it the bed does not listen.
    m_opening.connectToServer(root() + QStringLiteral("/ioctl/dev/input/event2"));
    if (!m_opening.waitForConnected())
        qFatal("%s", qPrintable(m_opening.errorString()));
    QSignalSpy leds(&device.bed(), &TestBed::ledWritten);
    writeLed(0, 0); // no LED, but reported
    if (!leds.wait())
        qFatal("the bed does not notice that its panel has been opened");
}

CommandResult ConsoleRig::run(const QString &line)
{
    executor.execute(line);
    return result();
}

CommandResult ConsoleRig::result()
{
    if (!QTest::qWaitFor([this] { return m_result.has_value(); }, 10000))
        qFatal("the command never finished");
    return *std::exchange(m_result, std::nullopt);
}

QString ConsoleRig::root() const { return device.bed().programEnvironment().value("UMOCKDEV_DIR"); }

std::unique_ptr<QFile> ConsoleRig::open(const QString &deviceFile)
{
    auto file = std::make_unique<QFile>(root() + deviceFile);
    if (!file->open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        qFatal("%s: %s", qPrintable(file->fileName()), qPrintable(file->errorString()));
    return file;
}

PanelRecord ConsoleRig::nextKey()
{
    PanelRecord record = {};
    do {
        QSocketNotifier readable(m_panel->handle(), QSocketNotifier::Read);
        bool isReadable = false;
        QObject::connect(&readable, &QSocketNotifier::activated, &readable, [&isReadable] { isReadable = true; });
        if (!QTest::qWaitFor([&isReadable] { return isReadable; }, 5000))
            qFatal("no record comes from the panel");
        if (::read(m_panel->handle(), &record, sizeof record) != sizeof record)
            qFatal("half a record comes from the panel");
    } while (record.type != EV_KEY);
    return record;
}

void ConsoleRig::writeLed(int number, int value)
{
    const PanelRecord record = {0, 0, EV_LED, static_cast<uint16_t>(number), value};
    if (::write(m_panel->handle(), &record, sizeof record) != sizeof record)
        qFatal("the panel does not take an LED record");
}
