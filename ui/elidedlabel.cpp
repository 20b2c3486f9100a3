#include "ui/elidedlabel.h"

#include <QPainter>
#include <QResizeEvent>

ElidedLabel::ElidedLabel(QWidget *parent, Qt::WindowFlags flags)
    : QLabel(parent, flags)
{
}

ElidedLabel::ElidedLabel(const QString &text, QWidget *parent, Qt::WindowFlags flags)
    : ElidedLabel(text, Qt::ElideRight, parent, flags)
{
}

ElidedLabel::ElidedLabel(const QString &text, Qt::TextElideMode mode, QWidget *parent, Qt::WindowFlags flags)
    : QLabel(parent, flags)
    , m_mode(mode)
{
    setText(text);
}

void ElidedLabel::setText(const QString &text)
{
    QLabel::setText(text);
    elideTo(width());
}

void ElidedLabel::elideTo(int width)
{
    m_elidedText = QFontMetrics(font()).elidedText(text(), m_mode, width, Qt::TextShowMnemonic);
    update();
}

void ElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    elideTo(event->size().width());
}

void ElidedLabel::paintEvent(QPaintEvent *event)
{
    if (m_mode == Qt::ElideNone) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.drawText(rect(), static_cast<int>(alignment()), m_elidedText);
}
