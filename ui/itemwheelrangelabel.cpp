#include "ui/itemwheelrangelabel.h"

#include <algorithm>

ItemWheelRangeLabel::ItemWheelRangeLabel(
    QWidget *parent, int minimum, int maximum, bool wrap, bool zeroPad, const QString &prefix)
    : ItemWheel(parent)
    , m_prefix(prefix)
    , m_minimum(minimum)
    , m_maximum(maximum)
    , m_zeroPad(zeroPad)
    , m_wrap(wrap)
{
}

void ItemWheelRangeLabel::setValue(const QString &text)
{
    m_value = text.toInt();
    if (!inRange()) {
        qDebug("ItemWheelRangeLabel: value(%s) is out of range determined by min(%d) and max(%d)", qUtf8Printable(text),
            m_minimum, m_maximum);
    }
    setText(m_prefix + text);
    commit();
}

void ItemWheelRangeLabel::commit()
{
    m_committedValue = m_value;
    m_committedText = text();
}

void ItemWheelRangeLabel::rewind()
{
    m_value = m_committedValue;
    setText(m_committedText);
}

void ItemWheelRangeLabel::scroll(int delta)
{
    if (!inRange())
        return;
    const qint64 n = qint64{m_maximum} - m_minimum + 1;
    const qint64 target = qint64{m_value} + delta;
    m_value = static_cast<int>(
        m_wrap ? ((target - m_minimum) % n + n) % n + m_minimum : std::clamp<qint64>(target, m_minimum, m_maximum));
    const QString number = QString::number(m_value);
    const qsizetype digits = m_zeroPad ? QString::number(m_maximum).size() : 0;
    setText(m_prefix + number.rightJustified(digits, '0'));
    emit valueChanged(m_value);
}
