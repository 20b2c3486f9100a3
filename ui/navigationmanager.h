#pragma once

#include <QList>
#include <QObject>

class Screen;

/// The open screens, one over the other, and the widgets that have and had the keyboard. The encoder's keys go to
/// the widget with the focus, so the second stack decides who answers the knob: the top screen, or an item of it
/// that is being edited.
///
/// Screens and widgets are borrowed; one that is destroyed is out of both stacks. No screen and no widget stands
/// in its stack twice: what is pushed again moves to the top.
class NavigationManager : public QObject
{
    Q_OBJECT
public:
    /// The one of this process. Made on first use; goes with the application object.
    static NavigationManager *instance();

    /// Slides a screen in over the others. Nothing happens where it is the top already.
    void push(Screen *screen);
    /// Slides the top screen out. Nothing happens for one that is not the top, nor for the last one.
    void pop(Screen *screen);
    /// Whether it is the visible one.
    bool isTop(const Screen *screen) const;

    /// Gives a widget the keyboard.
    void pushFocus(QWidget *widget);
    /// Gives the keyboard back to who had it before. Nothing happens where the widget is not the last to have
    /// taken it.
    void popFocus(QWidget *widget);

public slots:
    /// The top screen fetches its values again and renews its subscriptions when the connection is back.
    void connectionStateChanged(bool connected);

private:
    using QObject::QObject;

    void dropFocus(const Screen *screen);
    void focusLast();
    void forgetScreen(const QObject *gone);
    void forgetWidget(const QObject *gone);

    QList<Screen *> m_screens;
    QList<QWidget *> m_focusStack;
};
