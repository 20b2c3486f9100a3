#pragma once

#include <QPoint>

#include <array>
#include <functional>

/// The falling blocks: pieces of four cells fall into a well; full rows go, and count. Times are ticks of 20 ms.
class FallingRules
{
public:
    static constexpr int columns = 10;
    static constexpr int rows = 22;
    static constexpr int hiddenRows = 2; ///< Above the well.
    static constexpr int kinds = 7;
    static constexpr int emptyCell = 7; ///< What stands in a cell without a kind, 0 to 6.

    using Cells = std::array<QPoint, 4>;
    /// Any number; made anew for each draw of a kind.
    using Random = std::function<unsigned()>;
    enum class Direction { Left, Right, None };
    /// Stopped: the game is over, until a new one starts.
    enum class Phase { Stopped, Falling, Clearing, Waiting };

    explicit FallingRules(Random random);

    void newGame();
    void tick();

    // One step, wherever the piece can go.
    void moveBy(int column);
    /// @param sense 0 or 1, clockwise or not.
    void rotate(int sense);
    /// A key that stays down: a step at once, and more after a while. Nothing happens between two pieces.
    void hold(Direction direction);
    void letGo() { m_held = Direction::None; }
    /// The piece falls a row a tick.
    void drop() { m_fallDelay = 1; }

    Phase phase() const { return m_phase; }
    /// What is seen in a cell: a kind, or emptyCell. Cleared rows stay in sight while they vanish.
    int shownCell(int column, int row) const { return m_shown[static_cast<size_t>(row)][static_cast<size_t>(column)]; }
    /// Of the falling piece, in columns and rows of the board.
    Cells piece() const;
    int pieceKind() const { return m_kind; }
    /// It has become part of the board.
    bool isPieceHidden() const { return m_pieceHidden; }
    /// Of the next piece, from its own centre.
    const Cells &nextCells() const;
    int nextKind() const { return m_nextKind; }

    unsigned score() const { return m_score; }
    unsigned top() const { return m_top; } ///< The best one, at the last start of a game.
    unsigned lines() const { return m_lines; }
    unsigned level() const { return m_level; }

private:
    using Board = std::array<std::array<int, columns>, rows>;

    int drawKind();
    void spawn();
    bool fits(const QPoint &position, int orientation) const;
    bool move(const QPoint &by);
    void fall();
    void lock();
    void chargeShift();
    void shiftHeld();
    void clearRows();
    void raiseLevel();
    void vanish();
    void nextPiece();

    Random m_random;
    Board m_board, m_shown;
    QPoint m_position;
    int m_kind = 0, m_orientation = 0;
    int m_nextKind = 0;
    Phase m_phase = Phase::Stopped;
    bool m_pieceHidden = false;
    int m_fallDelay = 0, m_fallCounter = 0;
    Direction m_held = Direction::None;
    int m_shiftCounter = 0;
    int m_clearCounter = 0;
    int m_entryCounter = 0;
    std::array<int, 4> m_clearedRows{};
    int m_clearedCount = 0;
    unsigned m_score = 0, m_top = 0, m_lines = 0, m_level = 0, m_levelSteps = 0;
};
