#pragma once

#include "protocol/dt3sink.h"
#include "ui/dataline.h"
#include "ui/myscroll.h"
#include "ui/screen.h"

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
    /// Takes note of a board that is absent, by the first number in the property's path, and calls setPort("").
    virtual void noteAbsentIndex(const QString &property, const QString &value);
    /// Writes a raw value into the labels that show the property.
    virtual void updateValue(const QString &property, const QString &value);

    // Rows, in the order they are added. Their pointers are good until the row is removed.
    DataLine *addLine(const QString &caption, Screen *child = nullptr);
    /// @param label shows the value; a plain one where none is given.
    DataLine *addPropertyLine(
        const QString &caption, Dt3Property *property, Screen *child = nullptr, PropertyDisplayLabel *label = nullptr);
    /// A caption over the rows below it.
    DataLine *addHeaderLine(const QString &caption);
    /// For a row made by the caller with this screen as its parent. @return the row.
    DataLine *insertLine(DataLine *line, const QString &caption, Screen *child, int captionColumnSpan);
    /// The first row with this caption, if any.
    void removeLine(const QString &caption);
    void clearLines();
    const QList<DataLine *> &lines() const { return m_lines; }
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

    QList<DataLine *> m_lines;
    QList<int> m_absentIndices;
    MyScroll m_scroll;
    QList<Dt3Property *> m_watchedProperties;
    std::multimap<QString, PropertyDisplayLabel *> m_valueIndex;
    QStringList m_openNodes; ///< As they were when they were opened: rows may come, go and change their port.
};
