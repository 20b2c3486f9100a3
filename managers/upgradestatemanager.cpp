#include "managers/upgradestatemanager.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"

#include <QDebug>

namespace {

constexpr QStringView updatingText = u"UPDATING";

} // namespace

UpgradeStateManager::UpgradeStateManager()
    : m_status(propBootloaderStatus)
    , m_progress(propBootloaderProgress)
{
}

void UpgradeStateManager::connectionStateChanged(bool connected)
{
    qDebug() << "UpgradeStateManager::connectionStateChanged, " << connected;
    const QString statusNode = Dt3Manager::nodeOf(m_status.path());
    const QString progressNode = Dt3Manager::nodeOf(m_progress.path());
    if (!connected) {
        close(statusNode);
        close(progressNode);
        return;
    }
    open(statusNode);
    open(progressNode);
    get(m_status.path());
    get(m_progress.path());
}

void UpgradeStateManager::update(const QString &property, const QString &value)
{
    if (property == m_status.path()) {
        m_upgrading = value == updatingText;
        emit upgradeStateChanged(m_upgrading, m_progressValue);
    }
    if (property == m_progress.path()) {
        const QStringView percent = QStringView(value).left(value.indexOf(u' '));
        m_progressValue = static_cast<uint8_t>(percent.toInt()); // 0 for what is no number
        emit upgradeStateChanged(m_upgrading, m_progressValue);
    }
}
