#include "ui/screendata.h"

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"
#include "ui/propertydisplaylabel.h"
#include "ui/styles.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace {

/// The version that a board reports that is not there.
const QString absentVersion = QStringLiteral("0.0.0b0");
constexpr int headerWidth = 270; // pixels

} // namespace

ScreenData::ScreenData(QWidget *parent)
    : Screen(parent)
    , m_scroll(this)
{
    for (const int column : {1, 2, 3})
        m_scroll.grid()->setColumnStretch(column, 1);
    contentLayout()->addWidget(&m_scroll);
    contentLayout()->setContentsMargins(10, 0, 3, 0);
    stackContents(Contents::Fill);
}

ScreenData::Row::Row(const char *name, Screen *page)
    : caption(name)
    , child(page)
{
}

ScreenData::Row::Row(const char *name, Dt3Property *shown, Screen *editor, PropertyDisplayLabel *shownBy)
    : caption(name)
    , child(editor)
    , property(shown)
    , label(shownBy)
{
}

ScreenData::Row::Row(const char *name, Dt3Property *shown, Screen *editor, const QMap<QString, QString> &editorOptions,
    PropertyDisplayLabel *shownBy)
    : caption(name)
    , child(editor)
    , property(shown)
    , label(shownBy)
    , options(editorOptions)
{
}

void ScreenData::addRows(std::initializer_list<Row> rows)
{
    for (const Row &row : rows) {
        const QString caption = QString::fromUtf8(row.caption);
        DataLine *line
            = row.property ? addPropertyLine(caption, row.property, row.child, row.label) : addLine(caption, row.child);
        line->setOptions(row.options);
    }
}

DataLine *ScreenData::addLine(const QString &caption, Screen *child)
{
    return insertLine(new DataLine(this), caption, child, 1); // owned by the page
}

DataLine *ScreenData::addPropertyLine(
    const QString &caption, Dt3Property *property, Screen *child, PropertyDisplayLabel *label)
{
    DataLine *line = addLine(caption, child);
    line->setProperty(property);
    addValue(line, property, label ? label : new PropertyDisplayLabel(this)); // the row's
    return line;
}

void ScreenData::addValue(DataLine *line, Dt3Property *property, PropertyDisplayLabel *label)
{
    label->setProperty(property);
    line->addValueWidget(label);
    rebuildValueIndex();
}

DataLine *ScreenData::addHeaderLine(const QString &caption)
{
    DataLine *line = insertLine(new DataLine(this), caption, nullptr, 2); // owned by the page
    line->captionLabel()->setFixedWidth(headerWidth);
    line->captionLabel()->setSheet(Style::headerCaption);
    return line;
}

DataLine *ScreenData::insertLine(DataLine *line, const QString &caption, Screen *child, int captionColumnSpan)
{
    line->setCaption(caption);
    line->setChild(child);
    if (child)
        connect(child, &Screen::pendingEntriesFinished, this, &Screen::pendingEntriesFinished, Qt::UniqueConnection);
    m_lines.append(line);
    ItemLabel *label = line->captionLabel();
    connect(label, &ItemLabel::signalHovered, &m_scroll, [this, label] { m_scroll.hoverEvent(label); });
    connect(label, &ItemLabel::signalSelected, this, [this, line] { clicked(line); });
    placeLine(line, static_cast<int>(m_lines.size()) - 1, captionColumnSpan);
    navigator().insert(saveCollection(), line->collection());
    return line;
}

void ScreenData::placeLine(DataLine *line, int row, int captionColumnSpan)
{
    QGridLayout *grid = m_scroll.grid();
    m_scroll.openRow(row);
    grid->addWidget(line->iconLabel(), row, 0);
    grid->addWidget(line->captionLabel(), row, 1, 1, captionColumnSpan);
    grid->addLayout(line->valueLayout(), row, 2);
}

void ScreenData::removeLine(const QString &caption)
{
    const auto found = std::find_if(
        m_lines.begin(), m_lines.end(), [&caption](const DataLine *line) { return line->caption() == caption; });
    if (found != m_lines.end())
        dropLine(found - m_lines.begin());
}

void ScreenData::removeLine(DataLine *line)
{
    if (const qsizetype index = m_lines.indexOf(line); index >= 0)
        dropLine(index);
}

void ScreenData::clearLines()
{
    while (!m_lines.isEmpty())
        dropLine(m_lines.size() - 1);
}

void ScreenData::dropLine(qsizetype index)
{
    DataLine *line = m_lines.takeAt(index);
    navigator().remove(line->collection());
    QGridLayout *grid = m_scroll.grid();
    const auto takeOut = [grid](const DataLine *of) {
        grid->removeWidget(of->iconLabel());
        grid->removeWidget(of->captionLabel());
        grid->removeItem(of->valueLayout());
    };
    takeOut(line);
    // Those below move up, so that the grid does not grow while rows come and go for weeks.
    for (; index < m_lines.size(); ++index) {
        DataLine *below = m_lines[index];
        int row = 0, column = 0, rows = 0, span = 0;
        grid->getItemPosition(grid->indexOf(below->captionLabel()), &row, &column, &rows, &span);
        takeOut(below);
        placeLine(below, static_cast<int>(index), span);
    }
    delete line;
    rebuildValueIndex();
}

void ScreenData::clicked(DataLine *line)
{
    Screen *child = line->child();
    if (!child)
        return;
    child->setTitle(line->caption());
    child->openedFrom(*line);
    child->showMe();
}

void ScreenData::openedFrom(const DataLine &row)
{
    m_scroll.scrollToTop(); // where the highlight alone would not bring it
    setPort(row.port());
}

void ScreenData::setLineShown(DataLine *line, bool shown)
{
    if (shown)
        showLine(line);
    else
        hideLine(line);
}

void ScreenData::turnedPastLastStop(int direction) { m_scroll.scrollByRow(direction); }

QList<const Dt3Property *> ScreenData::allProperties() const
{
    QList<const Dt3Property *> properties;
    for (const DataLine *line : m_lines) {
        for (const PropertyDisplayLabel *label : line->values()) {
            if (label->property() && label->property()->hasPath())
                properties.append(label->property());
        }
    }
    for (const Dt3Property *property : m_watchedProperties) {
        if (property->hasPath())
            properties.append(property);
    }
    return properties;
}

void ScreenData::requestAll(Request mode)
{
    QStringList targets;
    const QList<const Dt3Property *> properties = allProperties();
    for (const Dt3Property *property : properties)
        targets.append(mode == Request::Get ? property->path() : Dt3Manager::nodeOf(property->path()));
    targets.removeDuplicates();
    switch (mode) {
    case Request::Get:
        for (const QString &path : std::as_const(targets))
            get(path);
        break;
    case Request::Open:
        for (const QString &node : std::as_const(targets)) {
            open(node);
            if (!m_openNodes.contains(node))
                m_openNodes.append(node);
        }
        break;
    case Request::Close:
        for (const QString &node : std::as_const(m_openNodes))
            Dt3Sink::close(node);
        m_openNodes.clear();
        break;
    }
}

void ScreenData::setActive(bool active)
{
    if (!active) {
        requestAll(Request::Close);
        return;
    }
    rebuildValueIndex(); // another page may have pointed a shared descriptor at its port
    requestAll(Request::Get);
    requestAll(Request::Open);
}

void ScreenData::setPort(const QString &port)
{
    if (std::exchange(m_port, port) != port)
        forgetValues();
    for (DataLine *line : std::as_const(m_lines)) {
        if (!line->pinned())
            line->setPort(port, false);
        for (const PropertyDisplayLabel *label : line->values()) {
            if (label->property() && !label->property()->pinned())
                label->property()->setPort(port, false);
        }
    }
    rebuildValueIndex();
}

void ScreenData::forgetValues()
{
    for (const DataLine *line : std::as_const(m_lines)) {
        for (PropertyDisplayLabel *label : line->values()) {
            if (label->property())
                label->forgetValue();
        }
    }
}

void ScreenData::rebuildValueIndex()
{
    m_valueIndex.clear();
    for (const DataLine *line : std::as_const(m_lines)) {
        for (PropertyDisplayLabel *label : line->values()) {
            if (label->property())
                m_valueIndex.emplace(label->property()->path(), label);
        }
    }
}

void ScreenData::propertyReceived(const QString &property, const QString &value)
{
    updateValue(property, value);
    noteAbsentIndex(property, value);
}

void ScreenData::propertyChanged(const QString &property, const QString &value) { updateValue(property, value); }

void ScreenData::updateValue(const QString &property, const QString &value)
{
    QString shown = value;
    const auto [first, last] = m_valueIndex.equal_range(property);
    for (auto entry = first; entry != last; ++entry) {
        PropertyDisplayLabel *label = entry->second;
        if (label->property()->path() != property)
            continue;
        const bool seen = label->isVisible();
        const QString text = label->property()->caption(seen ? shown : value);
        label->showValue(text);
        if (seen)
            shown = text; // the next label maps what this one shows
    }
}

void ScreenData::noteAbsentIndex(const QString &property, const QString &value)
{
    if (value != absentVersion)
        return;
    static const QRegularExpression number(QStringLiteral(R"((\d+))"));
    const QRegularExpressionMatch match = number.match(property);
    if (!match.hasMatch())
        return;
    const int index = match.capturedView().toInt();
    if (m_absentIndices.contains(index))
        return;
    m_absentIndices.append(index);
    setPort({});
}
