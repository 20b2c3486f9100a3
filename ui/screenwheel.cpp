#include "ui/screenwheel.h"

#include "protocol/dt3property.h"
#include "ui/dataline.h"

ScreenWheel::ScreenWheel(QWidget *parent)
    : Screen(parent)
    , m_wheel(this, false)
    , m_group(this, &m_wheel)
{
    m_wheel.setFixedSize(280, 35);
    connect(&m_wheel, &ItemLabel::signalChosen, this, &ScreenWheel::chosen);

    auto *block = new QVBoxLayout; // the content layout's
    block->setSpacing(8);
    block->addWidget(&m_group.up);
    block->addWidget(&m_wheel);
    block->addWidget(&m_group.down);
    contentLayout()->addStretch();
    contentLayout()->addLayout(block);
    contentLayout()->addStretch();
    stackContents(Contents::Centred);
    navigator().insert(saveCollection(), &m_group.collection);
    showBackButton();
}

void ScreenWheel::openedFrom(const DataLine &row) { bindProperty(row.property()); }

void ScreenWheel::bindProperty(Dt3Property *property)
{
    m_property = property;
    m_wheel.setOptions(property->captions());
}

void ScreenWheel::setActive(bool active)
{
    if (active && m_property)
        get(m_property->path());
}

void ScreenWheel::propertyReceived(const QString &property, const QString &value)
{
    if (m_property && property == m_property->path())
        m_wheel.setCurrentText(value);
}

void ScreenWheel::chosen() { setValue(*m_property, m_wheel.text()); }
