#include "ui/dataline.h"

#include "protocol/dt3property.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screen.h"
#include "ui/styles.h"

DataLine::DataLine(Screen *screen)
    : QObject(screen)
    , m_captionLabel(new ItemLabel(screen))
    , m_iconLabel(new ItemLabel(screen))
    , m_valueLayout(new QHBoxLayout) // the page's grid adopts it
    , m_widgets{m_iconLabel, m_captionLabel}
{
    m_captionLabel->setSheet(Style::caption);
    m_iconLabel->setAlignment(Qt::AlignCenter);
    setChild(nullptr);
    m_collection.addWidget(m_iconLabel);
    m_collection.addWidget(m_captionLabel);
}

DataLine::~DataLine()
{
    // One of them may be the sender of the signal that removes the row.
    for (const QPointer<QWidget> &widget : std::as_const(m_widgets)) {
        if (widget) {
            widget->hide();
            widget->disconnect();
            widget->deleteLater();
        }
    }
    delete m_valueLayout;
}

void DataLine::setCaption(const QString &caption)
{
    m_caption = caption;
    setCaptionText(caption);
}

void DataLine::setCaptionText(const QString &text) { m_captionLabel->setText(text); }

void DataLine::setChild(Screen *child)
{
    m_child = child;
    m_iconLabel->setText(child ? Glyph::chevronRight : Glyph::circle);
    m_iconLabel->setSheet(child ? Style::rowChevron : Style::rowDot);
}

void DataLine::setValueText(const QString &text)
{
    if (text == m_valueText)
        return;
    m_valueText = text;
    if (!m_values.isEmpty())
        m_values.first()->setText(text);
}

void DataLine::setPort(const QString &port, bool pinned)
{
    m_port = port;
    m_pinned = pinned;
    if (m_property)
        m_property->setPort(port, pinned);
}

void DataLine::addValueWidget(PropertyDisplayLabel *label)
{
    m_values.append(label);
    addWidget(label);
}

void DataLine::addWidget(QWidget *widget)
{
    m_widgets.append(widget);
    if (m_valueLayout->count() > 0)
        m_valueLayout->insertWidget(m_valueLayout->count() - 1, widget);
    else
        m_valueLayout->addWidget(widget);
    m_valueLayout->addStretch(1);
    m_collection.addWidget(widget);
}
