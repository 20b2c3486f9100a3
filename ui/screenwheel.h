#pragma once

#include "ui/itemwheellistlabel.h"
#include "ui/screeneditor.h"
#include "ui/wheelgroup.h"

/// Edits a property by a wheel of its captions. Written at once when the wheel is confirmed.
class ScreenWheel : public ScreenEditor
{
    Q_OBJECT
public:
    explicit ScreenWheel(QWidget *parent);

    /// Offers the captions of the property.
    void bindProperty(Dt3Property *property) override;

    void setActive(bool active) override;
    void propertyReceived(const QString &property, const QString &value) override;

private:
    void chosen();

    ItemWheelListLabel m_wheel;
    WheelGroup m_group;
};
