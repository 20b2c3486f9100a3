#pragma once

#include <QImage>
#include <QList>
#include <QRect>

/// The rectangles in which two pictures of the same size differ: few, not overlapping, on a grid of tiles. All of the
/// second picture where the first is null.
QList<QRect> changedRectangles(const QImage &before, const QImage &after);

/// A piece of a picture as pages get it: x and y, 16 bits each, little endian, and a PNG.
QByteArray encodePiece(const QImage &picture, const QRect &rectangle);

QByteArray encodePng(const QImage &picture);
