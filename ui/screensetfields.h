#pragma once

#include "ui/itemwheelrangelabel.h"
#include "ui/screeneditor.h"
#include "ui/wheelgroup.h"

#include <memory>
#include <vector>

/// The base of the editors of several numbers with a separator between them, a wheel each. Written on Save.
class ScreenSetFields : public ScreenEditor
{
    Q_OBJECT
protected:
    struct Field
    {
        int minimum, maximum;
        bool zeroPad;
        int width; ///< In pixels.
    };

    ScreenSetFields(QWidget *parent, std::initializer_list<Field> fields, const QString &separator);

    /// Takes over a text of as many fields as there are wheels; any other is ignored.
    void showFields(const QString &text);
    /// What the wheels show, with the separator.
    QString fields() const;

    /// Writes the property and leaves.
    void save(const QString &value);

private:
    struct Wheel
    {
        Wheel(QWidget *parent, const Field &field);
        ItemWheelRangeLabel label;
        WheelGroup group;
    };

    const QString m_separator;
    std::vector<std::unique_ptr<Wheel>> m_wheels;
};
