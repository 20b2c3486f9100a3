#include "managers/frontpanelstatemanager.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"

namespace {

// The device reads "1" and "0", and reports "true" and "false".
QString written(bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); }

} // namespace

FrontPanelStateManager::FrontPanelStateManager()
    : m_controlLock(propLcdControlLock)
    , m_autotake(propLcdAutoTake)
{
}

void FrontPanelStateManager::connectionStateChanged(bool connected)
{
    const QString lockNode = Dt3Manager::nodeOf(m_controlLock.path());
    const QString autotakeNode = Dt3Manager::nodeOf(m_autotake.path());
    if (!connected) {
        close(lockNode);
        close(autotakeNode);
        return;
    }
    open(lockNode);
    open(autotakeNode);
    get(m_controlLock.path());
    get(m_autotake.path());
}

void FrontPanelStateManager::setControlLock(bool locked) { set(m_controlLock.path(), written(locked)); }

void FrontPanelStateManager::setAutotakeMode(bool autotake) { set(m_autotake.path(), written(autotake)); }

void FrontPanelStateManager::update(const QString &property, const QString &value)
{
    const bool on = value == u"true";
    if (property == m_controlLock.path())
        emit controlLockStateChanged(on);
    if (property == m_autotake.path())
        emit autotakeModeChanged(on);
}
