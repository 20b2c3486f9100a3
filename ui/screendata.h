#pragma once

#include "protocol/dt3sink.h"
#include "ui/dataline.h"
#include "ui/myscroll.h"
#include "ui/screen.h"

#include <initializer_list>
#include <map>

/// A list page: rows that show live values of the device, and open their child screen when they are selected.
///
/// While it is the visible screen it has fetched every property it shows or watches and holds their nodes open.
class ScreenData : public Screen, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenData(QWidget *parent);

    void setActive(bool active) override;
    void openedFrom(const DataLine &row) override;

    void propertyReceived(const QString &property, const QString &value) override;
    void propertyChanged(const QString &property, const QString &value) override;

    /// Points every row and value that is not pinned at this port.
    virtual void setPort(const QString &port);

protected:
    void turnedPastLastStop(int direction) override;
    /// Takes note of a board that is absent, by the first number in the property's path, and calls setPort("").
    virtual void noteAbsentIndex(const QString &property, const QString &value);
    /// Writes a raw value into the labels that show the property.
    virtual void updateValue(const QString &property, const QString &value);

    /// One row of a page's table.
    struct Row
    {
        /// @param name the caption, UTF-8. @param page opens when the row is selected; borrowed.
        Row(const char *name, Screen *page = nullptr);
        /// Shows the property. @param shownBy becomes the row's; a plain label where none is given.
        Row(const char *name, Dt3Property *shown, Screen *editor = nullptr, PropertyDisplayLabel *shownBy = nullptr);
        Row(const char *name, Dt3Property *shown, Screen *editor, const QMap<QString, QString> &editorOptions,
            PropertyDisplayLabel *shownBy = nullptr);

        const char *caption;
        Screen *child;
        Dt3Property *property = nullptr;
        PropertyDisplayLabel *label = nullptr;
        QMap<QString, QString> options;
    };
    /// The page, or the next part of it, from top to bottom.
    void addRows(std::initializer_list<Row> rows);

    // Rows, in the order they are added. Their pointers are good until the row is removed.
    DataLine *addLine(const QString &caption, Screen *child = nullptr);
    /// @param label shows the value; a plain one where none is given.
    DataLine *addPropertyLine(
        const QString &caption, Dt3Property *property, Screen *child = nullptr, PropertyDisplayLabel *label = nullptr);
    /// One more value in the row. @param label becomes the row's.
    void addValue(DataLine *line, Dt3Property *property, PropertyDisplayLabel *label);
    /// A caption over the rows below it.
    DataLine *addHeaderLine(const QString &caption);
    /// For a row made by the caller with this screen as its parent. @return the row.
    DataLine *insertLine(DataLine *line, const QString &caption, Screen *child, int captionColumnSpan);
    /// The first row with this caption, if any.
    void removeLine(const QString &caption);
    void removeLine(DataLine *line);
    void clearLines();
    const QList<DataLine *> &lines() const { return m_lines; }

    // What the page has of its rows. Values that come for a hidden row show with it.
    void showLine(DataLine *line) { navigator().show(line->collection(), false); }
    void hideLine(DataLine *line) { navigator().hide(line->collection()); }
    void setLineShown(DataLine *line, bool shown);
    /// To be read, not to be selected: the highlight passes it over.
    void showDisplayOnly(DataLine *line) { navigator().show(line->collection(), true); }

    /// The one that the page is opened for; empty until then, and for a page that is not one of a port's.
    const QString &port() const { return m_port; }
    /// The port is another one: the values of the one before must not show while the new ones are on their way.
    virtual void forgetValues();
    const QList<int> &absentIndices() const { return m_absentIndices; }

    /// A property that is fetched and watched with the page, but not shown by a row. Borrowed.
    void addWatchedProperty(Dt3Property *property) { m_watchedProperties.append(property); }

    enum class Request { Get, Open, Close };
    /// Fetches each property, or opens each node, that the page shows or watches, once; or closes the open nodes.
    void requestAll(Request mode);
    void rebuildValueIndex();

private:
    void clicked(DataLine *line);
    void placeLine(DataLine *line, int row, int captionColumnSpan);
    void dropLine(qsizetype index);
    QList<const Dt3Property *> allProperties() const;

    QString m_port;
    QList<DataLine *> m_lines;
    QList<int> m_absentIndices;
    MyScroll m_scroll;
    QList<Dt3Property *> m_watchedProperties;
    std::multimap<QString, PropertyDisplayLabel *> m_valueIndex;
    QStringList m_openNodes; ///< As they were when they were opened: rows may come, go and change their port.
};
