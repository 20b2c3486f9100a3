#pragma once

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"
#include "ui/mywidget.h"
#include "ui/screens/sharedscreens.h"
#include "ui/styledlabel.h"

#include <QBasicTimer>
#include <QTimer>

class ScreenConfirmLoadPreset;
class ScreenConfirmSavePreset;
class ScreenEnterStandby;
class ScreenFail;
class ScreenLoadPreset;
class ScreenPresetWarning;
class ScreenReconnecting;
class ScreenSavePreset;
class ScreenSlider;
class ScreenWarning;

/// The LCD: the frameless 320 x 240 top-level widget that owns every screen, and shows the notices that belong to no
/// page: booting, reconnecting, failure, lock, upgrade, and the device's own messages. The preset buttons of the front
/// open and close the dialogues of the presets here.
class Pool : public MyWidget, public Dt3Sink
{
    Q_OBJECT
public:
    /// The one of this process. Made on first use; goes with the application object.
    static Pool *instance();

    /// Builds all screens, and shows the main menu with the boot notice over it. Called once.
    void initScreens();

    // The lists of presets; there after initScreens().
    ScreenLoadPreset *loadPresetScreen() const { return m_loadPreset; }
    ScreenSavePreset *savePresetScreen() const { return m_savePreset; }

    void propertyChanged(const QString &property, const QString &value) override;

public slots:
    void connectionStateChanged(bool connected);
    /// A key was pressed while the panel is locked: the warning leaves 3 s after the last one.
    void lockedWarningAction();
    /// Nothing on the LCD follows the selection on the buttons.
    void preselectAction(const QString &state);
    void upgradeStateChanged(bool upgrading, uint8_t progress);
    void factoryDefaultButtonPushed();

    // The front's preset modes: entered, a number picked, committed with Take, left again, gone idle.
    void loadPresetButtonPushed();
    void loadPresetNumberButtonPushed(int button);
    void loadPresetTakePressed(int buttonNum);
    void loadPresetLeaveMode();
    void loadPresetTimeout();
    void savePresetButtonPushed();
    void savePresetNumberButtonPushed(int button);
    void savePresetTakePressed(int buttonNum);
    void savePresetLeaveMode();
    void savePresetTimeout();

    /// No connection came for long: the address for a browser shows, kept up to date.
    void connectionTimeoutExpired();

protected:
    /// No: the focus stack alone says who has the keyboard, whatever Tab is pressed.
    bool focusNextPrevChild(bool next) override;
    void timerEvent(QTimerEvent *event) override;

private slots:
    void menuEntriesReady();

private:
    Pool();
    void makeSharedScreens();
    void makeNotices();

    SharedScreens m_shared{};
    ScreenSlider *m_slider = nullptr;
    ScreenEnterStandby *m_enterStandby = nullptr;
    ScreenConfirmLoadPreset *m_confirmLoadPreset = nullptr;
    ScreenLoadPreset *m_loadPreset = nullptr;
    ScreenPresetWarning *m_presetWarning = nullptr;
    ScreenConfirmSavePreset *m_confirmSavePreset = nullptr;
    ScreenSavePreset *m_savePreset = nullptr;
    // A number has been picked, and its question or warning shows.
    bool m_loadPresetPending = false;
    bool m_savePresetPending = false;
    ScreenWarning *m_lockedScreen = nullptr;
    QTimer m_lockTimer;
    ScreenWarning *m_upgradingScreen = nullptr;
    Dt3Property m_lcdMessage;
    StyledLabel *m_noticeLabel = nullptr; ///< A message of the device, above all screens.
    QTimer m_noticeTimer;
    ScreenReconnecting *m_bootScreen = nullptr;
    ScreenFail *m_bootFailedScreen = nullptr;
    QBasicTimer m_addressTimer;
};
