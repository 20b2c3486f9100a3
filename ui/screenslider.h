#pragma once

#include "ui/itemslider.h"
#include "ui/screeneditor.h"

#include <array>

/// Edits a number with a bar over an axis. Each step is written at once; the bar follows what the device reports.
///
/// It holds the nodes of the properties that it was opened for until the link is lost.
class ScreenSlider : public ScreenEditor
{
    Q_OBJECT
public:
    explicit ScreenSlider(QWidget *parent);

    void bindProperty(Dt3Property *property) override;
    /// The scale and the captions of the row that opens the editor:
    /// "SmallIcon", "BigIcon": glyphs; "MinValue", "MaxValue", "StepSize": integers; "GrowFromZero": the bar starts
    /// at zero; "MiddleCaption": the unit; "IconSizeSame": both icons are large; "AxisFontSize": in pixels;
    /// "SecondaryPropName", "SecondaryPropCaption": another property of the same node, and its unit.
    void setOptions(const QMap<QString, QString> &options);

    void setActive(bool active) override;
    void openedFrom(const DataLine &row) override;
    void propertyReceived(const QString &property, const QString &value) override;
    void propertyChanged(const QString &property, const QString &value) override;

    /// Lets go of the nodes, which no new connection knows of.
    void connectionLost();

private:
    void layOutBlock();
    void setAxis(int fontSize);
    void changed(int delta);
    void leave();
    void showValue(const QString &value);
    void showSecondaryValue(const QString &value);

    ItemSlider m_slider;
    Collection m_collection;
    StyledLabel m_smallIcon, m_bigIcon, m_valueLabel, m_secondaryLabel;
    std::array<StyledLabel, 11> m_axisLabels;
    QString m_unit;
    QString m_secondaryPath, m_secondaryUnit;
    QStringList m_openNodes;
};
