#include "managers/crosspointmanager.h"

#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"

CrosspointManager::CrosspointManager()
    : m_portStatus(propXpDestinationPortStatus)
    , m_connectionStatus(propXpDestinationConnectionStatus)
{
}

void CrosspointManager::connectionStateChanged(bool connected)
{
    const QString connectionNode = Dt3Manager::nodeOf(m_connectionStatus.path());
    const QString portNode = Dt3Manager::nodeOf(m_portStatus.path());
    if (!connected) {
        close(connectionNode);
        close(portNode);
        return;
    }
    open(connectionNode); // before the GETs: a change in between must not slip past us
    open(portNode);
    get(m_connectionStatus.path());
    get(m_portStatus.path());
}

void CrosspointManager::connect(const QString &params) { call(methodXpConnect, params); }

void CrosspointManager::lockDestination(const QString &params) { call(methodXpLockDestination, params); }

void CrosspointManager::unlockDestination(const QString &params) { call(methodXpUnlockDestination, params); }

void CrosspointManager::update(const QString &property, const QString &value)
{
    if (property == m_connectionStatus.path())
        emit connectionChanged(value);
    if (property == m_portStatus.path())
        emit lockStateChanged(value);
}
