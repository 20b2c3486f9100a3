#include "ui/styledlabel.h"

#include <QPainter>
#include <QPaintEvent>
#include <QVariant>

namespace {

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

StyledLabel::~StyledLabel() { QPixmapCache::remove(m_picture); }

void StyledLabel::setText(const QString &text) { QLabel::setText(text); }

void StyledLabel::setSheet(const QString &text)
{
    m_sheet = StyleSheet::of(text);
    setFont(m_sheet->font());
    m_drawn = {};
    if (m_sheet->alignment())
        setAlignment(*m_sheet->alignment());
    updateLook();
}

void StyledLabel::setStyledProperty(const char *name, const QVariant &value)
{
    setProperty(name, value);
    updateLook();
}

void StyledLabel::updateLook()
{
    if (!m_sheet)
        return;
    const Look look = m_sheet->look(*this);
    if (look == m_look)
        return;
    if (look.borderWidth != m_look.borderWidth) { // the layout knows a border as a frame
        setFrameShape(look.borderWidth > 0 ? QFrame::Box : QFrame::NoFrame);
        setLineWidth(look.borderWidth);
    }
    m_look = look;
    update();
}

// Lists scroll and pages slide in labels that stay as they are: shaping and drawing their texts is what takes long.
void StyledLabel::paintEvent(QPaintEvent *event)
{
    const Drawn now{text(), m_look, size(), alignment()};
    QPixmap picture;
    if (now != m_drawn || !QPixmapCache::find(m_picture, &picture)) {
        picture = draw();
        QPixmapCache::remove(m_picture);
        m_picture = QPixmapCache::insert(picture);
        m_drawn = now;
    }
    QPainter(this).drawPixmap(event->rect(), picture, event->rect());
}

QPixmap StyledLabel::draw() const
{
    QPixmap picture(size());
    QPainter painter(&picture);
    m_look.paintBox(painter, rect(), rect());
    painter.setFont(font());
    painter.setPen(m_look.color);
    const QRect place = contentsRect();
    const bool fits = wordWrap() || sizeHint().width() <= width();
    painter.drawText(place, static_cast<int>(alignment()) | Qt::TextExpandTabs | (wordWrap() ? Qt::TextWordWrap : 0),
        fits ? text() : elidedLines(text(), fontMetrics(), place.width()));
    return picture;
}
