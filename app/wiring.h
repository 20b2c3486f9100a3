#pragma once

class ControlLockFilter;
class CrosspointManager;
class Dt3Manager;
class FrontLogic;
class FrontPanelStateManager;
class NavigationManager;
class OperationStateManager;
class Pool;
class PresetManager;
class UpgradeStateManager;
class VariantManager;

/// Everybody who is connected with somebody. All borrowed; they live until the event loop has ended.
struct House
{
    Dt3Manager &dt3;
    VariantManager &variant;
    Pool &pool;
    NavigationManager &navigation;
    CrosspointManager &crosspoint;
    FrontPanelStateManager &frontPanelState;
    OperationStateManager &operationState;
    UpgradeStateManager &upgradeState;
    PresetManager &preset;
    ControlLockFilter &filter;
    FrontLogic &logic;
};

/// Makes all connections between the rooms. A signal reaches its receivers in the order they stand here.
void connectHouse(const House &house);
