#include "ui/screens/datalinepreset.h"

#include "ui/screen.h"
#include "ui/styles.h"

DataLinePreset::DataLinePreset(Screen *screen)
    : DataLine(screen)
    , m_badge(new StyledLabel(screen))
{
}

void DataLinePreset::setup()
{
    m_badge->setSheet(Style::noPresetBadge);
    addWidget(m_badge);
}

void DataLinePreset::setButton(int number)
{
    if (number == m_button)
        return;
    m_button = number;
    m_badge->setText(number > 0 ? QString::number(number) : QString());
    m_badge->setSheet(number > 0 ? Style::presetBadge : Style::noPresetBadge);
}
