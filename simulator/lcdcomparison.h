#pragma once

#include <QImage>

/// How far two pictures are apart.
struct LcdDifference
{
    bool sameSize = true;
    int pixels = 0;     ///< With a channel that differs by more than was allowed.
    int largest = 0;    ///< Largest difference of any channel, 0 to 255.
    double percent = 0; ///< Share of the pixels above.
};

/// @param allowed how far a channel of a pixel may be off without counting, 0 to 255. Alpha does not count.
LcdDifference compareLcd(const QImage &actual, const QImage &expected, int allowed);
