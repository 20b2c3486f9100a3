#include "simulator/web/benchstate.h"

#include "simulator/device.h"

#include <QJsonArray>

using namespace std::chrono_literals;

namespace {

constexpr auto gatherTime = 20ms;

QString valueOf(const CoreService &core, const QString &path) { return core.property(path).value_or(QString()); }

bool isTrue(const CoreService &core, const QString &path)
{
    const QString value = valueOf(core, path);
    return value == "true" || value == "1"; // the device's own changes need not keep to its wording
}

int upgradePercent(const CoreService &core)
{
    if (valueOf(core, QStringLiteral("/MANAGEMENT/BOOTLOADER.Status")) != "UPDATING")
        return -1;
    return valueOf(core, QStringLiteral("/MANAGEMENT/BOOTLOADER.Progress")).section(' ', 0, 0).toInt();
}

QJsonArray portSignals(const CoreService &core, char direction, int count)
{
    QJsonArray present;
    for (int port = 1; port <= count; ++port)
        present.append(
            isTrue(core, QStringLiteral("/MEDIA/PORTS/VIDEO/%1%2/STATUS.SignalPresent").arg(direction).arg(port)));
    return present;
}

} // namespace

BenchState::BenchState(Device &device, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_message(read())
{
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(gatherTime);
    connect(&device.core(), &CoreService::changed, this, [this] {
        if (!m_refresh.isActive())
            m_refresh.start();
    });
    connect(&m_refresh, &QTimer::timeout, this, &BenchState::refresh);
}

QJsonObject BenchState::read() const
{
    const CoreService &core = m_device.core();
    return {
        {"type", "bench"},
        {"link", core.isLinkUp()},
        {"lock", isTrue(core, QStringLiteral("/SYS/CECU/LCD.ControlLock"))},
        {"autotake", isTrue(core, QStringLiteral("/SYS/CECU/LCD.AutoTake"))},
        {"standby", valueOf(core, QStringLiteral("/MANAGEMENT/POWER.Operation")) == "STANDBY"},
        {"upgrade", upgradePercent(core)},
        {"psu1", valueOf(core, QStringLiteral("/MANAGEMENT/POWER.Psu1")) == "running"},
        {"psu2", valueOf(core, QStringLiteral("/MANAGEMENT/POWER.Psu2")) == "running"},
        {"presets", QJsonArray::fromStringList(core.presetNames())},
        {"inputSignals", portSignals(core, 'I', m_device.frame().inputPortCount())},
        {"outputSignals", portSignals(core, 'O', m_device.frame().outputPortCount())},
    };
}

void BenchState::refresh()
{
    QJsonObject present = read();
    if (present == m_message)
        return;
    m_message = std::move(present);
    emit changed();
}
