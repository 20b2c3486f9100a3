#include "games/game2.h"

#include "ui/keys.h"

#include <QKeyEvent>
#include <QPen>
#include <QTime>

#include <cstdlib>

namespace {

constexpr int cellSize = 12; // pixels
constexpr int wellWidth = FallingRules::columns * cellSize;
constexpr int wellRows = FallingRules::rows - FallingRules::hiddenRows;
constexpr int wellHeight = wellRows * cellSize;
constexpr QPoint previewOrigin(150, 120);
constexpr int textLeft = 125;

/// By kind, and nothing.
constexpr QRgb colors[] = {qRgb(175, 41, 138), qRgb(15, 155, 215), qRgb(227, 159, 2), qRgb(215, 15, 55),
    qRgb(89, 177, 1), qRgb(227, 91, 2), qRgb(33, 65, 198)};
static_assert(std::size(colors) == FallingRules::kinds);

unsigned randomOfTheMillisecond()
{
    std::srand(static_cast<unsigned>(QTime::currentTime().msec()));
    return static_cast<unsigned>(std::rand()); // NOLINT(cert-msc30-c,cert-msc50-cpp): it is a game
}

QBrush brushOf(int kind) { return kind == FallingRules::emptyCell ? QBrush(Qt::black) : QBrush(QColor(colors[kind])); }

/// Of a cell in the scene, from its column and row in the board.
QPoint placeOf(const QPoint &cell) { return (cell - QPoint(0, FallingRules::hiddenRows)) * cellSize; }

void setNumber(QGraphicsTextItem &item, const char *name, unsigned number)
{
    const QString text = QStringLiteral("%1\n%2").arg(QLatin1StringView(name)).arg(number);
    if (item.toPlainText() != text)
        item.setPlainText(text);
}

} // namespace

Game2::Game2(QWidget *parent)
    : GameScreen(parent)
    , m_rules(randomOfTheMillisecond)
{
    const auto addCell = [this](Cell &cell, const QPoint &place) {
        cell.setRect(0, 0, cellSize, cellSize);
        cell.setPos(place);
        cell.setPen(QPen(Qt::black, 0));
        scene().addItem(&cell);
    };
    for (int row = 0; row < wellRows; ++row) {
        for (int column = 0; column < FallingRules::columns; ++column)
            addCell(m_cells[static_cast<size_t>(row)][static_cast<size_t>(column)], QPoint(column, row) * cellSize);
    }
    const auto addLine = [this](const QLine &line) {
        auto &item = m_grid.emplace_back(std::make_unique<QGraphicsLineItem>(line));
        item->setPen(QPen(QColor(40, 40, 40)));
        scene().addItem(item.get());
    };
    for (int x = 0; x <= wellWidth; x += cellSize)
        addLine({x, 0, x, wellHeight});
    for (int y = 0; y <= wellHeight; y += cellSize)
        addLine({0, y, wellWidth, y});
    for (auto *cells : {&m_piece, &m_preview}) {
        for (Cell &cell : *cells)
            addCell(cell, {});
    }
    QFont font(QStringLiteral("RobotoMedium"));
    font.setPixelSize(14);
    const struct
    {
        QGraphicsTextItem &item;
        int y;
    } texts[] = {{m_top, 0}, {m_score, 40}, {m_lines, 120}, {m_level, 160}};
    for (const auto &text : texts) {
        text.item.setPos(textLeft, text.y);
        text.item.setFont(font);
        text.item.setDefaultTextColor(Qt::white);
        scene().addItem(&text.item);
    }
}

void Game2::openedFrom(const DataLine &) { startGame(); }

void Game2::draw()
{
    for (int row = 0; row < wellRows; ++row) {
        for (int column = 0; column < FallingRules::columns; ++column) {
            const QBrush brush = brushOf(m_rules.shownCell(column, row + FallingRules::hiddenRows));
            m_cells[static_cast<size_t>(row)][static_cast<size_t>(column)].setBrush(brush); // repaints only a new one
        }
    }
    drawPieces();
    drawNumbers();
}

void Game2::drawPieces()
{
    const FallingRules::Cells piece = m_rules.piece();
    for (size_t i = 0; i < piece.size(); ++i) {
        m_piece[i].setPos(placeOf(piece[i]));
        m_piece[i].setBrush(brushOf(m_rules.pieceKind()));
        m_piece[i].setOpacity(m_rules.isPieceHidden() ? 0.0 : 1.0);
        m_preview[i].setPos(previewOrigin + placeOf(m_rules.nextCells()[i]));
        m_preview[i].setBrush(brushOf(m_rules.nextKind()));
    }
}

void Game2::drawNumbers()
{
    setNumber(m_top, "top", m_rules.top());
    setNumber(m_score, "score", m_rules.score());
    setNumber(m_lines, "lines", m_rules.lines());
    setNumber(m_level, "level", m_rules.level());
}

void Game2::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Y:
    case Qt::Key_Return: m_rules.rotate(0); break;
    case Qt::Key_X: m_rules.rotate(1); break;
    case Qt::Key_A:
    case Qt::Key_Q: m_rules.moveBy(-1); break;
    case Qt::Key_D:
    case Qt::Key_E: m_rules.moveBy(1); break;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (!event->isAutoRepeat())
            m_rules.hold(event->key() == Qt::Key_Left ? FallingRules::Direction::Left : FallingRules::Direction::Right);
        break;
    case Qt::Key_Down: m_rules.drop(); break;
    default:
        if (!handleCommonKey(event->key()))
            event->ignore();
    }
    draw();
}

void Game2::keyReleaseEvent(QKeyEvent *event)
{
    const bool held = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (held && !event->isAutoRepeat())
        m_rules.letGo();
    else
        event->setAccepted(held);
}
