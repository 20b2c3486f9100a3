#pragma once

#include "ui/collection.h"
#include "ui/itemlabel.h"

#include <QHBoxLayout>
#include <QMap>
#include <QPointer>

class Dt3Property;
class PropertyDisplayLabel;
class Screen;

/// A row of a list page: an icon and a caption, which the highlight reaches, and values. ScreenData lays it out,
/// updates its values and opens its child screen.
///
/// The row owns its labels and the widgets it is given, until the page they stand in is destroyed.
class DataLine : public QObject
{
    Q_OBJECT
public:
    /// @param screen the page.
    explicit DataLine(Screen *screen);
    ~DataLine() override;

    const QString &caption() const { return m_caption; }
    /// The row's name and what it shows.
    void setCaption(const QString &caption);
    /// What it shows; its name stays.
    void setCaptionText(const QString &text);
    /// For a row whose value is no property.
    void setValueText(const QString &text);

    /// @param pinned whether the row keeps this port when its page is opened for another one.
    void setPort(const QString &port, bool pinned);
    const QString &port() const { return m_port; }
    bool pinned() const { return m_pinned; }

    /// What the editor that the row opens is told, by key.
    const QMap<QString, QString> &options() const { return m_options; }
    void setOption(const QString &key, const QString &value) { m_options.insert(key, value); }
    void setOptions(const QMap<QString, QString> &options) { m_options = options; }

    /// The screen that opens when the row is selected; null for none. Borrowed.
    Screen *child() const { return m_child; }
    void setChild(Screen *child);
    /// The property that the row edits; null for none. Borrowed.
    Dt3Property *property() const { return m_property; }
    void setProperty(Dt3Property *property) { m_property = property; }

    void addValueWidget(PropertyDisplayLabel *label);
    /// A widget that shows no value of the device.
    void addWidget(QWidget *widget);
    const QList<PropertyDisplayLabel *> &values() const { return m_values; }

    // For the page that lays it out.
    ItemLabel *captionLabel() const { return m_captionLabel; }
    ItemLabel *iconLabel() const { return m_iconLabel; }
    QHBoxLayout *valueLayout() const { return m_valueLayout; }
    Collection *collection() { return &m_collection; }

private:
    Screen *m_child = nullptr;
    Dt3Property *m_property = nullptr;
    QString m_port;
    bool m_pinned = false;
    QString m_valueText;
    ItemLabel *m_captionLabel, *m_iconLabel;
    Collection m_collection;
    QPointer<QHBoxLayout> m_valueLayout;
    QList<QPointer<QWidget>> m_widgets; ///< All of the row.
    QList<PropertyDisplayLabel *> m_values;
    QMap<QString, QString> m_options;
    QString m_caption;
};
