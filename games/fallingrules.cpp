#include "games/fallingrules.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr QPoint spawnPosition(5, 2);
constexpr unsigned firstLevel = 8;
constexpr int firstFall = 80;
constexpr int shiftCharged = 16, shiftRepeated = 10;
constexpr int clearTicks = 18, vanishTicks = 4;
constexpr unsigned mostScore = 999999;

// clang-format off
constexpr FallingRules::Cells orientations[] = {
    {{{-1, 0}, {0, 0}, {1, 0}, {0, 1}}}, // T
    {{{0, -1}, {0, 0}, {0, 1}, {-1, 0}}},
    {{{0, -1}, {0, 0}, {0, 1}, {1, 0}}},
    {{{0, -1}, {0, 0}, {-1, 0}, {1, 0}}},
    {{{-2, 0}, {-1, 0}, {0, 0}, {1, 0}}}, // I
    {{{0, -2}, {0, -1}, {0, 0}, {0, 1}}},
    {{{-1, 0}, {0, 0}, {-1, 1}, {0, 1}}}, // O
    {{{-1, 0}, {0, 0}, {0, 1}, {1, 1}}}, // Z
    {{{1, -1}, {0, 0}, {1, 0}, {0, 1}}},
    {{{0, 0}, {1, 0}, {0, 1}, {-1, 1}}}, // S
    {{{0, -1}, {0, 0}, {1, 0}, {1, 1}}},
    {{{-1, 0}, {0, 0}, {1, 0}, {-1, 1}}}, // L
    {{{-1, -1}, {0, -1}, {0, 0}, {0, 1}}},
    {{{0, -1}, {0, 0}, {0, 1}, {1, 1}}},
    {{{1, -1}, {-1, 0}, {0, 0}, {1, 0}}},
    {{{-1, 0}, {0, 0}, {1, 0}, {1, 1}}}, // J
    {{{0, -1}, {0, 0}, {-1, 1}, {0, 1}}},
    {{{0, -1}, {1, -1}, {0, 0}, {0, 1}}},
    {{{-1, -1}, {-1, 0}, {0, 0}, {1, 0}}},
};
/// By orientation and sense.
constexpr int rotations[][2] = {
    {2, 1}, {0, 3}, {3, 0}, {1, 2}, {5, 5}, {4, 4}, {6, 6}, {8, 8}, {7, 7}, {10, 10}, {9, 9},
    {13, 12}, {11, 14}, {14, 11}, {12, 13}, {17, 16}, {15, 18}, {18, 15}, {16, 17},
};
/// By kind: T, I, O, Z, S, L, J.
constexpr int spawnOrientations[FallingRules::kinds] = {0, 4, 6, 7, 9, 11, 15};
/// Ticks per row, by level; from the last one on it stays.
constexpr int gravity[] = {
    48, 43, 38, 33, 28, 23, 18, 13, 8, 6, 5, 5, 5, 4, 4, 4, 3, 3, 3, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 1, 1,
};
/// By the number of rows cleared at once.
constexpr unsigned points[] = {0, 40, 100, 300, 1200};
// clang-format on
static_assert(std::size(orientations) == std::size(rotations) && std::size(gravity) == 31);

int fallDelayOf(unsigned level) { return gravity[std::min<size_t>(level, std::size(gravity) - 1)]; }

template <typename Board> void clear(Board &board)
{
    for (auto &row : board)
        row.fill(FallingRules::emptyCell);
}

} // namespace

FallingRules::FallingRules(Random random)
    : m_random(std::move(random))
{
    clear(m_board);
    clear(m_shown);
    m_nextKind = drawKind();
    nextPiece();
    newGame();
}

int FallingRules::drawKind()
{
    const auto draw = [this] { return static_cast<int>(m_random() % kinds); };
    const int kind = draw();
    return kind == m_kind ? draw() : kind;
}

void FallingRules::newGame()
{
    m_position = spawnPosition;
    clear(m_board);
    clear(m_shown);
    m_clearCounter = 0;
    m_entryCounter = 0;
    m_clearedCount = 0;
    m_fallDelay = fallDelayOf(firstLevel);
    m_fallCounter = firstFall;
    m_level = firstLevel;
    m_top = std::max(m_top, m_score);
    m_score = 0;
    m_lines = 0;
    m_levelSteps = 0;
    m_shiftCounter = 0;
    m_held = Direction::None;
    m_pieceHidden = false;
    m_phase = Phase::Falling;
}

void FallingRules::tick()
{
    switch (m_phase) {
    case Phase::Stopped: break;
    case Phase::Falling:
        shiftHeld();
        fall();
        break;
    case Phase::Clearing:
        if (m_clearCounter == 0) {
            m_phase = Phase::Waiting;
            break;
        }
        chargeShift();
        vanish();
        --m_clearCounter;
        break;
    case Phase::Waiting:
        if (m_entryCounter == 0) {
            nextPiece();
            break;
        }
        chargeShift();
        --m_entryCounter;
        break;
    }
}

FallingRules::Cells FallingRules::piece() const
{
    Cells cells = orientations[m_orientation];
    for (QPoint &cell : cells)
        cell += m_position;
    return cells;
}

const FallingRules::Cells &FallingRules::nextCells() const { return orientations[spawnOrientations[m_nextKind]]; }

bool FallingRules::fits(const QPoint &position, int orientation) const
{
    return std::all_of(orientations[orientation].begin(), orientations[orientation].end(), [&](const QPoint &offset) {
        const QPoint cell = position + offset;
        return cell.x() >= 0 && cell.x() < columns && cell.y() >= 0 && cell.y() < rows
            && m_board[static_cast<size_t>(cell.y())][static_cast<size_t>(cell.x())] == emptyCell;
    });
}

bool FallingRules::move(const QPoint &by)
{
    if (!fits(m_position + by, m_orientation))
        return false;
    m_position += by;
    return true;
}

void FallingRules::moveBy(int column) { move({column, 0}); }

void FallingRules::rotate(int sense)
{
    const int turned = rotations[m_orientation][sense];
    if (fits(m_position, turned))
        m_orientation = turned;
}

void FallingRules::hold(Direction direction)
{
    if (m_phase == Phase::Clearing || m_phase == Phase::Waiting)
        return;
    m_shiftCounter = move({direction == Direction::Left ? -1 : 1, 0}) ? 0 : shiftCharged;
    m_held = direction;
}

void FallingRules::chargeShift()
{
    if (m_held != Direction::None)
        m_shiftCounter = std::min(m_shiftCounter + 1, shiftCharged);
}

void FallingRules::shiftHeld()
{
    if (m_held == Direction::None)
        return;
    if (m_shiftCounter < shiftCharged)
        ++m_shiftCounter;
    else if (move({m_held == Direction::Left ? -1 : 1, 0}))
        m_shiftCounter = shiftRepeated;
}

void FallingRules::fall()
{
    if (--m_fallCounter > 0)
        return;
    m_fallCounter = m_fallDelay;
    if (!move({0, 1}))
        lock();
}

void FallingRules::lock()
{
    for (const QPoint &cell : piece()) {
        m_board[static_cast<size_t>(cell.y())][static_cast<size_t>(cell.x())] = m_kind;
        m_shown[static_cast<size_t>(cell.y())][static_cast<size_t>(cell.x())] = m_kind;
    }
    m_entryCounter = ((23 - m_position.y()) / 4 + 5) * 2; // the higher it comes to rest the longer
    m_phase = Phase::Waiting;
    m_pieceHidden = true;
    clearRows();
}

void FallingRules::clearRows()
{
    m_clearedCount = 0;
    const int last = std::min(m_position.y() + 1, rows - 1);
    for (int row = std::max(m_position.y() - 2, 0); row <= last; ++row) {
        const auto &cells = m_board[static_cast<size_t>(row)];
        if (std::find(cells.begin(), cells.end(), emptyCell) == cells.end())
            m_clearedRows[static_cast<size_t>(m_clearedCount++)] = row;
    }
    if (m_clearedCount == 0)
        return;
    m_lines += static_cast<unsigned>(m_clearedCount);
    raiseLevel();
    m_score = std::min(m_score + points[m_clearedCount] * (m_level + 1), mostScore);
    for (int i = 0; i < m_clearedCount; ++i) { // from the top, so that those below stay where they are
        const auto row = m_board.begin() + m_clearedRows[static_cast<size_t>(i)];
        std::rotate(m_board.begin(), row, row + 1);
        m_board.front().fill(emptyCell);
    }
    m_clearCounter = clearTicks;
    m_phase = Phase::Clearing;
}

/// A level for every ten lines, from 90 on; one at a time.
void FallingRules::raiseLevel()
{
    const unsigned tens = m_lines / 10 % 256;
    if (m_levelSteps >= tens)
        return;
    ++m_levelSteps;
    const unsigned decimalDigitsAsHex = (tens + tens / 10 * 6) % 256;
    if (m_level < decimalDigitsAsHex)
        ++m_level;
}

/// Full rows go from the middle to both sides.
void FallingRules::vanish()
{
    const int done = clearTicks - m_clearCounter;
    if (done % vanishTicks != 0)
        return;
    const auto out = static_cast<size_t>(done / vanishTicks);
    for (int i = 0; i < m_clearedCount; ++i) {
        auto &row = m_shown[static_cast<size_t>(m_clearedRows[static_cast<size_t>(i)])];
        row[columns / 2 - 1 - out] = emptyCell;
        row[columns / 2 + out] = emptyCell;
    }
}

void FallingRules::nextPiece()
{
    m_kind = m_nextKind;
    m_orientation = spawnOrientations[m_kind];
    m_nextKind = drawKind();
    spawn();
    if (m_clearedCount > 0)
        m_shown = m_board;
}

void FallingRules::spawn()
{
    m_position = spawnPosition;
    m_pieceHidden = false;
    m_fallDelay = fallDelayOf(m_level);
    if (fits(m_position, m_orientation)) {
        m_phase = Phase::Falling;
    } else {
        m_phase = Phase::Stopped;
        m_held = Direction::None;
    }
}
