#include "games/game.h"

#include "ui/keys.h"

#include <QPen>

Game::Game(QWidget *parent)
    : GameScreen(parent)
    , m_ball(m_rules.ball())
    , m_paddle(m_rules.paddle())
{
    constexpr Qt::GlobalColor stripes[] = {Qt::red, Qt::green, Qt::blue, Qt::yellow};
    const auto add = [this](QAbstractGraphicsShapeItem &item, Qt::GlobalColor color) {
        item.setPen(QPen(Qt::black, 0));
        item.setBrush(color);
        scene().addItem(&item);
    };
    for (int column = 0; column < BrickRules::columns; ++column) {
        for (int row = 0; row < BrickRules::rows; ++row) {
            QGraphicsRectItem &brick = m_bricks[static_cast<size_t>(column)][static_cast<size_t>(row)];
            brick.setRect(BrickRules::brick(column, row));
            add(brick, stripes[(column + row) % 4]);
        }
    }
    add(m_ball, Qt::gray);
    add(m_paddle, Qt::gray);
}

void Game::draw()
{
    for (int column = 0; column < BrickRules::columns; ++column) {
        for (int row = 0; row < BrickRules::rows; ++row)
            m_bricks[static_cast<size_t>(column)][static_cast<size_t>(row)].setVisible(m_rules.hasBrick(column, row));
    }
    m_ball.setPos(m_rules.ball().topLeft() - m_ball.rect().topLeft());
    m_paddle.setPos(m_rules.paddle().topLeft() - m_paddle.rect().topLeft());
}

void Game::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (isConfirm(key))
        savePressed();
    else if (isPreviousKey(key))
        m_rules.movePaddle(isFastKey(key) ? -10 : -1);
    else if (isNextKey(key))
        m_rules.movePaddle(isFastKey(key) ? 10 : 1);
    else if (!handleCommonKey(key))
        event->ignore();
}
