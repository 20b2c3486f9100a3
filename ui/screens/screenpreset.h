#pragma once

#include "ui/screendata.h"

class DataLinePreset;
struct SharedScreens;

/// The two lists of presets.
class ScreenPreset : public ScreenData
{
    Q_OBJECT
public:
    ScreenPreset(QWidget *parent, const SharedScreens &shared);
};

/// A list of the device's presets: first those of buttons, in the order of the buttons, then the others in the order
/// they came. It follows the device all the time, shown or not.
class ScreenPresetCommon : public ScreenData
{
    Q_OBJECT
public:
    void setActive(bool active) override;

public slots:
    void onPresetAdded(const QString &presetName);
    virtual void onPresetRemoved(const QString &presetName);
    virtual void onPresetAssignedButtonChange(int buttonNum, const QString &presetName);

signals:
    /// The list shows, also where it has shown before; or the operator has left it.
    void onShowChange(bool isShown);

protected slots:
    void backPressed() override;
    virtual void variantIdentified() = 0;

protected:
    /// Rows open the confirmation. Borrowed. Holds a pending entry, which variantIdentified() ends.
    ScreenPresetCommon(QWidget *parent, Screen *confirmation);

    void keyPressEvent(QKeyEvent *event) override;

    DataLinePreset *lineOfPreset(const QString &name) const;
    DataLinePreset *lineOfButton(int button) const;
    void addPresetLine(const QString &caption, int button);
    /// The rows stay; their captions and badges move.
    void resort();

private:
    QList<DataLinePreset *> presetLines() const;
    void reassign(DataLinePreset *line, int button, const QString &name);

    Screen *m_confirmation;
};

/// Presets to load.
class ScreenLoadPreset : public ScreenPresetCommon
{
    Q_OBJECT
public:
    ScreenLoadPreset(QWidget *parent, Screen *confirmation);

protected slots:
    void variantIdentified() override;
};

/// Presets to overwrite, and free places: each button that has none, or a few names where the frame has no such
/// buttons.
class ScreenSavePreset : public ScreenPresetCommon
{
    Q_OBJECT
public:
    ScreenSavePreset(QWidget *parent, Screen *confirmation);

    void onPresetRemoved(const QString &presetName) override;
    void onPresetAssignedButtonChange(int buttonNum, const QString &presetName) override;

protected slots:
    void variantIdentified() override;

private:
    void addFreeButtons();
};
