#pragma once

#include "ui/interfaceitem.h"
#include "ui/mywidget.h"

/// A bar that shows a number in its range. Turned, it only asks for a step; whoever listens changes the number
/// and says what it is now.
class ItemSlider : public MyWidget, public InterfaceItem
{
    Q_OBJECT
public:
    ItemSlider(QWidget *parent, int minimum, int maximum, int step);

    // A scale without length shows an empty bar, and takes no step.
    void setMinimum(int minimum);
    void setMaximum(int maximum);
    void setStep(int step) { m_step = step; }
    /// @param bipolar whether the bar grows from zero instead of from the minimum.
    void setBipolar(bool bipolar);
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    int step() const { return m_step; }

    /// @param text a number, truncated to a whole one; 0 where it is none.
    void setValue(const QString &text);
    QString valueText() const { return QString::number(m_value); }

    void normal() override;
    void hover() override;
    /// Takes the keyboard until Return or Escape.
    void select() override;

signals:
    /// A step was asked for, and would stay in the range.
    void signalChanged(int delta);
    void signalDeselected();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void setState(const char *state);
    void askForStep(int direction);
    void layOutBar();

    int m_value = 0;
    int m_minimum;
    int m_maximum;
    int m_step;
    bool m_bipolar = false;
    MyWidget m_bar;
};
