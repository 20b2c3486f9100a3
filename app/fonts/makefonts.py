#!/usr/bin/python3
"""Makes one of the panel's font files from a stock one.

The style sheets name families such as RobotoLight; the stock file calls itself "Roboto Light". The face that is
written is the only one, and the regular one, of the family asked for, so that Qt takes it as it is and
synthesises no weight. Equal input gives equal bytes.
"""

import argparse

from fontTools.pens.basePen import BasePen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont
from fontTools.ttLib.tables._c_m_a_p import CmapSubtable

FAMILY, STYLE, UNIQUE_ID, FULL_NAME, VERSION, POSTSCRIPT_NAME = range(1, 7)
# Typographic, compatible, WWS and variations names: each would put the face back into its old family.
OTHER_FAMILY_NAMES = (16, 17, 18, 20, 21, 22, 25)
WINDOWS, ENGLISH_US = 3, 0x409

REGULAR_WEIGHT = 400
REGULAR_BIT = 1 << 6

SPEAKER = 0xF026  # "volume off": the speaker without waves
CROSSED_OUT_SPEAKER = 0x1F507
# The stroke runs from the upper left to the lower right, with a gap above it as in the crossed-out eye.
# In font units, 1792 to the em: at 15 pixels 120 units are one pixel.
STROKE_WIDTH = 128
GAP = 120
OVERHANG = 230  # of the stroke, left and right of the speaker


def rename(font, family):
    """Makes the face the regular and only one of this family."""
    names = font["name"]
    version = names.getDebugName(VERSION)
    texts = {
        FAMILY: family,
        STYLE: "Regular",
        UNIQUE_ID: f"{family}; {version}",
        FULL_NAME: family,
        POSTSCRIPT_NAME: family,
    }
    for name_id in (*texts, *OTHER_FAMILY_NAMES):
        names.removeNames(nameID=name_id)
    for name_id, text in texts.items():
        names.setName(text, name_id, WINDOWS, 1, ENGLISH_US)
    font["OS/2"].usWeightClass = REGULAR_WEIGHT
    font["OS/2"].fsSelection = REGULAR_BIT
    font["head"].macStyle = 0


class PolygonPen(BasePen):
    """Draws a glyph as polygons, lists of points; a curve becomes a few straight lines."""

    def __init__(self, glyph_set):
        super().__init__(glyph_set)
        self.polygons = []

    def _moveTo(self, point):
        self.polygons.append([point])

    def _lineTo(self, point):
        self.polygons[-1].append(point)

    def _qCurveToOne(self, control, end):
        start = self._getCurrentPoint()
        for t in (0.25, 0.5, 0.75, 1):
            self.polygons[-1].append(
                tuple((1 - t) ** 2 * s + 2 * t * (1 - t) * c + t**2 * e for s, c, e in zip(start, control, end))
            )


def area(polygon):
    """Signed: negative for the clockwise outer contours of a TrueType glyph."""
    return sum(x * v - u * y for (x, y), (u, v) in zip(polygon, polygon[1:] + polygon[:1])) / 2


def cut(polygon, distance):
    """The part of the polygon where distance(point), a signed distance from a line, is not negative."""
    kept = []
    for a, b in zip(polygon, polygon[1:] + polygon[:1]):
        from_a, from_b = distance(a), distance(b)
        if from_a >= 0:
            kept.append(a)
        if from_a * from_b < 0:
            t = from_a / (from_a - from_b)
            kept.append((a[0] + t * (b[0] - a[0]), a[1] + t * (b[1] - a[1])))
    return kept


def add_crossed_out_speaker(font):
    """Adds the glyph that the stock icons lack: the speaker with a stroke through it."""
    glyphs = font["glyf"]
    pen = PolygonPen(font.getGlyphSet())
    font.getGlyphSet()[font.getBestCmap()[SPEAKER]].draw(pen)
    (speaker,) = pen.polygons
    speaker = [(x + OVERHANG, y) for x, y in speaker]
    width = max(x for x, _ in speaker) + OVERHANG

    # The stroke's middle line, and a unit vector across it that points to the upper right.
    x0, x1 = STROKE_WIDTH / 2, width - STROKE_WIDTH / 2
    y0, y1 = max(y for _, y in speaker), min(y for _, y in speaker)
    length = ((x1 - x0) ** 2 + (y1 - y0) ** 2) ** 0.5
    across = ((y0 - y1) / length, (x1 - x0) / length)

    def above(point):
        return (point[0] - x0) * across[0] + (point[1] - y0) * across[1]

    half = STROKE_WIDTH / 2
    dx, dy = across[0] * half, across[1] * half
    stroke = [(x0 + dx, y0 + dy), (x1 + dx, y1 + dy), (x1 - dx, y1 - dy), (x0 - dx, y0 - dy)]
    if area(stroke) * area(speaker) < 0:  # the stroke overlaps the lower part: one direction, or it punches a hole
        stroke.reverse()

    contours = [
        cut(speaker, lambda point: above(point) - half - GAP),
        cut(speaker, lambda point: -above(point)),
        stroke,
    ]
    drawing = TTGlyphPen(None)
    for contour in contours:
        drawing.moveTo(tuple(map(round, contour[0])))
        for point in contour[1:]:
            drawing.lineTo(tuple(map(round, point)))
        drawing.closePath()

    name = "crossed_out_speaker"
    glyph = drawing.glyph()
    glyphs[name] = glyph
    glyph.recalcBounds(glyphs)
    font["hmtx"][name] = (round(width), glyph.xMin)

    # The code point is beyond the 16 bits of the tables that are there.
    mapping = {**font.getBestCmap(), CROSSED_OUT_SPEAKER: name}
    for platform, encoding in ((0, 4), (WINDOWS, 10)):
        table = CmapSubtable.newSubtable(12)
        table.platformID, table.platEncID, table.language, table.cmap = platform, encoding, 0, mapping
        font["cmap"].tables.append(table)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("source", help="the stock font file")
    parser.add_argument("output", help="the font file to write")
    parser.add_argument("family", help="the family it is the regular face of")
    parser.add_argument("--add-crossed-out-speaker", action="store_true", help="add the glyph U+1F507")
    arguments = parser.parse_args()

    font = TTFont(arguments.source, recalcTimestamp=False)
    rename(font, arguments.family)
    if arguments.add_crossed_out_speaker:
        add_crossed_out_speaker(font)
    font.save(arguments.output)


if __name__ == "__main__":
    main()
