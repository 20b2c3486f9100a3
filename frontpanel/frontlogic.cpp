#include "frontpanel/frontlogic.h"

#include "frontpanel/controlpanelhandler.h"
#include "frontpanel/framelayouts.h"

namespace {

bool expired(FrontEvent event, int timer) { return event.source == FrontEvent::Timer && event.code == timer; }

} // namespace

FrontLogic::FrontLogic(const std::array<ControlPanelHandler *, 3> &panels, const FrontLogicTimes &times)
    : m_panels(panels)
{
    const auto prepare = [this](QTimer &timer, std::chrono::milliseconds time, void (FrontLogic::*handler)()) {
        timer.setInterval(time);
        timer.setSingleShot(true);
        timer.setTimerType(Qt::PreciseTimer); // a coarse one fires up to 5 % early: no full hold
        connect(&timer, &QTimer::timeout, this, handler);
    };
    prepare(m_idleTimer, times.idle, &FrontLogic::idleTimeoutHandler);
    prepare(m_takeBlinkTimer, times.blink, &FrontLogic::takeBlinkTimeoutHandler);
    prepare(m_lockTimer, times.hold, &FrontLogic::lockTimeoutHandler);
    prepare(m_autotakeTimer, times.hold, &FrontLogic::autotakeTimeoutHandler);
    prepare(m_lockBlinkTimer, times.blink, &FrontLogic::lockBlinkTimeoutHandler);

    using Presets = PresetModes;
    connect(&m_presets, &Presets::loadPresetButtonPushed, this, &FrontLogic::loadPresetButtonPushed);
    connect(&m_presets, &Presets::savePresetButtonPushed, this, &FrontLogic::savePresetButtonPushed);
    connect(&m_presets, &Presets::loadPresetNumberButtonPushed, this, &FrontLogic::loadPresetNumberButtonPushed);
    connect(&m_presets, &Presets::savePresetNumberButtonPushed, this, &FrontLogic::savePresetNumberButtonPushed);
    connect(&m_presets, &Presets::presetSave, this, &FrontLogic::presetSave);
    connect(&m_presets, &Presets::presetLoad, this, &FrontLogic::presetLoad);
    connect(&m_presets, &Presets::loadPresetLeaveMode, this, &FrontLogic::loadPresetLeaveMode);
    connect(&m_presets, &Presets::savePresetLeaveMode, this, &FrontLogic::savePresetLeaveMode);
    connect(&m_presets, &Presets::loadPresetTimeout, this, &FrontLogic::loadPresetTimeout);
    connect(&m_presets, &Presets::savePresetTimeout, this, &FrontLogic::savePresetTimeout);
}

FrontLogic::~FrontLogic() = default;

void FrontLogic::setLayout(int layoutId)
{
    const auto [panel1, panel2, panel3] = m_panels;
    const PanelLayout &table = panelLayout(layoutId);
    switch (table.id) {
    case 2: m_layout = std::make_unique<Frame16Layout>(panel1); break;
    case 3: m_layout = std::make_unique<Frame16Plus4AudioLayout>(panel1, panel2); break;
    case 4: m_layout = std::make_unique<Frame24Layout>(panel1, panel2, panel3); break;
    case 5: m_layout = std::make_unique<Frame32Plus8AudioLayout>(panel1, panel2, panel3); break;
    case 6: m_layout = std::make_unique<Frame48Layout>(panel1, panel2, panel3); break;
    default: m_layout = std::make_unique<Frame8Layout>(panel1); break;
    }
    m_presets.setLayout(m_layout.get());
    m_sourceCount = table.sourceCount;
    m_destinations.setCount(table.destinationCount);
}

void FrontLogic::handleButton(int key, bool pressed) { dispatch({FrontEvent::Button, key, pressed ? 1 : 0}); }

void FrontLogic::dispatchTimer(TimerId id) { dispatch({FrontEvent::Timer, id, 0}); }

void FrontLogic::dispatch(FrontEvent event)
{
    if (m_layout->isControlLockPressed(event))
        m_lockTimer.start();
    else if (m_layout->isControlLockReleased(event))
        m_lockTimer.stop();
    if (expired(event, LockTimer))
        emit controlLockStatusChanged(!m_controlLocked);

    if (m_layout->isTakePressed(event))
        m_autotakeTimer.start();
    else if (m_layout->isTakeReleased(event))
        m_autotakeTimer.stop();
    if (expired(event, AutotakeTimer))
        emit autotakeModeChanged(!m_autotake);

    if (m_autotake)
        handleAutotake(event);
    else
        handleNormal(event);
}

void FrontLogic::handleNormal(FrontEvent event)
{
    if (expired(event, LockBlinkTimer))
        m_layout->setDestinationLockLed(0);
    if (expired(event, TakeBlinkTimer))
        m_layout->setTakeLed(0);

    if (m_layout->isDestinationLockPressed(event))
        enterDestinationLockMode();
    else if (expired(event, IdleTimer))
        goIdle();

    switch (m_state) {
    case State::Idle: handleIdle(event); break;
    case State::SelectedSource: handleSelectedSource(event); break;
    case State::SelectedDestination: handleSelectedDestination(event); break;
    case State::LockEditing: handleLockEditing(event); break;
    }
}

void FrontLogic::handleIdle(FrontEvent event)
{
    if (m_layout->isInputButton(event)) {
        const int source = m_layout->inputNumber(event);
        m_presets.pick(source);
        selectSource(source);
    } else if (m_layout->isOutputButton(event)) {
        m_presets.leave();
        selectDestination(m_layout->outputNumber(event));
    } else if (m_presets.handleButton(event)) {
        m_idleTimer.start();
    }
}

void FrontLogic::handleSelectedSource(FrontEvent event)
{
    if (m_layout->isInputButton(event)) {
        const int source = m_layout->inputNumber(event);
        if (source == m_selected && !m_presets.isOn()) {
            selectAllDestinations();
        } else {
            m_layout->clearPortLeds();
            selectSource(source);
            m_presets.pick(source);
        }
    } else if (m_presets.handleButton(event)) {
        goIdle();
    } else if (m_layout->isOutputButton(event)) {
        toggleDestination(m_layout->outputNumber(event));
    } else if (m_layout->isTakePressed(event)) {
        if (m_presets.isOn())
            m_presets.commit(m_selected);
        else
            emit connectCrosspoint(m_destinations.sourceChanges());
        finishTake();
    }
}

void FrontLogic::handleSelectedDestination(FrontEvent event)
{
    if (m_layout->isInputButton(event)) {
        m_layout->clearPortLeds();
        selectSource(m_layout->inputNumber(event));
    } else if (m_layout->isOutputButton(event)) {
        m_layout->clearPortLeds();
        selectDestination(m_layout->outputNumber(event));
    } else if (m_layout->isTakePressed(event) || m_presets.handleButton(event)) {
        goIdle();
    }
}

void FrontLogic::handleLockEditing(FrontEvent event)
{
    if (m_layout->isOutputButton(event)) {
        toggleDestinationLock(m_layout->outputNumber(event));
    } else if (m_presets.handleButton(event)) {
        goIdle();
    } else if (m_layout->isTakePressed(event)) {
        applyDestinationLocks();
        finishTake();
    }
}

/// In autotake a destination is always selected, and a source press connects at once. Timers mean nothing here.
void FrontLogic::handleAutotake(FrontEvent event)
{
    if (m_layout->isDestinationLockPressed(event)) {
        m_destinations.editLocks();
        bool &lock = m_destinations[m_selected].pendingLock;
        lock = !lock;
        applyDestinationLocks();
    } else if (m_presets.handleButton(event)) {
        m_layout->clearPortLeds();
    } else if (m_layout->isOutputButton(event)) {
        if (m_presets.isOn())
            m_presets.leave();
        m_layout->clearPortLeds();
        m_selected = m_layout->outputNumber(event);
        showDestination(m_selected);
    } else if (m_layout->isInputButton(event)) {
        const int source = m_layout->inputNumber(event);
        if (m_presets.isOn())
            m_presets.commit(source);
        else
            switchSelectedTo(source);
    }
}

void FrontLogic::goIdle()
{
    m_layout->clearPortLeds();
    m_layout->setDestinationLockLed(0);
    m_state = State::Idle;
    m_presets.timeOut();
    emit preselectAction("idle");
}

void FrontLogic::selectSource(int source)
{
    m_destinations.editSources();
    m_selected = source;
    m_layout->setInputLed(source, 1);
    if (!m_presets.isOn()) {
        for (int d = 1; d <= m_destinations.count(); ++d)
            m_layout->setOutputLed(d, m_destinations[d].source == source ? 1 : 0);
    }
    m_idleTimer.start();
    m_state = State::SelectedSource;
    emit preselectAction("selected source");
}

void FrontLogic::selectDestination(int destination)
{
    m_selected = destination;
    showDestination(destination);
    m_idleTimer.start();
    m_state = State::SelectedDestination;
    emit preselectAction("selected destination"); // the second time: showing it says so too
}

void FrontLogic::showDestination(int destination)
{
    m_layout->setOutputLed(destination, 1);
    m_layout->setInputLed(m_destinations[destination].source, 1);
    m_layout->setDestinationLockLed(m_destinations[destination].locked);
    emit preselectAction("selected destination");
}

void FrontLogic::toggleDestination(int number)
{
    Destination &destination = m_destinations[number];
    const bool routed = destination.source == m_selected;
    if (destination.locked) {
        m_layout->setDestinationLockLed(1);
        m_lockBlinkTimer.start();
    } else if (destination.pendingSource == m_selected) {
        destination.pendingSource = routed ? 0 : destination.source;
        m_layout->setOutputLed(number, 0);
        emit preselectAction("deselected destination");
    } else {
        m_layout->setOutputLed(number, routed ? 1 : 2);
        destination.pendingSource = static_cast<uint8_t>(m_selected);
        emit preselectAction("selected destination");
    }
    m_idleTimer.start();
}

void FrontLogic::selectAllDestinations()
{
    for (int d = 1; d <= m_destinations.count(); ++d) {
        Destination &destination = m_destinations[d];
        if (destination.locked)
            continue;
        destination.pendingSource = static_cast<uint8_t>(m_selected);
        if (destination.source != m_selected)
            m_layout->setOutputLed(d, 2);
    }
    m_idleTimer.start();
}

void FrontLogic::enterDestinationLockMode()
{
    m_layout->clearPortLeds();
    m_layout->setDestinationLockLed(2);
    m_destinations.editLocks();
    for (int d = 1; d <= m_destinations.count(); ++d) {
        if (m_destinations[d].locked)
            m_layout->setOutputLed(d, 1);
    }
    m_idleTimer.start();
    m_state = State::LockEditing;
}

void FrontLogic::toggleDestinationLock(int number)
{
    Destination &destination = m_destinations[number];
    const int lit = destination.locked ? 1 : 2;
    m_layout->setOutputLed(number, destination.pendingLock ? 0 : lit);
    destination.pendingLock = !destination.pendingLock;
    m_idleTimer.start();
}

void FrontLogic::applyDestinationLocks()
{
    const QString toLock = m_destinations.lockChanges(true);
    const QString toUnlock = m_destinations.lockChanges(false);
    if (!toLock.isEmpty())
        emit lockDestination(toLock);
    if (!toUnlock.isEmpty())
        emit unlockDestination(toUnlock);
}

/// Autotake: connects the source, or cuts it when it feeds the selected destination already.
void FrontLogic::switchSelectedTo(int source)
{
    m_destinations.editSources();
    Destination &destination = m_destinations[m_selected];
    if (destination.locked)
        return;
    destination.pendingSource = destination.pendingSource == source ? 0 : static_cast<uint8_t>(source);
    emit connectCrosspoint(m_destinations.sourceChanges());
}

void FrontLogic::finishTake()
{
    m_layout->setTakeLed(1);
    m_takeBlinkTimer.start();
    goIdle();
}

void FrontLogic::enterAutotake()
{
    m_layout->setTakeLed(1);
    m_selected = 1;
    showDestination(m_selected);
}

/// Disconnected, in standby, upgrading: nothing that the panel shows holds any longer.
void FrontLogic::goDark()
{
    m_layout->setControlLockLed(0);
    m_layout->setTakeLed(0);
    goIdle();
}

/// The plain picture of autotake, or of normal operation.
void FrontLogic::showMode()
{
    m_layout->clearPortLeds();
    if (m_autotake) {
        enterAutotake();
    } else {
        m_layout->setTakeLed(0);
        m_layout->setDestinationLockLed(0);
    }
}

void FrontLogic::crosspointStatusChanged(const QString &params)
{
    m_destinations.readSources(params);
    if (!m_autotake)
        return;
    for (int source = 1; source <= m_sourceCount; ++source)
        m_layout->setInputLed(source, m_destinations[m_selected].source == source ? 1 : 0);
}

void FrontLogic::destinationPortStatusChanged(const QString &params)
{
    m_destinations.readLocks(params);
    if (m_autotake)
        m_layout->setDestinationLockLed(m_destinations[m_selected].locked);
}

void FrontLogic::connectionStatusChanged(bool connected)
{
    if (!connected)
        goDark();
}

void FrontLogic::operationStateChanged(bool standby)
{
    if (standby) {
        goDark();
        return;
    }
    m_layout->setControlLockLed(m_controlLocked);
    showMode();
}

void FrontLogic::upgradeStateChanged(bool upgrading, uint8_t progress)
{
    if (!upgrading) {
        m_layout->setControlLockLed(m_controlLocked);
        showMode();
        m_upgradeShown = false;
    } else if (!m_upgradeShown) {
        goDark();
        m_layout->showProgress(1);
        m_upgradeShown = true;
    } else {
        m_layout->showProgress(progress);
    }
}

void FrontLogic::onControlLockStatusChange(bool locked)
{
    m_controlLocked = locked;
    m_layout->setControlLockLed(locked);
}

void FrontLogic::onAutotakeModeChange(bool autotake)
{
    m_autotake = autotake;
    showMode();
}
