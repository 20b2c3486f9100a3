#include "app/wiring.h"

#include "frontpanel/controllockfilter.h"
#include "frontpanel/frontlogic.h"
#include "managers/crosspointmanager.h"
#include "managers/frontpanelstatemanager.h"
#include "managers/operationstatemanager.h"
#include "managers/presetmanager.h"
#include "managers/upgradestatemanager.h"
#include "managers/variantmanager.h"
#include "protocol/dt3manager.h"
#include "ui/navigationmanager.h"
#include "ui/pool.h"
#include "ui/screens/screenpreset.h"

void connectHouse(const House &house)
{
    Dt3Manager *dt3 = &house.dt3;
    VariantManager *variant = &house.variant;
    Pool *pool = &house.pool;
    NavigationManager *navigation = &house.navigation;
    CrosspointManager *crosspoint = &house.crosspoint;
    FrontPanelStateManager *frontPanelState = &house.frontPanelState;
    OperationStateManager *operationState = &house.operationState;
    UpgradeStateManager *upgradeState = &house.upgradeState;
    PresetManager *preset = &house.preset;
    ControlLockFilter *filter = &house.filter;
    FrontLogic *logic = &house.logic;

    const auto connect = [](auto *sender, auto signal, auto *receiver, auto slot) {
        QObject::connect(sender, signal, receiver, slot);
    };
    using Dt3 = Dt3Manager;
    using Upgrade = UpgradeStateManager;

    // clang-format off
    connect(dt3, &Dt3::connectionStateChanged, variant, &VariantManager::connectionStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, pool, &Pool::connectionStateChanged);
    connect(dt3, &Dt3::connectionTimeoutExpired, pool, &Pool::connectionTimeoutExpired);
    connect(dt3, &Dt3::connectionStateChanged, navigation, &NavigationManager::connectionStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, crosspoint, &CrosspointManager::connectionStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, frontPanelState, &FrontPanelStateManager::connectionStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, operationState, &OperationStateManager::connectionStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, upgradeState, &Upgrade::connectionStateChanged);
    connect(upgradeState, &Upgrade::upgradeStateChanged, pool, &Pool::upgradeStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, preset, &PresetManager::connectionStateChanged);

    connect(filter, &ControlLockFilter::lockedWarningAction, pool, &Pool::lockedWarningAction);
    connect(filter, &ControlLockFilter::wakeUpAction, operationState, &OperationStateManager::wakeUp);
    connect(upgradeState, &Upgrade::upgradeStateChanged, filter, &ControlLockFilter::upgradeStateChanged);
    connect(dt3, &Dt3::connectionStateChanged, filter, &ControlLockFilter::connectionStatusChanged);
    connect(dt3, &Dt3::connectionStateChanged, logic, &FrontLogic::connectionStatusChanged);
    connect(frontPanelState, &FrontPanelStateManager::controlLockStateChanged, filter, &ControlLockFilter::lockedStatusChanged);
    connect(operationState, &OperationStateManager::operationStateChanged, filter, &ControlLockFilter::operationStatusChanged);
    connect(operationState, &OperationStateManager::operationStateChanged, logic, &FrontLogic::operationStateChanged);

    connect(crosspoint, &CrosspointManager::connectionChanged, logic, &FrontLogic::crosspointStatusChanged);
    connect(crosspoint, &CrosspointManager::lockStateChanged, logic, &FrontLogic::destinationPortStatusChanged);
    connect(logic, &FrontLogic::connectCrosspoint, crosspoint, &CrosspointManager::connect);
    connect(logic, &FrontLogic::lockDestination, crosspoint, &CrosspointManager::lockDestination);
    connect(logic, &FrontLogic::unlockDestination, crosspoint, &CrosspointManager::unlockDestination);

    connect(logic, &FrontLogic::preselectAction, pool, &Pool::preselectAction);
    connect(logic, &FrontLogic::loadPresetButtonPushed, pool, &Pool::loadPresetButtonPushed);
    connect(logic, &FrontLogic::savePresetButtonPushed, pool, &Pool::savePresetButtonPushed);
    connect(logic, &FrontLogic::loadPresetNumberButtonPushed, pool, &Pool::loadPresetNumberButtonPushed);
    connect(logic, &FrontLogic::savePresetNumberButtonPushed, pool, &Pool::savePresetNumberButtonPushed);
    connect(logic, &FrontLogic::presetLoad, pool, &Pool::loadPresetTakePressed);
    connect(logic, &FrontLogic::presetSave, pool, &Pool::savePresetTakePressed);
    connect(logic, &FrontLogic::loadPresetTimeout, pool, &Pool::loadPresetTimeout);
    connect(logic, &FrontLogic::savePresetTimeout, pool, &Pool::savePresetTimeout);
    connect(logic, &FrontLogic::loadPresetLeaveMode, pool, &Pool::loadPresetLeaveMode);
    connect(logic, &FrontLogic::savePresetLeaveMode, pool, &Pool::savePresetLeaveMode);
    connect(pool->loadPresetScreen(), &ScreenLoadPreset::onShowChange, logic, &FrontLogic::loadPresetMenuShowChange);
    connect(pool->savePresetScreen(), &ScreenSavePreset::onShowChange, logic, &FrontLogic::savePresetMenuShowChange);
    connect(logic, &FrontLogic::presetLoad, preset, &PresetManager::loadPresetByButtonNum);
    connect(logic, &FrontLogic::presetSave, preset, &PresetManager::createPresetByButtonNum);

    connect(frontPanelState, &FrontPanelStateManager::controlLockStateChanged, logic, &FrontLogic::onControlLockStatusChange);
    connect(frontPanelState, &FrontPanelStateManager::autotakeModeChanged, logic, &FrontLogic::onAutotakeModeChange);
    connect(upgradeState, &Upgrade::upgradeStateChanged, logic, &FrontLogic::upgradeStateChanged);
    connect(logic, &FrontLogic::controlLockStatusChanged, frontPanelState, &FrontPanelStateManager::setControlLock);
    connect(logic, &FrontLogic::autotakeModeChanged, frontPanelState, &FrontPanelStateManager::setAutotakeMode);
    // clang-format on
}
