#pragma once

#include "games/brickrules.h"
#include "games/gamescreen.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsRectItem>

/// The brick-breaker.
class Game : public GameScreen
{
    Q_OBJECT
public:
    explicit Game(QWidget *parent);

protected:
    void startGame() override { m_rules.restart(); }
    void tick() override { m_rules.tick(); }
    void draw() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    BrickRules m_rules;
    std::array<std::array<QGraphicsRectItem, BrickRules::rows>, BrickRules::columns> m_bricks;
    QGraphicsEllipseItem m_ball;
    QGraphicsRectItem m_paddle;
};
