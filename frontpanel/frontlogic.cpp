#include "frontpanel/frontlogic.h"

#include "frontpanel/controlpanelhandler.h"
#include "frontpanel/framelayouts.h"

namespace {

bool expired(FrontEvent event, int timer) { return event.source == FrontEvent::Timer && event.code == timer; }

} // namespace

FrontLogic::FrontLogic(const std::array<ControlPanelHandler *, 3> &panels, const FrontLogicTimes &times)
    : m_panels(panels)
{
    m_idleTimer.setInterval(times.idle);
    m_takeBlinkTimer.setInterval(times.blink);
    m_lockTimer.setInterval(times.hold);
    m_autotakeTimer.setInterval(times.hold);
    m_lockBlinkTimer.setInterval(times.blink);
    for (QTimer *timer : {&m_idleTimer, &m_takeBlinkTimer, &m_lockTimer, &m_autotakeTimer, &m_lockBlinkTimer}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer); // a coarse one fires up to 5 % early: no full hold
    }
    connect(&m_idleTimer, &QTimer::timeout, this, &FrontLogic::idleTimeoutHandler);
    connect(&m_takeBlinkTimer, &QTimer::timeout, this, &FrontLogic::takeBlinkTimeoutHandler);
    connect(&m_lockTimer, &QTimer::timeout, this, &FrontLogic::lockTimeoutHandler);
    connect(&m_autotakeTimer, &QTimer::timeout, this, &FrontLogic::autotakeTimeoutHandler);
    connect(&m_lockBlinkTimer, &QTimer::timeout, this, &FrontLogic::lockBlinkTimeoutHandler);
}

FrontLogic::~FrontLogic() = default;

void FrontLogic::setLayout(int layoutId)
{
    const auto [panel1, panel2, panel3] = m_panels;
    switch (layoutId) {
    case 2: m_layout = std::make_unique<Frame16Layout>(panel1); break;
    case 3: m_layout = std::make_unique<Frame16Plus4AudioLayout>(panel1, panel2); break;
    case 4: m_layout = std::make_unique<Frame24Layout>(panel1, panel2, panel3); break;
    case 5: m_layout = std::make_unique<Frame32Plus8AudioLayout>(panel1, panel2, panel3); break;
    case 6: m_layout = std::make_unique<Frame48Layout>(panel1, panel2, panel3); break;
    default: m_layout = std::make_unique<Frame8Layout>(panel1); break;
    }
    m_sourceCount = panelLayout(layoutId).sourceCount;
    m_destinations.setCount(panelLayout(layoutId).destinationCount);
}

void FrontLogic::handleButton(int key, bool pressed) { dispatch({FrontEvent::Button, key, pressed ? 1 : 0}); }

void FrontLogic::dispatchTimer(TimerId id) { dispatch({FrontEvent::Timer, id, 0}); }
void FrontLogic::idleTimeoutHandler() { dispatchTimer(IdleTimer); }
void FrontLogic::takeBlinkTimeoutHandler() { dispatchTimer(TakeBlinkTimer); }
void FrontLogic::lockTimeoutHandler() { dispatchTimer(LockTimer); }
void FrontLogic::autotakeTimeoutHandler() { dispatchTimer(AutotakeTimer); }
void FrontLogic::lockBlinkTimeoutHandler() { dispatchTimer(LockBlinkTimer); }

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
        emitPresetNumber(source);
        selectSource(source);
    } else if (m_layout->isOutputButton(event)) {
        leavePresetModes();
        selectDestination(m_layout->outputNumber(event));
    } else if (handlePresetButtons(event)) {
        m_idleTimer.start();
    }
}

void FrontLogic::handleSelectedSource(FrontEvent event)
{
    if (m_layout->isInputButton(event)) {
        const int source = m_layout->inputNumber(event);
        if (source == m_selected && !presetMode()) {
            selectAllDestinations();
        } else {
            m_layout->clearPortLeds();
            selectSource(source);
            emitPresetNumber(source);
        }
    } else if (handlePresetButtons(event)) {
        goIdle();
    } else if (m_layout->isOutputButton(event)) {
        toggleDestination(m_layout->outputNumber(event));
    } else if (m_layout->isTakePressed(event)) {
        if (presetMode())
            commitPreset(m_selected);
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
    } else if (m_layout->isTakePressed(event) || handlePresetButtons(event)) {
        goIdle();
    }
}

void FrontLogic::handleLockEditing(FrontEvent event)
{
    if (m_layout->isOutputButton(event)) {
        toggleDestinationLock(m_layout->outputNumber(event));
    } else if (handlePresetButtons(event)) {
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
    } else if (handlePresetButtons(event)) {
        m_layout->clearPortLeds();
    } else if (m_layout->isOutputButton(event)) {
        if (presetMode())
            leavePresetModes();
        m_layout->clearPortLeds();
        m_selected = m_layout->outputNumber(event);
        showDestination(m_selected);
    } else if (m_layout->isInputButton(event)) {
        const int source = m_layout->inputNumber(event);
        if (presetMode())
            commitPreset(source);
        else
            switchSelectedTo(source);
    }
}

/// True when the button asks for a preset screen; pressed in its own mode it leaves that mode.
bool FrontLogic::handlePresetButtons(FrontEvent event)
{
    if (m_layout->isLoadPresetPressed(event)) {
        if (!m_loadMode) {
            emit loadPresetButtonPushed();
            return true;
        }
        leavePresetModes();
        emit loadPresetLeaveMode();
        leavePresetModes(); // the screen may have set a mode again while it closed
    } else if (m_layout->isSavePresetPressed(event)) {
        if (!m_saveMode) {
            emit savePresetButtonPushed();
            return true;
        }
        leavePresetModes();
        emit savePresetLeaveMode();
        leavePresetModes();
    }
    return false;
}

/// The preset modes stay: they follow the screens.
void FrontLogic::goIdle()
{
    m_layout->clearPortLeds();
    m_layout->setDestinationLockLed(0);
    m_state = State::Idle;
    if (m_loadMode)
        emit loadPresetTimeout();
    if (m_saveMode)
        emit savePresetTimeout();
    emit preselectAction("idle");
}

void FrontLogic::selectSource(int source)
{
    m_destinations.editSources();
    m_selected = source;
    m_layout->setInputLed(source, 1);
    if (!presetMode()) {
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

/// Only in one of the preset modes, which it leaves.
void FrontLogic::commitPreset(int number)
{
    if (m_saveMode) {
        qDebug("Save preset %d", number);
        emit presetSave(number);
    } else {
        qDebug("Load preset %d", number);
        emit presetLoad(number);
    }
    leavePresetModes();
}

void FrontLogic::leavePresetModes()
{
    m_loadMode = false;
    m_saveMode = false;
    m_layout->setLoadPresetLed(0);
    m_layout->setSavePresetLed(0);
}

void FrontLogic::emitPresetNumber(int number)
{
    if (m_loadMode)
        emit loadPresetNumberButtonPushed(number);
    if (m_saveMode)
        emit savePresetNumberButtonPushed(number);
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

void FrontLogic::loadPresetMenuShowChange(bool isShown)
{
    m_loadMode = isShown;
    m_saveMode = false;
    m_layout->setLoadPresetLed(m_loadMode);
    m_layout->setSavePresetLed(0);
}

void FrontLogic::savePresetMenuShowChange(bool isShown)
{
    m_saveMode = isShown;
    m_loadMode = false;
    m_layout->setLoadPresetLed(0);
    m_layout->setSavePresetLed(m_saveMode);
}
