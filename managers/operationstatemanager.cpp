#include "managers/operationstatemanager.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"

namespace {

constexpr QStringView standbyText = u"STANDBY";

} // namespace

OperationStateManager::OperationStateManager()
    : m_operation(propPowerOperation)
{
}

void OperationStateManager::connectionStateChanged(bool connected)
{
    const QString node = Dt3Manager::nodeOf(m_operation.path());
    if (!connected) {
        close(node);
        return;
    }
    open(node);
    get(m_operation.path());
}

void OperationStateManager::wakeUp() { call(methodWakeUp, QString()); }

void OperationStateManager::update(const QString &property, const QString &value)
{
    if (property == m_operation.path())
        emit operationStateChanged(value == standbyText);
}
