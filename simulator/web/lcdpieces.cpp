#include "simulator/web/lcdpieces.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>

#include <cstring>

namespace {

constexpr int tile = 16;
/// Every piece costs a message and a PNG's overhead.
constexpr qsizetype mostRectangles = 8;
/// Of Qt's PNG writer: little work, as the machine is the person's own.
constexpr int pngQuality = 80;

bool tileDiffers(const QImage &before, const QImage &after, const QRect &place)
{
    for (int y = place.top(); y <= place.bottom(); ++y) {
        const auto *old = reinterpret_cast<const QRgb *>(before.constScanLine(y)) + place.left();
        const auto *present = reinterpret_cast<const QRgb *>(after.constScanLine(y)) + place.left();
        if (std::memcmp(old, present, size_t(place.width()) * sizeof(QRgb)) != 0)
            return true;
    }
    return false;
}

/// Runs of changed tiles in the row of tiles that begins at this line.
QList<QRect> changedRuns(const QImage &before, const QImage &after, int top)
{
    QList<QRect> runs;
    for (int left = 0; left < after.width(); left += tile) {
        const QRect place = QRect(left, top, tile, tile) & after.rect();
        if (!tileDiffers(before, after, place))
            continue;
        if (!runs.isEmpty() && runs.last().right() + 1 == left)
            runs.last().setRight(place.right());
        else
            runs.append(place);
    }
    return runs;
}

/// Makes the run part of a rectangle that it continues downwards, or one of its own.
void addRun(QList<QRect> *rectangles, const QRect &run)
{
    for (QRect &above : *rectangles) {
        if (above.left() == run.left() && above.right() == run.right() && above.bottom() + 1 == run.top()) {
            above.setBottom(run.bottom());
            return;
        }
    }
    rectangles->append(run);
}

} // namespace

QList<QRect> changedRectangles(const QImage &before, const QImage &after)
{
    if (before.isNull())
        return {after.rect()};
    QList<QRect> rectangles;
    for (int top = 0; top < after.height(); top += tile) {
        for (const QRect &run : changedRuns(before, after, top))
            addRun(&rectangles, run);
    }
    if (rectangles.size() <= mostRectangles)
        return rectangles;
    QRect all;
    for (const QRect &rectangle : std::as_const(rectangles))
        all |= rectangle;
    return {all};
}

QByteArray encodePng(const QImage &picture)
{
    QBuffer png;
    QImageWriter writer(&png, "png");
    writer.setQuality(pngQuality);
    writer.write(picture);
    return png.data();
}

QByteArray encodePiece(const QImage &picture, const QRect &rectangle)
{
    QByteArray piece(4, '\0');
    qToLittleEndian(quint16(rectangle.x()), piece.data());
    qToLittleEndian(quint16(rectangle.y()), piece.data() + 2);
    return piece + encodePng(picture.copy(rectangle));
}
