#include "simulator/lcdcomparison.h"

#include <algorithm>
#include <cstdlib>

LcdDifference compareLcd(const QImage &actual, const QImage &expected, int allowed)
{
    LcdDifference difference;
    if (actual.size() != expected.size()) {
        difference.sameSize = false;
        return difference;
    }
    const QImage a = actual.convertToFormat(QImage::Format_RGB32);
    const QImage b = expected.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < a.height(); ++y) {
        const auto *rowA = reinterpret_cast<const QRgb *>(a.constScanLine(y));
        const auto *rowB = reinterpret_cast<const QRgb *>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int off = std::max({std::abs(qRed(rowA[x]) - qRed(rowB[x])),
                std::abs(qGreen(rowA[x]) - qGreen(rowB[x])), std::abs(qBlue(rowA[x]) - qBlue(rowB[x]))});
            difference.largest = std::max(difference.largest, off);
            difference.pixels += off > allowed;
        }
    }
    if (difference.pixels > 0)
        difference.percent = 100.0 * difference.pixels / (a.width() * a.height());
    return difference;
}
