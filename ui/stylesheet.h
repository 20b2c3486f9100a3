#pragma once

#include <QColor>
#include <QFont>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

class QPainter;

/// Behind everything is the black of the LCD: what an application's style sheet "*{ background-color: black}" shows,
/// whose rules Qt would keep apart for each of the thousands of labels, in 14 MiB and a quarter of the start-up.
/// Called once, after the application object is made.
void blackenBackground();

/// How a widget looks in one of its states. Without a border its width is 0.
struct Look
{
    QColor color = Qt::black;
    QColor background = Qt::black; ///< The LCD's own, as everywhere.
    int borderWidth = 0;           ///< In pixels.
    QColor borderColor = Qt::black;
    int borderRadius = 0;

    bool operator==(const Look &) const = default;

    /// The background and, inside its edges, the border. @param dirty what of it is to be painted.
    void paintBox(QPainter &painter, const QRect &rect, const QRegion &dirty) const;
};

/// The style sheet of one label or plain widget: rules for "*", with conditions on dynamic properties such as
/// [state="hovered"], that set the font, the colours, the border and the alignment.
///
/// Qt's own style sheets parse the text once for each widget and, at each change of state, again, throw the font
/// away and lay the page out anew. Here a text is parsed once for all widgets that share it, and a change of
/// state finds another Look. What they show is the same.
class StyleSheet
{
public:
    /// The one for this text, kept for as long as somebody holds it. What it does not know is ignored.
    static std::shared_ptr<const StyleSheet> of(const QString &text);

    /// Of all states. Without a font in the sheet it is that of the application.
    const QFont &font() const { return m_font; }
    const std::optional<Qt::Alignment> &alignment() const { return m_alignment; }
    /// The look of a widget with these dynamic properties.
    Look look(const QObject &widget) const;

private:
    struct Condition
    {
        QByteArray property;
        QString value;
    };
    struct Rule
    {
        QList<Condition> conditions;
        std::optional<QColor> color, background, borderColor;
        std::optional<int> borderWidth, borderRadius;
    };

    explicit StyleSheet(const QString &text);
    void declare(Rule &rule, QStringView name, QStringView value);

    QFont m_font;
    std::optional<Qt::Alignment> m_alignment;
    QList<Rule> m_rules; ///< The more conditions the later; a later one wins.
};

/// The sheet of a widget, and the look that it has now.
class StyledLook
{
public:
    void setSheet(const QString &text) { m_sheet = StyleSheet::of(text); }
    /// Looks again at the widget's dynamic properties. @return whether the look has changed.
    bool update(const QObject &widget);

    /// Null until there is one.
    const StyleSheet *sheet() const { return m_sheet.get(); }
    const Look &operator*() const { return m_look; }
    const Look *operator->() const { return &m_look; }

private:
    std::shared_ptr<const StyleSheet> m_sheet;
    Look m_look;
};
