#pragma once

#include <QLabel>

/// A general label that shortens its text to its width with an ellipsis.
class ElidedLabel : public QLabel
{
    Q_OBJECT
public:
    explicit ElidedLabel(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    explicit ElidedLabel(const QString &text, QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    /// @param mode where the ellipsis stands; Qt::ElideNone makes it a plain label.
    ElidedLabel(const QString &text, Qt::TextElideMode mode, QWidget *parent = nullptr, Qt::WindowFlags flags = {});

    void setText(const QString &text);
    void elideTo(int width);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    Qt::TextElideMode m_mode = Qt::ElideRight;
    QString m_elidedText;
};
