#pragma once

#include "ui/styledlabel.h"

#include <QStringList>
#include <QTimer>

#include <optional>

class Dt3Property;

/// Shows the value of a device property. The derived labels format it.
class PropertyDisplayLabel : public StyledLabel
{
    Q_OBJECT
public:
    /// Shows "TBD" until a value comes. @param extraSheet rules behind those of all value labels.
    explicit PropertyDisplayLabel(QWidget *parent, const QString &extraSheet = {});

    /// Borrowed; null until it is bound.
    Dt3Property *property() const { return m_property; }
    void setProperty(Dt3Property *property) { m_property = property; }

    /// Shows it now, or, while the label is hidden, as soon as it is not.
    void showValue(const QString &value);
    /// What it shows is of no account any more. @param text shows until a value comes.
    virtual void forgetValue(const QString &text = QStringLiteral("TBD"));

    using QObject::property;
    using QObject::setProperty;

protected:
    void showEvent(QShowEvent *event) override;

private:
    Dt3Property *m_property = nullptr;
    std::optional<QString> m_hiddenValue; ///< Came while the label was hidden.
};

/// "24 MHz"
class PropertyDisplayLabelNumericValue : public PropertyDisplayLabel
{
    Q_OBJECT
public:
    /// @param rounded whether to a whole number, halves away from zero; what is no number stays as it is.
    PropertyDisplayLabelNumericValue(QWidget *parent, bool rounded, const QString &unit);
    void setText(const QString &value) override;

private:
    const bool m_rounded;
    const QString m_unit;
};

/// One half of "2026-11-24T12:00:00".
class PropertyDisplayLabelTimeAndDate : public PropertyDisplayLabel
{
    Q_OBJECT
public:
    PropertyDisplayLabelTimeAndDate(QWidget *parent, bool showTime);
    void setText(const QString &value) override;

private:
    const bool m_showTime;
};

/// The items of a comma-separated list one after another, 750 ms each.
class PropertyDisplayLabelAudioInfo : public PropertyDisplayLabel
{
    Q_OBJECT
public:
    explicit PropertyDisplayLabelAudioInfo(QWidget *parent);
    void setText(const QString &value) override;
    void forgetValue(const QString &text) override;

public slots:
    void tick();

private:
    QStringList m_parts;
    qsizetype m_index = 0;
    QTimer m_timer;
};

/// The reading of "12.1 V; 11.5; 12.5; 11.0; 13.0; ...", without its unit, in the colour that its limits give it:
/// normal from the 2nd to the 3rd field, a warning from the 4th to the 5th, else an error. Without limits it is normal.
class PropertyDisplayLabelVoltageAndTemperature : public PropertyDisplayLabel
{
    Q_OBJECT
public:
    explicit PropertyDisplayLabelVoltageAndTemperature(QWidget *parent);
    void setText(const QString &value) override;
};

/// "running" in green, anything else as "stopped" in red.
class PropertyDisplayLabelPowerSupplyState : public PropertyDisplayLabel
{
    Q_OBJECT
public:
    explicit PropertyDisplayLabelPowerSupplyState(QWidget *parent);
    void setText(const QString &value) override;
};
