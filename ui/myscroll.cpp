#include "ui/myscroll.h"

#include "ui/interfaceitem.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QVariant>

namespace {

constexpr int rowStep = 32; // pixels, a line of text and the space under it

constexpr int barWidth = 6;

/// The bar of a list, which nobody can grasp: it shows where in the list we are.
class ScrollBar : public QScrollBar
{
public:
    explicit ScrollBar(QWidget *area)
        : QScrollBar(Qt::Vertical, area)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    QSize sizeHint() const override { return {barWidth, barWidth}; } // empty, it would not be shown

protected:
    void paintEvent(QPaintEvent *) override
    {
        const QRect groove = rect().adjusted(1, 1, -1, -1);
        const int handle = groove.height() * pageStep() / (maximum() + pageStep());
        const int top = QStyle::sliderPositionFromValue(0, maximum(), value(), groove.height() - handle);
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0x2a2a2a));
        painter.fillRect(groove.left(), groove.top() + top, groove.width(), handle, QColor(0x5e5e5e));
    }
};

} // namespace

MyScroll::MyScroll(QWidget *parent)
    : QScrollArea(parent)
    , m_grid(&m_rows)
{
    m_grid.setContentsMargins(0, 0, 0, 0);
    m_grid.setSpacing(8);
    setVerticalScrollBar(new ScrollBar(this)); // the area's
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setWidget(&m_rows);
    setWidgetResizable(true);
}

MyScroll::~MyScroll() { takeWidget(); }

void MyScroll::resizeEvent(QResizeEvent *event)
{
    m_rows.setMaximumWidth(viewport()->width()); // long texts are squeezed, which elides them, instead of cut off
    QScrollArea::resizeEvent(event);
}

void MyScroll::openRow(int row)
{
    m_grid.setRowStretch(row, 0);
    m_grid.setRowStretch(row + 1, 1);
}

void MyScroll::scrollByRow(int direction)
{
    verticalScrollBar()->setValue(verticalScrollBar()->value() + direction * rowStep);
}

void MyScroll::scrollToTop() { verticalScrollBar()->setValue(0); }

void MyScroll::hoverEvent(QWidget *hovered)
{
    m_hovered = hovered;
    showHovered();
}

void MyScroll::showHovered()
{
    if (!m_hovered || !isVisible() // when it comes, it is looked at again
        || m_hovered->property(InterfaceItem::stateProperty) != QLatin1StringView(InterfaceItem::hoveredState))
        return;
    m_grid.activate(); // rows that have just come have no place yet
    ensureWidgetVisible(m_hovered, 0, 24);
}

bool MyScroll::eventFilter(QObject *watched, QEvent *event)
{
    const bool filtered = QScrollArea::eventFilter(watched, event);
    if (watched == &m_rows
        && (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize || event->type() == QEvent::Show))
        showHovered();
    return filtered;
}
