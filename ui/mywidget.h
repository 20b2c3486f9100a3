#pragma once

#include "ui/stylesheet.h"

#include <QWidget>

/// A plain widget that shows a style sheet's background and border; black without one. Opaque, so that Qt paints
/// nothing behind it.
class MyWidget : public QWidget
{
    Q_OBJECT
public:
    explicit MyWidget(QWidget *parent = nullptr, Qt::WindowFlags flags = {});

    void setSheet(const QString &text);
    /// Sets a dynamic property that the style sheet asks for. Repaints where that changes the look.
    void setStyledProperty(const char *name, const QVariant &value);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateLook();

    StyledLook m_look;
};
