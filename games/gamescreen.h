#pragma once

#include "ui/screen.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QGraphicsScene>
#include <QGraphicsView>

/// A game that fills the whole LCD. It ticks every 20 ms for as long as the program runs, but draws only while it
/// shows; the ticks of a hidden one are made up for once a second, so that the processor can sleep.
class GameScreen : public Screen
{
    Q_OBJECT
public:
    void setTitle(const QString &) override { } // there is none
    /// Opening it starts a new game.
    void setActive(bool active) override;

protected:
    explicit GameScreen(QWidget *parent);

    virtual void startGame() = 0;
    virtual void tick() = 0;
    /// Such a game leaves the LCD.
    virtual bool isOver() const { return false; }
    /// Moves the items to where the game has them.
    virtual void draw() = 0;

    QGraphicsScene &scene() { return m_scene; }

    /// Escape leaves, Delete ends the program. @return whether the key was one of them.
    bool handleCommonKey(int key);
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void rest();
    void makeUpTicks();

    QGraphicsScene m_scene;
    QGraphicsView m_view;
    QBasicTimer m_timer;
    QElapsedTimer m_hidden; // since when
    qint64 m_hiddenTicks = 0;
};
