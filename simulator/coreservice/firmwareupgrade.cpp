#include "simulator/coreservice/firmwareupgrade.h"

#include "simulator/coreservice/valuerule.h"

#include <algorithm>

namespace {

constexpr PropertyRow rows[] = {
    {"/MANAGEMENT/BOOTLOADER", "Status", ValueRule::fixed, "READY"},
    {"/MANAGEMENT/BOOTLOADER", "Progress", ValueRule::fixed, "0 Idle"},
};
const QString statusPath = "/MANAGEMENT/BOOTLOADER.Status";
const QString progressPath = "/MANAGEMENT/BOOTLOADER.Progress";

} // namespace

FirmwareUpgrade::FirmwareUpgrade(PropertyTree &tree, QObject *parent)
    : QObject(parent)
    , m_tree(tree)
{
    m_tree.addProperties(rows);
    connect(&m_step, &QTimer::timeout, this, &FirmwareUpgrade::step);
}

void FirmwareUpgrade::start(std::chrono::milliseconds duration)
{
    m_duration = std::max(duration, std::chrono::milliseconds(1));
    m_since.start();
    m_tree.setValue(statusPath, "UPDATING");
    m_tree.setValue(progressPath, "0 Writing firmware");
    m_step.start(std::max(m_duration / 100, std::chrono::milliseconds(1)));
}

void FirmwareUpgrade::step()
{
    const qint64 percent = std::min<qint64>(m_since.elapsed() * 100 / m_duration.count(), 100);
    m_tree.setValue(progressPath, QString::number(percent) + " Writing firmware");
    if (percent < 100)
        return;
    m_step.stop();
    m_tree.setValue(statusPath, rows[0].value);
    m_tree.setValue(progressPath, rows[1].value);
}
