#pragma once

#include "ui/stylesheet.h"

#include <QLabel>

/// A label of the menu: plain text, whatever it looks like, in the look that its style sheet gives to its state.
/// A line that is wider than the label ends in an ellipsis.
class StyledLabel : public QLabel
{
    Q_OBJECT
public:
    explicit StyledLabel(QWidget *parent = nullptr);

    /// What the label shows; derived labels format a device's value here.
    virtual void setText(const QString &text);

    void setSheet(const QString &text);
    /// Sets a dynamic property that the style sheet asks for. Repaints where that changes the look.
    void setStyledProperty(const char *name, const QVariant &value);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateLook();

    StyledLook m_look;
};
