#pragma once

#include "ui/itemwheel.h"

/// A wheel of whole numbers.
class ItemWheelRangeLabel : public ItemWheel
{
    Q_OBJECT
public:
    /// @param wrap whether the minimum follows the maximum.
    /// @param zeroPad whether a number that was turned to has as many digits as the maximum.
    /// @param prefix shown in front of the number.
    ItemWheelRangeLabel(QWidget *parent, int minimum, int maximum, bool wrap, bool zeroPad, const QString &prefix);

    /// Shows a number as the device wrote it; logged where it is out of range, and the wheel then does not turn.
    void setValue(const QString &text);

    void scroll(int delta) override;

signals:
    /// Also where the end was reached and the number stayed.
    void valueChanged(int newValue);

protected:
    void commit() override;
    void rewind() override;

private:
    bool inRange() const { return m_value >= m_minimum && m_value <= m_maximum; }

    const QString m_prefix;
    const int m_minimum;
    const int m_maximum;
    const bool m_zeroPad;
    const bool m_wrap;
    int m_value = 0;
    int m_committedValue = 0;
    QString m_committedText; ///< As shown, with the prefix.
};
