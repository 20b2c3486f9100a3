#pragma once

#include <QList>
#include <QObject>

class InterfaceItem;
class QWidget;

/// Widgets that the highlight treats as one: the icon, the caption and the values of a row, or a wheel and its
/// arrows. The widgets are borrowed.
class Collection : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// An InterfaceItem among them follows the highlight; any other widget is only shown and hidden with the rest.
    void addWidget(QWidget *widget);

    /// @param skipped whether the highlight passes the collection over although it shows.
    void showAll(bool skipped);
    /// Hidden, and skipped.
    void hideAll();
    bool isSkipped() const { return m_skipped; }

public slots:
    // For every item among the widgets.
    void normal();
    void hover();
    void select();

private:
    QList<InterfaceItem *> m_items;
    QList<QWidget *> m_widgets;
    bool m_skipped = false;
};
