#pragma once

#include "ui/itemwheel.h"

#include <QStringList>

/// A wheel of texts.
class ItemWheelListLabel : public ItemWheel
{
    Q_OBJECT
public:
    /// @param wrap whether the first option follows the last.
    ItemWheelListLabel(QWidget *parent, bool wrap);

    /// Shows the first option, or nothing where there is none.
    void setOptions(const QStringList &options);
    void clearOptions();
    /// Appends what is not there yet. The first one is shown at once.
    void addOption(const QString &text);
    /// In front of the first option equal to @p before, else at the end.
    void insertOption(const QString &before, const QString &text);
    /// Where the option is the one that shows, its neighbour takes its place on the label.
    void removeOption(const QString &text);
    bool hasOption(const QString &text) const { return m_options.contains(text); }
    int optionCount() const { return static_cast<int>(m_options.size()); }
    /// Shows a text, and keeps it as the one that Escape brings back; logged where it is no option.
    void setCurrentText(const QString &text);

    /// Does nothing while the label shows something that is no option.
    void scroll(int delta) override;

signals:
    /// Also where the end was reached and the option stayed.
    void signalScrolled();

protected:
    void commit() override { m_committedText = text(); }
    void rewind() override { setText(m_committedText); }

private:
    const bool m_wrap;
    QStringList m_options;
    QString m_committedText;
};
