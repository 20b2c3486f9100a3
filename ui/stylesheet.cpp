#include "ui/stylesheet.h"

#include <QApplication>
#include <QHash>
#include <QMetaEnum>
#include <QObject>
#include <QPainter>
#include <QPalette>
#include <QRegularExpression>
#include <QVariant>

#include <algorithm>
#include <utility>

void blackenBackground()
{
    QPalette palette = QApplication::palette();
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, Qt::black);
    QApplication::setPalette(palette);
}

void Look::paintBox(QPainter &painter, const QRect &rect, const QRegion &dirty) const
{
    // Below 64 lines at a time: a taller fill with holes is one that Qt hands to other threads, and the hand-over
    // costs more than the fill.
    constexpr int lines = 64;
    for (const QRect &part : dirty) {
        for (int y = part.top(); y <= part.bottom(); y += lines)
            painter.fillRect(part.left(), y, part.width(), std::min(lines, part.bottom() + 1 - y), background);
    }
    if (borderWidth == 0)
        return;
    if (borderRadius > 0) {
        const qreal half = borderWidth / 2.0;
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(borderColor, borderWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(
            QRectF(rect).adjusted(half, half, -half, -half), borderRadius - half, borderRadius - half);
        return;
    }
    const QRect inside = rect.adjusted(borderWidth, borderWidth, -borderWidth, -borderWidth);
    for (const QRect &edge : QRegion(rect) - inside)
        painter.fillRect(edge, borderColor);
}

std::shared_ptr<const StyleSheet> StyleSheet::of(const QString &text)
{
    static QHash<QString, std::weak_ptr<const StyleSheet>> sheets;
    if (auto sheet = sheets.value(text).lock())
        return sheet;
    // The text leaves with the last holder.
    std::shared_ptr<const StyleSheet> sheet(new StyleSheet(text), [text](const StyleSheet *unused) {
        sheets.remove(text);
        delete unused;
    });
    sheets.insert(text, sheet);
    return sheet;
}

StyleSheet::StyleSheet(const QString &text)
{
    static const QRegularExpression rulePattern(QStringLiteral(R"(([^{}]*)\{([^{}]*)\})"));
    static const QRegularExpression conditionPattern(QStringLiteral(R"re(\[(\w+)="([^"]*)"\])re"));
    for (auto ruleMatches = rulePattern.globalMatch(text); ruleMatches.hasNext();) {
        const QRegularExpressionMatch match = ruleMatches.next();
        Rule rule;
        for (auto matches = conditionPattern.globalMatch(match.capturedView(1)); matches.hasNext();) {
            const QRegularExpressionMatch condition = matches.next();
            rule.conditions.append({condition.captured(1).toLatin1(), condition.captured(2)});
        }
        for (const QStringView declaration : match.capturedView(2).split(u';')) {
            const qsizetype colon = declaration.indexOf(u':');
            if (colon > 0)
                declare(rule, declaration.first(colon).trimmed(), declaration.sliced(colon + 1).trimmed());
        }
        m_rules.append(rule);
    }
    std::stable_sort(m_rules.begin(), m_rules.end(),
        [](const Rule &a, const Rule &b) { return a.conditions.size() < b.conditions.size(); });
}

void StyleSheet::declare(Rule &rule, QStringView name, QStringView value)
{
    const auto pixels = [](QStringView length) { return length.endsWith(u"px") ? length.chopped(2).toInt() : 0; };
    if (name == u"font-family") {
        m_font.setFamily(value.toString());
    } else if (name == u"font-size") {
        m_font.setPixelSize(std::max(1, pixels(value)));
    } else if (name == u"color") {
        rule.color = QColor(value);
    } else if (name == u"background-color") {
        rule.background = QColor(value);
    } else if (name == u"border") { // width, "solid", colour
        const QList<QStringView> words = value.split(u' ');
        rule.borderWidth = pixels(words.first());
        rule.borderColor = QColor(words.last());
    } else if (name == u"border-radius") {
        rule.borderRadius = pixels(value);
    } else if (name == u"qproperty-alignment") {
        const QMetaEnum alignments = QMetaEnum::fromType<Qt::Alignment>();
        m_alignment = Qt::Alignment(alignments.keyToValue(value.toLatin1().constData()));
    }
}

Look StyleSheet::look(const QObject &widget) const
{
    Look look;
    for (const Rule &rule : m_rules) {
        const bool applies = std::all_of(rule.conditions.begin(), rule.conditions.end(),
            [&widget](const Condition &c) { return widget.property(c.property.constData()).toString() == c.value; });
        if (!applies)
            continue;
        look.color = rule.color.value_or(look.color);
        look.background = rule.background.value_or(look.background);
        look.borderWidth = rule.borderWidth.value_or(look.borderWidth);
        look.borderColor = rule.borderColor.value_or(look.borderColor);
        look.borderRadius = rule.borderRadius.value_or(look.borderRadius);
    }
    return look;
}

bool StyledLook::update(const QObject &widget)
{
    if (!m_sheet)
        return false;
    const Look before = std::exchange(m_look, m_sheet->look(widget));
    return m_look != before;
}
