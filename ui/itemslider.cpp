#include "ui/itemslider.h"

#include "ui/keys.h"
#include "ui/navigationmanager.h"
#include "ui/styles.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>

ItemSlider::ItemSlider(QWidget *parent, int minimum, int maximum, int step)
    : MyWidget(parent)
    , m_minimum(minimum)
    , m_maximum(maximum)
    , m_step(step)
    , m_bar(this)
{
    setSheet(Style::sliderTrack);
    m_bar.setSheet(QStringLiteral(
        "*{ border: 0px}*[state=\"normal\"]{   background-color: #44da6e}"
        "*[state=\"hovered\"]{  background-color: #44da6e}*[state=\"selected\"]{ background-color: #44da6e}"));
    setState(normalState);
}

void ItemSlider::setMinimum(int minimum)
{
    m_minimum = minimum;
    layOutBar();
}

void ItemSlider::setMaximum(int maximum)
{
    m_maximum = maximum;
    layOutBar();
}

void ItemSlider::setBipolar(bool bipolar)
{
    m_bipolar = bipolar;
    layOutBar();
}

void ItemSlider::setValue(const QString &text)
{
    const double number = text.toDouble();
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    m_value = std::isnan(number) ? 0 : static_cast<int>(std::clamp(number, lowest, highest));
    layOutBar();
}

void ItemSlider::layOutBar()
{
    const auto width = static_cast<float>(this->width());
    const float range = static_cast<float>(m_maximum) - static_cast<float>(m_minimum);
    const auto position = [&](int value) {
        const float share = range > 0 ? (static_cast<float>(value) - static_cast<float>(m_minimum)) / range : 0;
        return static_cast<int>(
            std::clamp(share * width, 0.0F, width)); // the device may report more than the scale has
    };
    const int from = m_bipolar ? position(std::min(m_value, 0)) : 0;
    const int to = m_bipolar ? position(std::max(m_value, 0)) : position(m_value);
    m_bar.setGeometry(from, m_bar.y(), std::max(1, to - from), height());
}

void ItemSlider::resizeEvent(QResizeEvent *) { layOutBar(); }

void ItemSlider::setState(const char *state)
{
    setStyledProperty(stateProperty, state);
    m_bar.setStyledProperty(stateProperty, state);
}

void ItemSlider::normal() { setState(normalState); }
void ItemSlider::hover() { setState(hoveredState); }

void ItemSlider::select()
{
    NavigationManager::instance()->pushFocus(this);
    setState(selectedState);
}

void ItemSlider::askForStep(int direction)
{
    const qint64 target = qint64{m_value} + direction * qint64{m_step};
    if (std::min<qint64>(m_value, target) >= m_minimum && std::max<qint64>(m_value, target) <= m_maximum)
        emit signalChanged(direction * m_step);
}

void ItemSlider::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (const int steps = wheelSteps(key)) {
        askForStep(steps > 0 ? 1 : -1);
    } else if (isConfirm(key) || key == Qt::Key_Escape) {
        NavigationManager::instance()->popFocus(this);
        emit signalDeselected();
    } else if (key == Qt::Key_Alt) {
        QCoreApplication::exit(0);
    }
    event->accept(); // the screen behind takes no part while an item has the keyboard
}
