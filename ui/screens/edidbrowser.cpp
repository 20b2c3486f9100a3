#include "ui/screens/edidbrowser.h"

#include "protocol/catalogue.h"
#include "ui/propertydisplaylabel.h"
#include "ui/styles.h"

namespace {

constexpr int wheelWidth = 55; // pixels

const QString all = QStringLiteral("All"); // inputs, the last destination of a switch

QString bankPath(QChar letter) { return propEdid.path() + '/' + letter; }

} // namespace

EdidBrowser::EdidBrowser(QWidget *parent)
    : ScreenData(parent)
    , m_source(addWheelRow(QStringLiteral("Name")))
{
    addRows({
        {"Preferred Res.", &propEdidPreferredResolution}, {"Monitor Name", &propEdidMonitorName},
        {"Audio Info", &propEdidAudioInfo, nullptr, new PropertyDisplayLabelAudioInfo(this)}, // the row's
    });
    connect(m_source, &ItemWheelListLabel::signalScrolled, this, &EdidBrowser::scrolled);
}

ItemWheelListLabel *EdidBrowser::addWheelRow(const QString &caption)
{
    DataLine *line = addLine(caption);
    auto *wheel = new ItemWheelListLabel(this, false); // the row's, as the arrows
    wheel->setFixedWidth(wheelWidth);
    wheel->setSheet(Style::wheel(17));
    wheel->setAlignment(Qt::AlignCenter);
    auto *arrows = new ItemLabel(this, true);
    arrows->setText(Glyph::sortArrows);
    arrows->setSheet(Style::wheelArrow(17));
    line->addWidget(wheel);
    line->addWidget(arrows);
    connect(wheel, &ItemWheelListLabel::signalDeselected, line->collection(), &Collection::hover);
    return wheel;
}

void EdidBrowser::setActive(bool active)
{
    m_active = active;
    if (!active) {
        requestAll(Request::Close);
        return;
    }
    m_source->clearOptions();
    m_edid.clear();
    forgetValues();
    const QStringList paths = banks();
    for (const QString &path : paths)
        get(path);
}

void EdidBrowser::forgetValues()
{
    for (const DataLine *line : lines()) {
        for (PropertyDisplayLabel *label : line->values())
            label->forgetValue({});
    }
}

void EdidBrowser::nodeReceived(const QString &node)
{
    const QString name = node.section('/', -1, -1, QString::SectionSkipEmpty);
    const qsizetype end = node.lastIndexOf('/' + name); // of the bank's path
    if (!m_active || name.isEmpty() || end < 0 || !banks().contains(node.first(end)))
        return; // a late answer
    if (!isSource(name.front())) {
        addDestination(name);
        return;
    }
    m_source->addOption(name);
    if (m_edid.isEmpty())
        selectEdid(sourcePath(name));
}

void EdidBrowser::addDestination(const QString &) { }

void EdidBrowser::scrolled()
{
    if (const QString path = sourcePath(m_source->text()); m_active && path != m_edid)
        selectEdid(path);
}

QString EdidBrowser::sourcePath(const QString &name) const { return bankPath(name.front()) + '/' + name; }

void EdidBrowser::selectEdid(const QString &path)
{
    requestAll(Request::Close);
    m_edid = path;
    setPort(path);
    m_source->setCurrentText(path.section('/', -1));
    requestAll(Request::Get);
    requestAll(Request::Open);
}

ScreenEdidViewer::ScreenEdidViewer(QWidget *parent)
    : EdidBrowser(parent)
{
    showBackButton();
}

void ScreenEdidViewer::openedFrom(const DataLine &row)
{
    EdidBrowser::openedFrom(row);
    bindProperty(row.property());
}

void ScreenEdidViewer::bindProperty(const Dt3Property *property) { m_bank = property->path(); }

QString ScreenEdidViewer::sourcePath(const QString &name) const { return m_bank + '/' + name; }

EdidCopier::EdidCopier(QWidget *parent)
    : EdidBrowser(parent)
    , m_destination(addWheelRow(QStringLiteral("Destination")))
{
    showSaveButton();
    showBackButton();
}

void EdidCopier::setActive(bool active)
{
    if (active)
        m_destination->clearOptions();
    EdidBrowser::setActive(active);
}

void EdidCopier::savePressed()
{
    const QString from = source()->text();
    const QString to = m_destination->text();
    if (!from.isEmpty() && !to.isEmpty())
        copy(from, to);
    EdidBrowser::savePressed();
}

ScreenEdidSwitcher::ScreenEdidSwitcher(QWidget *parent)
    : EdidCopier(parent)
{
    setButtonTexts(QStringLiteral("Switch"), QStringLiteral("Back"));
}

QStringList ScreenEdidSwitcher::banks() const { return {bankPath('F'), bankPath('U'), bankPath('D'), bankPath('E')}; }

bool ScreenEdidSwitcher::isSource(QChar bank) const { return QStringLiteral("FUD").contains(bank); }

void ScreenEdidSwitcher::addDestination(const QString &name)
{
    if (!name.startsWith('E') || destination()->hasOption(name))
        return;
    if (destination()->optionCount() == 0) {
        destination()->addOption(name);
        destination()->addOption(all);
    } else {
        destination()->insertOption(all, name);
    }
}

void ScreenEdidSwitcher::copy(const QString &from, const QString &to)
{
    if (to == all)
        call(methodEdidSwitchAll, from);
    else
        call(methodEdidSwitch, from + ':' + to);
}

QStringList ScreenEdidSaver::banks() const { return {bankPath('U'), bankPath('D')}; }

bool ScreenEdidSaver::isSource(QChar bank) const { return bank == 'D'; }

void ScreenEdidSaver::addDestination(const QString &name)
{
    if (name.startsWith('U'))
        EdidCopier::addDestination(name);
}

void ScreenEdidSaver::copy(const QString &from, const QString &to) { call(methodEdidCopy, from + ':' + to); }
