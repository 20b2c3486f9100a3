#pragma once

#include "frontpanel/destinationtable.h"
#include "frontpanel/frontevent.h"
#include "frontpanel/presetmodes.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>

class ControlPanelHandler;
class FrontLayout;

/// How long the front logic waits. The defaults are what the operator gets.
struct FrontLogicTimes
{
    std::chrono::milliseconds idle{3000}; ///< A selection is dropped after the last press.
    std::chrono::milliseconds blink{100}; ///< A flash of the Take or the destination-lock LED.
    std::chrono::milliseconds hold{1500}; ///< Holding Take or the panel lock switches autotake or the lock.
};

/// The state machine behind the front buttons: builds routing changes and destination locks, picks presets,
/// switches autotake and the panel lock, and shows all of it on the LEDs.
/// What the device has comes in through the slots and is shown; what the operator wants goes out in the signals
/// and changes nothing here until the device confirms it.
/// setLayout() comes before every other call.
class FrontLogic : public QObject
{
    Q_OBJECT

public:
    /// @param panels panel 1 to 3, borrowed.
    explicit FrontLogic(const std::array<ControlPanelHandler *, 3> &panels, const FrontLogicTimes &times = {});
    ~FrontLogic() override;

    /// @param layoutId FrameDescriptor::layoutId(); the smallest front for an id without a layout of its own.
    void setLayout(int layoutId);

    /// @param key 704 to 823.
    void handleButton(int key, bool pressed);

signals:
    /// Connects and cuts: "I7xO2;I3:-O5;". Empty when Take was pressed without a change.
    void connectCrosspoint(const QString &params);
    /// Destinations: "O3;O5;".
    void lockDestination(const QString &params);
    void unlockDestination(const QString &params);
    /// "idle", "selected source", "selected destination" or "deselected destination".
    void preselectAction(const QString &params);
    /// The panel lock that the operator wants.
    void controlLockStatusChanged(bool locked);
    /// The autotake mode that the operator wants.
    void autotakeModeChanged(bool autotake);
    void loadPresetButtonPushed();
    void savePresetButtonPushed();
    void loadPresetNumberButtonPushed(int presetNum);
    void savePresetNumberButtonPushed(int presetNum);
    void presetSave(int presetNum);
    void presetLoad(int presetNum);
    void loadPresetLeaveMode();
    void savePresetLeaveMode();
    void loadPresetTimeout();
    void savePresetTimeout();

public slots:
    /// The device's routing, one field per destination: "I4;0;...".
    void crosspointStatusChanged(const QString &params);
    /// The device's destination locks, one field per destination; "U..." and "L..." are locked.
    void destinationPortStatusChanged(const QString &params);
    void connectionStatusChanged(bool connected);
    void operationStateChanged(bool standby);
    /// @param progress position of the bar on the port LEDs, from 1.
    void upgradeStateChanged(bool upgrading, uint8_t progress);
    void onControlLockStatusChange(bool locked);
    void onAutotakeModeChange(bool autotake);
    void idleTimeoutHandler() { dispatchTimer(IdleTimer); }
    void takeBlinkTimeoutHandler() { dispatchTimer(TakeBlinkTimer); }
    void lockTimeoutHandler() { dispatchTimer(LockTimer); }
    void autotakeTimeoutHandler() { dispatchTimer(AutotakeTimer); }
    void lockBlinkTimeoutHandler() { dispatchTimer(LockBlinkTimer); }
    void loadPresetMenuShowChange(bool isShown) { m_presets.showLoadMenu(isShown); }
    void savePresetMenuShowChange(bool isShown) { m_presets.showSaveMenu(isShown); }

private:
    enum class State { Idle, SelectedSource, SelectedDestination, LockEditing };
    enum TimerId { IdleTimer, TakeBlinkTimer, LockTimer, AutotakeTimer, LockBlinkTimer };

    void dispatch(FrontEvent event);
    void dispatchTimer(TimerId id);
    void handleNormal(FrontEvent event);
    void handleIdle(FrontEvent event);
    void handleSelectedSource(FrontEvent event);
    void handleSelectedDestination(FrontEvent event);
    void handleLockEditing(FrontEvent event);
    void handleAutotake(FrontEvent event);

    void goIdle();
    void selectSource(int source);
    void selectDestination(int destination);
    void showDestination(int destination);
    void toggleDestination(int destination);
    void selectAllDestinations();
    void enterDestinationLockMode();
    void toggleDestinationLock(int destination);
    void applyDestinationLocks();
    void switchSelectedTo(int source);
    void finishTake();
    void enterAutotake();
    void goDark();
    void showMode();

    bool m_controlLocked = false;
    bool m_autotake = false;
    bool m_upgradeShown = false;
    State m_state = State::Idle;
    QTimer m_idleTimer, m_takeBlinkTimer, m_lockTimer, m_autotakeTimer, m_lockBlinkTimer;
    const std::array<ControlPanelHandler *, 3> m_panels;
    std::unique_ptr<FrontLayout> m_layout;
    int m_sourceCount = 0;
    DestinationTable m_destinations;
    int m_selected = 1; ///< The source while one is selected; the destination otherwise, and in autotake.
    PresetModes m_presets;
};
