#include "ui/screenchoose.h"

#include "protocol/dt3property.h"
#include "ui/styles.h"

namespace {

constexpr const char *markedProperty = "set"; // what the style sheets call it

} // namespace

ScreenChoose::ChooseLine::ChooseLine(QWidget *screen)
    : captionLabel(screen)
    , iconLabel(screen)
{
    captionLabel.setSheet(Style::chooseCaption);
    iconLabel.setSheet(Style::chooseIcon);
    iconLabel.setFixedWidth(13);
    iconLabel.setAlignment(Qt::AlignCenter);
    collection.addWidget(&iconLabel);
    collection.addWidget(&captionLabel);
    setMarked(false);
    for (const auto signal : {&ItemLabel::signalNormaled, &ItemLabel::signalHovered})
        connect(&iconLabel, signal, this, &ChooseLine::updateIconText);
}

void ScreenChoose::ChooseLine::setMarked(bool marked)
{
    captionLabel.setStyledProperty(markedProperty, marked);
    iconLabel.setStyledProperty(markedProperty, marked);
    updateIconText();
}

void ScreenChoose::ChooseLine::updateIconText()
{
    iconLabel.setText(iconLabel.property(markedProperty).toBool() ? Glyph::checkCircle : Glyph::circleOutline);
}

ScreenChoose::ScreenChoose(QWidget *parent)
    : ScreenEditor(parent)
    , m_scroll(this)
{
    contentLayout()->addWidget(&m_scroll);
    contentLayout()->setContentsMargins(10, 0, 3, 0);
    stackContents(Contents::Fill);
    showBackButton();
}

void ScreenChoose::bindProperty(Dt3Property *property)
{
    ScreenEditor::bindProperty(property);
    for (const auto &line : m_chooseLines) {
        navigator().hide(&line->collection);
        line->setMarked(false);
    }
    m_optionLines.clear();
    const QStringList captions = property->captions();
    while (static_cast<qsizetype>(m_chooseLines.size()) < captions.size())
        addLine();
    for (qsizetype i = 0; i < captions.size(); ++i) {
        ChooseLine *line = m_chooseLines[static_cast<size_t>(i)].get();
        m_optionLines.insert(captions[i], line);
        line->captionLabel.setText(captions[i]);
        navigator().show(&line->collection, false);
    }
}

void ScreenChoose::addLine()
{
    const int row = static_cast<int>(m_chooseLines.size());
    ChooseLine *line = m_chooseLines.emplace_back(std::make_unique<ChooseLine>(this)).get();
    m_scroll.openRow(row);
    m_scroll.grid()->addWidget(&line->iconLabel, row, 0);
    m_scroll.grid()->addWidget(&line->captionLabel, row, 1);
    connect(&line->captionLabel, &ItemLabel::signalSelected, this, [this, line] { selectedLabel(line); });
    connect(&line->captionLabel, &ItemLabel::signalHovered, &m_scroll,
        [this, line] { m_scroll.hoverEvent(&line->captionLabel); });
    navigator().insert(saveCollection(), &line->collection);
}

void ScreenChoose::setActive(bool active)
{
    if (!active) {
        Dt3Sink::close(node());
        return;
    }
    open(node());
    fetch();
}

void ScreenChoose::propertyReceived(const QString &property, const QString &value)
{
    showValue(property, edited().caption(value));
}

void ScreenChoose::propertyChanged(const QString &property, const QString &value) { propertyReceived(property, value); }

void ScreenChoose::showValue(const QString &property, const QString &caption)
{
    if (!isEdited(property))
        return;
    mark(m_currentCaption, false);
    m_currentCaption = caption;
    mark(m_currentCaption, true);
}

void ScreenChoose::mark(const QString &caption, bool marked)
{
    if (ChooseLine *line = m_optionLines.value(caption))
        line->setMarked(marked);
}

void ScreenChoose::selectedLabel(const ChooseLine *line) { write(line->captionLabel.text()); }
