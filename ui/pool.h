#pragma once

#include "protocol/dt3property.h"
#include "protocol/dt3sink.h"
#include "ui/editors.h"
#include "ui/mywidget.h"
#include "ui/styledlabel.h"

#include <QBasicTimer>
#include <QTimer>

class ScreenFail;
class ScreenReconnecting;
class ScreenRoot;
class ScreenWarning;

/// The LCD: the frameless 320 x 240 top-level widget that owns every screen, and shows the notices that belong to no
/// page: booting, reconnecting, failure, lock, upgrade, and the device's own messages.
class Pool : public MyWidget, public Dt3Sink
{
    Q_OBJECT
public:
    /// The one of this process. Made on first use; goes with the application object.
    static Pool *instance();

    /// Builds all screens, and shows the main menu with the boot notice over it. Called once.
    void initScreens();

    void propertyChanged(const QString &property, const QString &value) override;

public slots:
    void connectionStateChanged(bool connected);
    /// A key was pressed while the panel is locked: the warning leaves 3 s after the last one.
    void lockedWarningAction();
    /// Nothing on the LCD follows the selection on the buttons.
    void preselectAction(const QString &state);
    void upgradeStateChanged(bool upgrading, uint8_t progress);
    void factoryDefaultButtonPushed();
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
    void makeEditors();
    void makeNotices();

    Editors m_editors{};
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
