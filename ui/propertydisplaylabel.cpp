#include "ui/propertydisplaylabel.h"

#include "ui/interfaceitem.h"
#include "ui/roundednumber.h"
#include "ui/styles.h"

#include <QVariant>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {
constexpr qsizetype mostOfValue = 1000; // characters; more than the LCD has room for
} // namespace

PropertyDisplayLabel::PropertyDisplayLabel(QWidget *parent, const QString &extraSheet)
    : StyledLabel(parent)
{
    setSheet(Style::value + extraSheet);
    StyledLabel::setText(QStringLiteral("TBD"));
}

void PropertyDisplayLabel::showValue(const QString &value)
{
    const QString kept = value.size() > mostOfValue ? value.left(mostOfValue) : value;
    if (isVisible()) {
        m_hiddenValue.reset();
        setText(kept);
    } else {
        m_hiddenValue = kept;
    }
}

void PropertyDisplayLabel::forgetValue(const QString &text)
{
    m_hiddenValue.reset();
    setStyledProperty(InterfaceItem::stateProperty, {});
    StyledLabel::setText(text);
}

void PropertyDisplayLabel::showEvent(QShowEvent *event)
{
    if (m_hiddenValue)
        setText(*std::exchange(m_hiddenValue, std::nullopt));
    StyledLabel::showEvent(event);
}

PropertyDisplayLabelNumericValue::PropertyDisplayLabelNumericValue(QWidget *parent, bool rounded, const QString &unit)
    : PropertyDisplayLabel(parent)
    , m_rounded(rounded)
    , m_unit(unit)
{
}

void PropertyDisplayLabelNumericValue::setText(const QString &value)
{
    StyledLabel::setText((m_rounded ? roundedNumber(value) : value) + (m_unit.isEmpty() ? QString() : ' ' + m_unit));
}

PropertyDisplayLabelTimeAndDate::PropertyDisplayLabelTimeAndDate(QWidget *parent, bool showTime)
    : PropertyDisplayLabel(parent)
    , m_showTime(showTime)
{
}

void PropertyDisplayLabelTimeAndDate::setText(const QString &value)
{
    StyledLabel::setText(value.section('T', m_showTime ? 1 : 0, m_showTime ? 1 : 0));
}

PropertyDisplayLabelAudioInfo::PropertyDisplayLabelAudioInfo(QWidget *parent)
    : PropertyDisplayLabel(parent)
{
    m_timer.setInterval(std::chrono::milliseconds(750));
    connect(&m_timer, &QTimer::timeout, this, &PropertyDisplayLabelAudioInfo::tick);
}

void PropertyDisplayLabelAudioInfo::setText(const QString &value)
{
    m_parts = value.split(',', Qt::SkipEmptyParts);
    m_index = 0;
    tick();
    m_timer.start();
}

void PropertyDisplayLabelAudioInfo::forgetValue(const QString &text)
{
    m_timer.stop();
    m_parts.clear();
    PropertyDisplayLabel::forgetValue(text);
}

void PropertyDisplayLabelAudioInfo::tick()
{
    StyledLabel::setText(m_parts.value(m_index));
    if (!m_parts.isEmpty())
        m_index = (m_index + 1) % m_parts.size();
}

PropertyDisplayLabelVoltageAndTemperature::PropertyDisplayLabelVoltageAndTemperature(QWidget *parent)
    : PropertyDisplayLabel(parent,
        QStringLiteral("*[state=\"normal\"]{  color: #FFFFFF}*[state=\"warning\"]{ color: orange}*[state=\"error\"]{   "
                       "color: red}"))
{
}

void PropertyDisplayLabelVoltageAndTemperature::setText(const QString &value)
{
    const QStringList fields = value.split(';');
    const QString withUnit = fields.first().trimmed();
    const QString text = withUnit.first(std::max<qsizetype>(0, withUnit.size() - 2));
    const double reading = text.toDouble();
    const auto within = [&](int low, int high) {
        return fields.value(low).trimmed().toDouble() <= reading && reading <= fields.value(high).trimmed().toDouble();
    };
    const auto isBlank = [](const QString &field) { return field.trimmed().isEmpty(); };
    const char *state = "error";
    if (within(1, 2) || std::all_of(fields.begin() + 1, fields.end(), isBlank))
        state = "normal";
    else if (within(3, 4))
        state = "warning";
    setStyledProperty(InterfaceItem::stateProperty, state);
    StyledLabel::setText(text);
}

PropertyDisplayLabelPowerSupplyState::PropertyDisplayLabelPowerSupplyState(QWidget *parent)
    : PropertyDisplayLabel(
        parent, QStringLiteral("*[state=\"running\"]{ color: green }*[state=\"stopped\"]{ color: red }"))
{
}

void PropertyDisplayLabelPowerSupplyState::setText(const QString &value)
{
    const QString state = value == QLatin1StringView("running") ? value : QStringLiteral("stopped");
    setStyledProperty(InterfaceItem::stateProperty, state);
    StyledLabel::setText(state);
}
