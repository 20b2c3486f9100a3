#pragma once

#include "protocol/dt3sink.h"
#include "ui/screenwarning.h"

/// Asks whether to load a preset.
class ScreenConfirmLoadPreset : public ScreenWarning, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenConfirmLoadPreset(QWidget *parent);

    void openedFrom(const DataLine &row) override;
    void setPresetName(const QString &name);

protected slots:
    void savePressed() override;

private:
    QString m_name;
};

/// Asks whether to create a preset, or to overwrite the one there is.
class ScreenConfirmSavePreset : public ScreenWarning, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenConfirmSavePreset(QWidget *parent);

    void openedFrom(const DataLine &row) override;
    /// @param name may be empty for a button that has no preset yet. @param exists on the device.
    /// @param button 0 for none.
    void setPreset(const QString &name, bool exists, int button);

protected slots:
    void savePressed() override;

private:
    QString m_name;
    bool m_exists = false;
    int m_button = 0;
};

/// Says that the button has no preset to load.
class ScreenPresetWarning : public ScreenWarning
{
    Q_OBJECT
public:
    explicit ScreenPresetWarning(QWidget *parent);

    void setButton(int button);
};
