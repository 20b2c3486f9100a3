#include "ui/screenslider.h"

#include "protocol/dt3property.h"
#include "ui/dataline.h"
#include "ui/roundednumber.h"
#include "ui/styles.h"

#include <QGridLayout>

#include <cmath>

namespace {

constexpr int axisSteps = 10;

/// @param font the family's name. @param size in pixels.
QString whiteText(const QString &font, int size)
{
    return QStringLiteral("*{ font-family: %1; font-size: %2px; color: #FFFFFF}").arg(font).arg(size);
}

QString icon(int size) { return whiteText(QStringLiteral("FontAwesome"), size); }

} // namespace

ScreenSlider::ScreenSlider(QWidget *parent)
    : ScreenEditor(parent)
    , m_slider(this, 0, 10, 1)
{
    m_slider.setFixedSize(270, 10);
    m_slider.setValue(QStringLiteral("3"));
    m_collection.addWidget(&m_slider);
    connect(&m_slider, &ItemSlider::signalChanged, this, &ScreenSlider::changed);
    connect(&m_slider, &ItemSlider::signalDeselected, this, &ScreenSlider::leave);
    m_smallIcon.setSheet(icon(20));
    for (StyledLabel *label : {&m_bigIcon, &m_valueLabel, &m_secondaryLabel})
        label->setSheet(icon(30));
    for (StyledLabel *label : {&m_smallIcon, &m_bigIcon}) {
        label->setText(Glyph::sun);
        label->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    }
    for (StyledLabel *label : {&m_valueLabel, &m_secondaryLabel})
        label->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    layOutBlock();
    navigator().insert(saveCollection(), &m_collection);
}

void ScreenSlider::layOutBlock()
{
    auto *top = new QHBoxLayout; // the block's, as the two below
    top->setContentsMargins(0, 0, 0, 0);
    top->addSpacing(10);
    top->addWidget(&m_smallIcon);
    top->addSpacing(10);
    top->addWidget(&m_valueLabel, 1);
    top->addWidget(&m_secondaryLabel, 1);
    top->addSpacing(10);
    top->addWidget(&m_bigIcon);
    top->addSpacing(5);

    auto *middle = new QHBoxLayout;
    middle->addWidget(&m_slider);

    auto *axis = new QGridLayout;
    axis->setContentsMargins(0, 0, 0, 0);
    axis->setHorizontalSpacing(0);
    axis->setVerticalSpacing(8);
    axis->setColumnStretch(0, 1);
    axis->setColumnStretch(axisSteps + 2, 1);
    for (int i = 0; i <= axisSteps; ++i) {
        auto *tick = new MyWidget(this);
        tick->setSheet(Style::sliderTrack);
        tick->setFixedSize(1, 10);
        axis->addWidget(tick, 0, i + 1, Qt::AlignHCenter);
        StyledLabel &label = m_axisLabels[static_cast<size_t>(i)];
        label.setFixedWidth(27);
        label.setAlignment(Qt::AlignCenter);
        axis->addWidget(&label, 1, i + 1);
    }

    auto *block = new QVBoxLayout; // the content layout's
    block->setSpacing(8);
    block->addLayout(top);
    block->addLayout(middle);
    block->addLayout(axis);
    contentLayout()->addStretch();
    contentLayout()->addLayout(block);
    contentLayout()->addStretch();
    stackContents(Contents::Centred);
}

void ScreenSlider::openedFrom(const DataLine &row)
{
    ScreenEditor::openedFrom(row);
    setOptions(row.options());
}

void ScreenSlider::bindProperty(Dt3Property *property)
{
    ScreenEditor::bindProperty(property);
    m_valueLabel.setText({}); // the number of the row before
}

void ScreenSlider::setOptions(const QMap<QString, QString> &options)
{
    const auto with = [&options](const char *key, auto use) {
        const auto option = options.find(QLatin1StringView(key));
        if (option != options.end())
            use(*option);
    };
    with("SmallIcon", [this](const QString &glyph) { m_smallIcon.setText(glyph); });
    with("BigIcon", [this](const QString &glyph) { m_bigIcon.setText(glyph); });
    with("MinValue", [this](const QString &number) { m_slider.setMinimum(number.toInt()); });
    with("MaxValue", [this](const QString &number) { m_slider.setMaximum(number.toInt()); });
    with("StepSize", [this](const QString &number) { m_slider.setStep(number.toInt()); });
    m_slider.setBipolar(options.contains(QStringLiteral("GrowFromZero")));
    m_unit = options.value(QStringLiteral("MiddleCaption"));
    m_smallIcon.setSheet(icon(options.contains(QStringLiteral("IconSizeSame")) ? 30 : 20));
    const QString secondary = options.value(QStringLiteral("SecondaryPropName"));
    m_secondaryPath = secondary.isEmpty() ? QString() : node() + '.' + secondary;
    m_secondaryUnit = options.value(QStringLiteral("SecondaryPropCaption"));
    m_secondaryLabel.setVisible(options.contains(QStringLiteral("SecondaryPropCaption")));
    setAxis(options.value(QStringLiteral("AxisFontSize"), QStringLiteral("17")).toInt());
}

void ScreenSlider::setAxis(int fontSize)
{
    const double range = double(m_slider.maximum()) - m_slider.minimum();
    for (int i = 0; i <= axisSteps; ++i) {
        StyledLabel &label = m_axisLabels[static_cast<size_t>(i)];
        const auto mark = static_cast<float>(range * i / axisSteps + m_slider.minimum());
        label.setText(QString::number(static_cast<qint64>(std::round(mark))));
        label.setSheet(whiteText(QStringLiteral("RobotoMedium"), fontSize));
    }
}

void ScreenSlider::setActive(bool active)
{
    if (!active)
        return;
    fetch();
    if (m_secondaryPath.isEmpty())
        showSecondaryValue({});
    else
        get(m_secondaryPath);
    open(node());
    if (!m_openNodes.contains(node()))
        m_openNodes.append(node());
    navigator().select(); // the slider takes the keys at once
}

void ScreenSlider::connectionLost()
{
    for (const QString &held : std::as_const(m_openNodes))
        Dt3Sink::close(held);
    m_openNodes.clear();
}

void ScreenSlider::propertyReceived(const QString &property, const QString &value)
{
    if (isEdited(property))
        showValue(value);
    else if (!m_secondaryPath.isEmpty() && property == m_secondaryPath)
        showSecondaryValue(value);
}

void ScreenSlider::propertyChanged(const QString &property, const QString &value) { propertyReceived(property, value); }

void ScreenSlider::showValue(const QString &value)
{
    m_slider.setValue(value);
    m_valueLabel.setText(roundedNumber(value) + ' ' + m_unit);
}

void ScreenSlider::showSecondaryValue(const QString &value)
{
    m_secondaryLabel.setText(roundedNumber(value) + ' ' + m_secondaryUnit);
}

void ScreenSlider::changed(int delta)
{
    // A method, or another property to write to, takes the step; the property itself takes the new value.
    const bool relative = edited().hasMethodPath() || edited().hasWritePath();
    write(QString::number(relative ? delta : m_slider.valueText().toInt() + delta));
}

void ScreenSlider::leave()
{
    m_collection.hover();
    hideMe();
}
