#pragma once

#include <QString>

// The style sheets that several widgets share, and FontAwesome's glyphs by what they show. Literals: both live in the
// program's read-only data.

namespace Style {

inline const QString title = QStringLiteral("*{ font-family: RobotoBold; font-size: 19px; color: #FFFFFF}");
inline const QString message = QStringLiteral("*{ font-family: RobotoMedium; font-size: 19px; color: #FFFFFF}");
inline const QString value = QStringLiteral("*{ font-family: RobotoLight; font-size: 17px; color: #FFFFFF}");
inline const QString separator = QStringLiteral("*{ font-family: RobotoLight; font-size: 19px; color: #FFFFFF}");

inline const QString buttonText = QStringLiteral("*{ font-family: RobotoLight; font-size: 19px}*[state=\"normal\"]{   "
                                                 "color: #FFFFFF}*[state=\"hovered\"]{  color: #2d96e9}");
inline const QString saveIcon = QStringLiteral("*{ font-family: FontAwesome; font-size: 15px}*[state=\"normal\"]{   "
                                               "color: #FFFFFF}*[state=\"hovered\"]{  color: #2d96e9}");
inline const QString backIcon = QStringLiteral("*{ font-family: FontAwesome; font-size: 20px}*[state=\"normal\"]{   "
                                               "color: #FFFFFF}*[state=\"hovered\"]{  color: #2d96e9}");
inline const QString caption = QStringLiteral("*{ font-family: RobotoMedium; font-size: 19px}*[state=\"normal\"]{  "
                                              "color: #FFFFFF}*[state=\"hovered\"]{ color: #2d96e9}");
inline const QString headerCaption
    = QStringLiteral("*{ font-family: RobotoBold; font-size: 19px; color: #AAAAAA; "
                     "qproperty-alignment:AlignCenter}*[state=\"hovered\"]{ color: #2d96e9}");
/// Of a row that opens a screen, and of one that does not: black on black until the row is hovered.
inline const QString rowChevron = QStringLiteral("*{ font-family: FontAwesome; font-size: 15px}*[state=\"normal\"]{  "
                                                 "color: #000000}*[state=\"hovered\"]{ color: #2d96e9}");
inline const QString rowDot = QStringLiteral("*{ font-family: FontAwesome; font-size: 6px}*[state=\"normal\"]{  color: "
                                             "#000000}*[state=\"hovered\"]{ color: #2d96e9}");

/// An option of a list; the one that is set is green where it is not hovered.
inline const QString chooseCaption
    = QStringLiteral("*{ font-family: RobotoMedium; font-size: 19px}*[state=\"normal\"]{  color: "
                     "#FFFFFF}*[state=\"hovered\"]{ color: #2d96e9}"
                     "*[state=\"normal\"][set=\"true\"]{ color: #44da6e}");
inline const QString chooseIcon = QStringLiteral("*{ font-family: FontAwesome; font-size: 15px}*[state=\"normal\"]{  "
                                                 "color: #000000}*[state=\"hovered\"]{ color: #2d96e9}"
                                                 "*[state=\"normal\"][set=\"true\"]{ color: #44da6e}");

inline const QString wheel = QStringLiteral(
    "*{ font-family: RobotoLight; font-size: 19px; color: #FFFFFF}*{ background-color: #2c2c2c}"
    "*[state=\"normal\"]{   border: 1px solid #000000}*[state=\"hovered\"]{  border: 1px solid #2d96e9}"
    "*[state=\"selected\"]{ border: 1px solid #2d96e9}");
/// Black on black until the wheel between the two arrows is being turned.
inline const QString wheelArrow
    = QStringLiteral("*{ font-family: FontAwesome; font-size: 15px}*[state=\"normal\"]{   color: #000000}"
                     "*[state=\"hovered\"]{  color: #000000}*[state=\"selected\"]{ color: #2d96e9}");

inline const QString sliderTrack = QStringLiteral("*{ background-color: #464646}");

} // namespace Style

namespace Glyph {

inline const QString check = QStringLiteral("\uF00C");
inline const QString checkCircle = QStringLiteral("\uF058");
inline const QString chevronDown = QStringLiteral("\uF078");
inline const QString chevronRight = QStringLiteral("\uF054");
inline const QString chevronUp = QStringLiteral("\uF077");
inline const QString circle = QStringLiteral("\uF111");
inline const QString circleOutline = QStringLiteral("\uF10C");
inline const QString doubleAngleLeft = QStringLiteral("\uF100");
inline const QString sun = QStringLiteral("\uF185");
inline const QString warningTriangle = QStringLiteral("\uF071");

} // namespace Glyph
