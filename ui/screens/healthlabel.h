#pragma once

#include "ui/propertydisplaylabel.h"

constexpr int healthLabelWidth = 40; // pixels

/// A reading in the middle of its place; to become that of a row of the page.
inline PropertyDisplayLabel *newHealthLabel(QWidget *page)
{
    auto *label = new PropertyDisplayLabelVoltageAndTemperature(page);
    label->setFixedWidth(healthLabelWidth);
    label->setAlignment(Qt::AlignCenter);
    return label;
}
