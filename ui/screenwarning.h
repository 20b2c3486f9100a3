#pragma once

#include "ui/screen.h"

/// A message in the middle of the LCD, and a question where it has buttons.
class ScreenWarning : public Screen
{
    Q_OBJECT
public:
    ScreenWarning(QWidget *parent, bool showSave, bool showBack);

    void setMessage(const QString &message) { m_messageLabel.setText(message); }
    void setActive(bool active) override;

    // For a notice that comes and goes by itself, and that others may cover.
    void present();
    /// Leaves at once, or as soon as it comes to the top: nobody could close it there.
    void withdraw();

private:
    void leaveIfWithdrawn();

    StyledLabel m_messageLabel;
    bool m_withdrawn = false;
};

/// A notice that the operator cannot leave, with an alert sign in its corner.
class ScreenAlert : public ScreenWarning
{
    Q_OBJECT
public:
    explicit ScreenAlert(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    StyledLabel m_alertIcon;
};

/// The device boots, or the connection to it is lost.
class ScreenReconnecting : public ScreenAlert
{
    Q_OBJECT
public:
    using ScreenAlert::ScreenAlert;
};

/// The connection did not come.
class ScreenFail : public ScreenAlert
{
    Q_OBJECT
public:
    using ScreenAlert::ScreenAlert;
};
