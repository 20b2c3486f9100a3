#pragma once

#include <QString>

// The style sheets that several widgets share, and FontAwesome's glyphs by what they show. Literals live in the
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

/// A wheel of a page of its own, and the smaller one in the row of an EDID page. @param size of its text in pixels.
inline QString wheel(int size)
{
    return QStringLiteral("*{ font-family: RobotoLight; font-size: %1px; color: #FFFFFF}*{ background-color: #2c2c2c}"
                          "*[state=\"normal\"]{   border: 1px solid #000000}*[state=\"hovered\"]{  border: 1px solid "
                          "#2d96e9}*[state=\"selected\"]{ border: 1px solid #2d96e9}")
        .arg(size);
}
/// Black on black until the wheel beside the arrow is being turned. @param size in pixels.
inline QString wheelArrow(int size)
{
    return QStringLiteral("*{ font-family: FontAwesome; font-size: %1px}*[state=\"normal\"]{   color: #000000}"
                          "*[state=\"hovered\"]{  color: #000000}*[state=\"selected\"]{ color: #2d96e9}")
        .arg(size);
}

/// What a port has, and, in grey, what it has not.
inline const QString portIcon = QStringLiteral("*{ font-family: FontAwesome; font-size: 15px; color: #FFFFFF}"
                                               "*[active=\"true\"]{  color: #FFFFFF}*[active=\"false\"]{ color: grey}");

inline const QString presetBadge = QStringLiteral("*{ font-family: RobotoLight; font-size: 17px; color: #FFFFFF;"
                                                  "border:2px solid grey; border-radius: 5px;}");
inline const QString noPresetBadge = QStringLiteral("*{ font-family: RobotoLight; font-size: 17px; color: #FFFFFF;}");

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
inline const QString eyeSlash = QStringLiteral("\uF070");
inline const QString key = QStringLiteral("\uF084");
inline const QString lock = QStringLiteral("\uF023");
inline const QString music = QStringLiteral("\uF001");
inline const QString mutedSpeaker = QStringLiteral("\U0001F507");
inline const QString plug = QStringLiteral("\uF1E6");
inline const QString signalBars = QStringLiteral("\uF012");
inline const QString sortArrows = QStringLiteral("\uF0DC");
inline const QString sun = QStringLiteral("\uF185");
inline const QString volumeDown = QStringLiteral("\uF027");
inline const QString volumeUp = QStringLiteral("\uF028");
inline const QString warningTriangle = QStringLiteral("\uF071");

} // namespace Glyph
