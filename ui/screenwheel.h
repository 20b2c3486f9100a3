#pragma once

#include "protocol/dt3sink.h"
#include "ui/itemwheellistlabel.h"
#include "ui/screen.h"
#include "ui/wheelgroup.h"

class Dt3Property;

/// Edits a property by a wheel of its captions. Written at once when the wheel is confirmed.
class ScreenWheel : public Screen, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenWheel(QWidget *parent);

    /// Offers the captions of the property, which is borrowed.
    void bindProperty(Dt3Property *property);

    void setActive(bool active) override;
    void openedFrom(const DataLine &row) override;
    void propertyReceived(const QString &property, const QString &value) override;

private:
    void chosen();

    Dt3Property *m_property = nullptr;
    ItemWheelListLabel m_wheel;
    WheelGroup m_group;
};
