#include "ui/screenwheel.h"

#include "protocol/dt3property.h"

ScreenWheel::ScreenWheel(QWidget *parent)
    : ScreenEditor(parent)
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

void ScreenWheel::bindProperty(Dt3Property *property)
{
    ScreenEditor::bindProperty(property);
    m_wheel.setOptions(property->captions());
}

void ScreenWheel::setActive(bool active)
{
    if (active)
        fetch();
}

void ScreenWheel::propertyReceived(const QString &property, const QString &value)
{
    if (isEdited(property))
        m_wheel.setCurrentText(value);
}

void ScreenWheel::chosen() { write(m_wheel.text()); }
