#pragma once

#include "ui/screen.h"

#include <QBasicTimer>
#include <QGraphicsScene>
#include <QGraphicsView>

/// A game that fills the whole LCD. It ticks every 20 ms for as long as the program runs, but draws only while it
/// shows.
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
    /// Moves the items to where the game has them.
    virtual void draw() = 0;

    QGraphicsScene &scene() { return m_scene; }

    /// Escape leaves, Delete ends the program. @return whether the key was one of them.
    bool handleCommonKey(int key);
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QGraphicsScene m_scene;
    QGraphicsView m_view;
    QBasicTimer m_timer;
};
