#pragma once

#include "ui/myscroll.h"
#include "ui/screeneditor.h"

#include <memory>
#include <vector>

/// Edits a property by a list of its captions. Selecting one writes it at once; the screen stays, and the mark
/// moves when the device reports the change.
class ScreenChoose : public ScreenEditor
{
    Q_OBJECT
public:
    explicit ScreenChoose(QWidget *parent);

    /// Offers the captions of the property.
    void bindProperty(Dt3Property *property) override;

    void setActive(bool active) override;
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

    MyScroll m_scroll;
    QMap<QString, ChooseLine *> m_optionLines;
    std::vector<std::unique_ptr<ChooseLine>> m_chooseLines; ///< Behind the scroll area, which they leave first.
    QString m_currentCaption;
};
