#pragma once

#include <QRect>

#include <array>

/// The brick-breaker: a wall at the top, a ball that bounces, a paddle. No score and no end: a ball that is lost, and
/// a new game, bring the wall back. Lengths in pixels of the LCD, speeds in pixels per tick.
class BrickRules
{
public:
    static constexpr QSize view{320, 240};
    static constexpr int columns = 16;
    static constexpr int rows = 12;
    static constexpr QSize brickSize{20, 10};

    BrickRules() { restart(); }

    /// The whole wall, ball and paddle at their places. The ball keeps the direction it flies in.
    void restart();
    void tick();
    /// Stops at the edges. @param step to the right, negative to the left.
    void movePaddle(int step);

    bool hasBrick(int column, int row) const { return m_bricks[static_cast<size_t>(column)][static_cast<size_t>(row)]; }
    static QRect brick(int column, int row)
    {
        return {QPoint(column * brickSize.width(), row * brickSize.height()), brickSize};
    }
    const QRect &ball() const { return m_ball; }
    const QRect &paddle() const { return m_paddle; }

private:
    bool bounceOff(const QRect &box);
    void hitBrick();
    void hitWalls();

    std::array<std::array<bool, rows>, columns> m_bricks;
    QRect m_ball, m_paddle;
    int m_dx = 3, m_dy = 1;
};
