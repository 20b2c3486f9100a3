#include "games/brickrules.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr QRect ballAtStart(220, 215, 10, 10);
constexpr QRect paddleAtStart(170, 228, 100, 7);

/// Between two stretches of a line; 0 where they touch or overlap.
constexpr int gap(int start, int length, int otherStart, int otherLength)
{
    if (start >= otherStart + otherLength)
        return start - (otherStart + otherLength);
    if (start + length <= otherStart)
        return otherStart - (start + length);
    return 0;
}

} // namespace

void BrickRules::restart()
{
    for (auto &column : m_bricks)
        column.fill(true);
    m_ball = ballAtStart;
    m_paddle = paddleAtStart;
}

void BrickRules::tick()
{
    m_ball.translate(m_dx, m_dy);
    hitBrick();
    hitWalls();
    bounceOff(m_paddle);
}

/// Turns the ball where it would reach the box with its next step. False: it would not.
bool BrickRules::bounceOff(const QRect &box)
{
    const int across = gap(m_ball.x(), m_ball.width(), box.x(), box.width());
    const int down = gap(m_ball.y(), m_ball.height(), box.y(), box.height());
    const bool turnsX = down == 0 && across <= std::abs(m_dx);
    const bool turnsY = across == 0 && down <= std::abs(m_dy);
    if (turnsX)
        m_dx = -m_dx;
    if (turnsY)
        m_dy = -m_dy;
    return turnsX || turnsY;
}

/// One at most, the first in the order of columns.
void BrickRules::hitBrick()
{
    for (int column = 0; column < columns; ++column) {
        for (int row = 0; row < rows; ++row) {
            if (hasBrick(column, row) && bounceOff(brick(column, row))) {
                m_bricks[static_cast<size_t>(column)][static_cast<size_t>(row)] = false;
                return;
            }
        }
    }
}

void BrickRules::hitWalls()
{
    const int right = m_ball.x() + m_ball.width();
    const int bottom = m_ball.y() + m_ball.height();
    if (m_ball.x() + m_dx < 1 || right + m_dx > view.width() - 1)
        m_dx = -m_dx;
    if (m_ball.y() + m_dy < 1)
        m_dy = -m_dy;
    if (bottom + m_dy > view.height() - 1) {
        m_dy = -m_dy;
        restart();
    }
}

void BrickRules::movePaddle(int step)
{
    m_paddle.moveLeft(std::clamp(m_paddle.x() + step, 0, view.width() - m_paddle.width()));
}
