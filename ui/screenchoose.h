#pragma once

#include "protocol/dt3sink.h"
#include "ui/myscroll.h"
#include "ui/screen.h"

#include <memory>
#include <vector>

class Dt3Property;

/// Edits a property by a list of its captions. Selecting one writes it at once; the screen stays, and the mark
/// moves when the device reports the change.
class ScreenChoose : public Screen, public Dt3Sink
{
    Q_OBJECT
public:
    explicit ScreenChoose(QWidget *parent);

    /// Offers the captions of the property, which is borrowed.
    void bindProperty(Dt3Property *property);

    void setActive(bool active) override;
    void openedFrom(const DataLine &row) override;
    void propertyReceived(const QString &property, const QString &value) override;
    void propertyChanged(const QString &property, const QString &value) override;

    /// Marks the option that is set.
    virtual void showValue(const QString &property, const QString &caption);

private:
    /// A row of the list. Rows are reused; the page has as many as its longest list had.
    class ChooseLine : public QObject
    {
    public:
        explicit ChooseLine(QWidget *screen);
        void setMarked(bool marked);
        void updateIconText();

        ItemLabel captionLabel, iconLabel;
        Collection collection;
    };

    void addLine();
    void selectedLabel(const ChooseLine *line);
    void mark(const QString &caption, bool marked);

    Dt3Property *m_property = nullptr;
    MyScroll m_scroll;
    QMap<QString, ChooseLine *> m_optionLines;
    std::vector<std::unique_ptr<ChooseLine>> m_chooseLines; ///< Behind the scroll area, which they leave first.
    QString m_currentCaption;
};
