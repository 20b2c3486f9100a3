#include "ui/navigationmanager.h"

#include "ui/screen.h"

#include <QCoreApplication>
#include <QPointer>

NavigationManager *NavigationManager::instance()
{
    static QPointer<NavigationManager> self;
    if (!self) {
        self = new NavigationManager; // owned by the post routine
        qAddPostRoutine([] { delete self.data(); });
    }
    return self;
}

void NavigationManager::push(Screen *screen)
{
    if (isTop(screen))
        return;
    Screen *previous = m_screens.isEmpty() ? nullptr : m_screens.last();
    m_screens.removeAll(screen);
    m_screens.append(screen);
    connect(screen, &QObject::destroyed, this, &NavigationManager::forgetScreen, Qt::UniqueConnection);

    screen->prepareToOpen();
    if (previous) {
        screen->stackUnder(previous);
        previous->stackUnder(screen);
    }
    dropFocus(screen);
    pushFocus(screen);
    if (previous)
        previous->setActive(false);
    screen->setActive(true);
    screen->slideIn(previous);
}

void NavigationManager::pop(Screen *screen)
{
    if (m_screens.size() < 2 || !isTop(screen))
        return;
    m_screens.removeLast();
    Screen *next = m_screens.last();

    screen->stopSlide();
    next->setVisible(true);
    next->stackUnder(screen);
    screen->setActive(false);
    dropFocus(screen);
    focusLast();
    next->setActive(true);
    screen->slideOut();
}

bool NavigationManager::isTop(const Screen *screen) const { return !m_screens.isEmpty() && m_screens.last() == screen; }

/// An item that is being edited leaves with its screen.
void NavigationManager::dropFocus(const Screen *screen)
{
    m_focusStack.removeIf([screen](const QWidget *widget) { return screen->isAncestorOf(widget); }); // itself included
}

void NavigationManager::focusLast()
{
    if (!m_focusStack.isEmpty())
        m_focusStack.last()->setFocus(Qt::OtherFocusReason);
}

void NavigationManager::pushFocus(QWidget *widget)
{
    widget->setFocus(Qt::OtherFocusReason);
    m_focusStack.removeAll(widget);
    m_focusStack.append(widget);
    connect(widget, &QObject::destroyed, this, &NavigationManager::forgetWidget, Qt::UniqueConnection);
}

void NavigationManager::popFocus(QWidget *widget)
{
    if (m_focusStack.isEmpty() || m_focusStack.last() != widget)
        return;
    m_focusStack.removeLast();
    focusLast();
}

void NavigationManager::connectionStateChanged(bool connected)
{
    if (connected && !m_screens.isEmpty())
        m_screens.last()->reactivate();
}

// What is left of them is a QObject: they are found by their address alone.
void NavigationManager::forgetScreen(const QObject *gone)
{
    m_screens.removeIf([gone](const Screen *screen) { return screen == gone; });
}

void NavigationManager::forgetWidget(const QObject *gone)
{
    m_focusStack.removeIf([gone](const QWidget *widget) { return widget == gone; });
    focusLast();
}
