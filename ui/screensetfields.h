#pragma once

#include "protocol/dt3sink.h"
#include "ui/itemwheelrangelabel.h"
#include "ui/screen.h"
#include "ui/wheelgroup.h"

#include <memory>
#include <vector>

class Dt3Property;

/// The base of the editors of several numbers with a separator between them, a wheel each. Written on Save.
class ScreenSetFields : public Screen, public Dt3Sink
{
    Q_OBJECT
public:
    /// The property is borrowed.
    void bindProperty(Dt3Property *property) { m_property = property; }
    void openedFrom(const DataLine &row) override;

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

    /// Fetches the property.
    void fetch();
    bool isBound(const QString &path) const;
    QString node() const;
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
    Dt3Property *m_property = nullptr;
    std::vector<std::unique_ptr<Wheel>> m_wheels;
};
