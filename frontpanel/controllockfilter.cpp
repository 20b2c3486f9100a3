#include "frontpanel/controllockfilter.h"

#include "frontpanel/frontlogic.h"
#include "hardware/panellayout.h"

#include <QKeyEvent>

namespace {

constexpr int firstPanelKey = panelKey(1, 1);
constexpr int lastPanelKey = panelKey(3, 40);
constexpr int controlLockKey = panelKey(1, PanelLayout::controlLock);
static_assert(controlLockKey == 742);

} // namespace

ControlLockFilter::ControlLockFilter(FrontLogic *frontLogic)
    : m_frontLogic(frontLogic)
{
}

bool ControlLockFilter::eventFilter(QObject *watched, QEvent *event)
{
    Q_UNUSED(watched)
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    if (!swallows(static_cast<QKeyEvent *>(event)->key(), event->type() == QEvent::KeyPress))
        return false;
    event->accept(); // else Qt offers the same key to every parent, and each offer would pass here again
    return true;
}

bool ControlLockFilter::swallows(int key, bool pressed)
{
    if (!m_connected || m_upgrading)
        return true;
    if (m_standby) {
        if (key == Qt::Key_Return && pressed)
            emit wakeUpAction();
        return true;
    }
    if (!m_locked) {
        if (key < firstPanelKey || key > lastPanelKey)
            return false;
        m_frontLogic->handleButton(key, pressed);
        return true;
    }
    if (key == controlLockKey)
        m_frontLogic->handleButton(key, pressed);
    else
        emit lockedWarningAction();
    return true;
}

void ControlLockFilter::lockedStatusChanged(bool locked) { m_locked = locked; }
void ControlLockFilter::connectionStatusChanged(bool connected) { m_connected = connected; }
void ControlLockFilter::operationStatusChanged(bool standby) { m_standby = standby; }

void ControlLockFilter::upgradeStateChanged(bool upgrading, uint8_t progress)
{
    Q_UNUSED(progress)
    m_upgrading = upgrading;
}
