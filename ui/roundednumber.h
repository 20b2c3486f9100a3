#pragma once

#include <QString>

#include <cmath>

/// A device's number as a whole one, halves away from zero; what is no number stays as it is.
inline QString roundedNumber(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return text;
    return QString::number(std::round(number) + 0.0, 'f', 0); // 0.0: no "-0"
}
