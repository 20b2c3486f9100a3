#include "ui/screenwarning.h"

#include "ui/styles.h"

#include <QCoreApplication>
#include <QKeyEvent>

ScreenWarning::ScreenWarning(QWidget *parent, bool showSave, bool showBack)
    : Screen(parent)
{
    m_messageLabel.setSheet(Style::message);
    m_messageLabel.setAlignment(Qt::AlignCenter);
    contentLayout()->addStretch();
    contentLayout()->addWidget(&m_messageLabel);
    contentLayout()->addStretch();
    stackContents(Contents::Centred);
    if (showSave)
        showSaveButton();
    if (showBack)
        showBackButton();
}

void ScreenWarning::present()
{
    m_withdrawn = false;
    showMe();
}

void ScreenWarning::withdraw()
{
    m_withdrawn = true;
    hideMe();
}

void ScreenWarning::setActive(bool active)
{
    // Later: whoever covered it is still leaving.
    if (active && m_withdrawn)
        QMetaObject::invokeMethod(this, &ScreenWarning::leaveIfWithdrawn, Qt::QueuedConnection);
}

void ScreenWarning::leaveIfWithdrawn()
{
    if (m_withdrawn)
        hideMe();
}

ScreenAlert::ScreenAlert(QWidget *parent)
    : ScreenWarning(parent, false, false)
    , m_alertIcon(this)
{
    m_alertIcon.setSheet(QStringLiteral("*{ font-family: FontAwesome; font-size: 15px; color: red}"));
    m_alertIcon.setText(Glyph::warningTriangle);
    m_alertIcon.move(298, 0);
}

void ScreenAlert::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete)
        QCoreApplication::exit(0);
}
