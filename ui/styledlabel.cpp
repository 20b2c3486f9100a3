#include "ui/styledlabel.h"

#include <QPainter>
#include <QPaintEvent>
#include <QVariant>

namespace {

constexpr int sideBearings = 3; // pixels, of two digits in the fonts of the menu

QString elidedLines(const QString &text, const QFontMetrics &metrics, int width)
{
    QStringList lines = text.split('\n');
    for (QString &line : lines)
        line = metrics.elidedText(line, Qt::ElideRight, width, Qt::TextExpandTabs);
    return lines.join('\n');
}

} // namespace

StyledLabel::StyledLabel(QWidget *parent)
    : QLabel(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent); // nothing is painted behind it
    setTextFormat(Qt::PlainText);          // a device's "<b>" is a name, not markup
    setFocusPolicy(Qt::NoFocus);           // the focus stack decides, not Qt's tab order
}

void StyledLabel::setText(const QString &text) { QLabel::setText(text); }

void StyledLabel::setSheet(const QString &text)
{
    m_look.setSheet(text);
    setFont(m_look.sheet()->font());
    if (const auto &alignment = m_look.sheet()->alignment())
        setAlignment(*alignment);
    updateLook();
}

void StyledLabel::setStyledProperty(const char *name, const QVariant &value)
{
    setProperty(name, value);
    updateLook();
}

void StyledLabel::updateLook()
{
    if (!m_look.update(*this))
        return;
    if (m_look->borderWidth != frameWidth()) { // the layout knows a border as a frame
        setFrameShape(m_look->borderWidth > 0 ? QFrame::Box : QFrame::NoFrame);
        setLineWidth(m_look->borderWidth);
    }
    update();
}

void StyledLabel::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_look->paintBox(painter, rect(), event->region());
    painter.setPen(m_look->color);
    const QRect place = contentsRect();
    // A centred text may stick out by what its first and last letter leave free.
    const int slack = alignment() & Qt::AlignHCenter ? sideBearings : 0;
    const bool fits = wordWrap() || sizeHint().width() <= width() + slack;
    painter.drawText(place, static_cast<int>(alignment()) | Qt::TextExpandTabs | (wordWrap() ? Qt::TextWordWrap : 0),
        fits ? text() : elidedLines(text(), fontMetrics(), place.width()));
}
