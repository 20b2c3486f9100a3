#pragma once

#include "ui/mywidget.h"

#include <QGridLayout>
#include <QPointer>
#include <QScrollArea>

/// The rows of a list, in a grid that scrolls up and down.
class MyScroll : public QScrollArea
{
    Q_OBJECT
public:
    explicit MyScroll(QWidget *parent);
    ~MyScroll() override;

    /// Of the inner widget, widget().
    QGridLayout *grid() { return &m_grid; }

    /// Prepares the grid's row @p row to hold a line: the one behind it takes the spare height.
    void openRow(int row);

    /// Moves the rows by about one. @param direction 1 for those below, -1 for those above.
    void scrollByRow(int direction);
    void scrollToTop();

public slots:
    /// The highlight has come to a widget among the rows: it stays in view, with 24 pixels above and below, also
    /// when rows around it come and go.
    void hoverEvent(QWidget *hovered);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showHovered();

    MyWidget m_rows;
    QGridLayout m_grid;
    QPointer<QWidget> m_hovered;
};
