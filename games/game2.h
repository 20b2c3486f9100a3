#pragma once

#include "games/fallingrules.h"
#include "games/gamescreen.h"

#include <QGraphicsRectItem>
#include <QGraphicsTextItem>

#include <vector>

/// The falling blocks.
class Game2 : public GameScreen
{
    Q_OBJECT
public:
    explicit Game2(QWidget *parent);

    void openedFrom(const DataLine &row) override;

protected:
    void startGame() override { m_rules.newGame(); }
    void tick() override { m_rules.tick(); }
    bool isOver() const override { return m_rules.phase() == FallingRules::Phase::Stopped; }
    void draw() override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    void drawPieces();
    void drawNumbers();

    using Cell = QGraphicsRectItem;

    FallingRules m_rules;
    std::array<std::array<Cell, FallingRules::columns>, FallingRules::rows - FallingRules::hiddenRows> m_cells;
    std::vector<std::unique_ptr<QGraphicsLineItem>> m_grid;
    std::array<Cell, 4> m_piece, m_preview;
    QGraphicsTextItem m_top, m_score, m_lines, m_level;
};
