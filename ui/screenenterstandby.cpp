#include "ui/screenenterstandby.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"

#include <utility>

namespace {

QString operationNode() { return Dt3Manager::nodeOf(propPowerOperation.path()); }

} // namespace

ScreenEnterStandby::ScreenEnterStandby(QWidget *parent)
    : ScreenWarning(parent, true, true)
{
    setTitle(QStringLiteral("Enter Standby"));
    setButtonTexts(QStringLiteral("Yes"), QStringLiteral("No"));
}

void ScreenEnterStandby::setActive(bool active)
{
    if (!active)
        return;
    setMessage(QStringLiteral(
        "Entering standby mode will\ndisable video transmission.\nWake up by pressing the\nrotary button. Continue?"));
    m_open = true;
    open(operationNode());
}

void ScreenEnterStandby::connectionLost()
{
    if (std::exchange(m_open, false))
        Dt3Sink::close(operationNode());
}

void ScreenEnterStandby::savePressed()
{
    setMessage(QStringLiteral("Entering standby..."));
    call(methodStandby, {});
}

void ScreenEnterStandby::propertyChanged(const QString &property, const QString &)
{
    if (property == propPowerOperation.path())
        hideMe();
}
