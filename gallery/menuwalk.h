#pragma once

#include <QStringList>

#include <functional>

class Screen;

/// Goes through the menu of the process with the keys of its knob: opens what each row opens, and comes back.
class MenuWalk
{
public:
    /// A page at rest. @param place the captions that lead to it; none for the top of the menu. @param continued the
    /// rest of a page that is longer than the LCD.
    using Visit = std::function<void(const QStringList &place, bool continued)>;
    /// Whether to open the row at this place.
    using Choice = std::function<bool(const QStringList &place)>;

    MenuWalk(Visit visit, Choice choice);

    /// From the top of the menu, which is on the LCD. @return what went wrong, in words.
    QStringList run();

private:
    void page(const QStringList &place);
    void rows(const QStringList &place);
    void row(const QStringList &place);
    void complain(const QStringList &place, const QString &what);

    Visit m_visit;
    Choice m_choice;
    QStringList m_faults;
};
