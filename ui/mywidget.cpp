#include "ui/mywidget.h"

#include <QPainter>
#include <QPaintEvent>
#include <QVariant>

MyWidget::MyWidget(QWidget *parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void MyWidget::setSheet(const QString &text)
{
    m_look.setSheet(text);
    updateLook();
}

void MyWidget::setStyledProperty(const char *name, const QVariant &value)
{
    setProperty(name, value);
    updateLook();
}

void MyWidget::updateLook()
{
    if (m_look.update(*this))
        update();
}

void MyWidget::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    m_look->paintBox(painter, rect(), event->region());
}
