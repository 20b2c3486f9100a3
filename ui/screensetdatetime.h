#pragma once

#include "ui/screensetfields.h"

/// The base of the two editors of a date-time, "2026-11-24T12:00:00", each of which edits one half. The clock of the
/// device goes on meanwhile: its changes keep the other half up to date, and leave the wheels alone.
class ScreenSetDateTime : public ScreenSetFields
{
    Q_OBJECT
public:
    void setActive(bool active) override;
    void propertyReceived(const QString &property, const QString &value) override;
    void propertyChanged(const QString &property, const QString &value) override;

protected:
    enum class Half { Date = 0, Time = 1 };
    ScreenSetDateTime(QWidget *parent, Half edited, std::initializer_list<Field> fields, const QString &separator);

protected slots:
    void savePressed() override;

private:
    const Half m_edited;
    QString m_otherPart; ///< Of the last tick of the clock that was seen.
};

/// Edits the time.
class ScreenSetTime : public ScreenSetDateTime
{
    Q_OBJECT
public:
    explicit ScreenSetTime(QWidget *parent);
};

/// Edits the date; the device judges whether the month has such a day.
class ScreenSetDate : public ScreenSetDateTime
{
    Q_OBJECT
public:
    explicit ScreenSetDate(QWidget *parent);
};
