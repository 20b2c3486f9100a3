#include "gallery/menuwalk.h"

#include "ui/interfaceitem.h"
#include "ui/itemlabel.h"
#include "ui/navigationmanager.h"
#include "ui/pool.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screendata.h"

#include <QApplication>
#include <QScrollBar>
#include <QTest>

namespace {

constexpr int mostStops = 100; // more than any page has

Screen *topScreen()
{
    const QList<Screen *> screens = Pool::instance()->findChildren<Screen *>(Qt::FindDirectChildrenOnly);
    for (Screen *screen : screens) {
        if (NavigationManager::instance()->isTop(screen))
            return screen;
    }
    return nullptr;
}

/// The caption that is highlighted; null where an icon or nothing is.
const ItemLabel *hovered(const Screen *screen)
{
    const QList<ItemLabel *> labels = screen->findChildren<ItemLabel *>();
    for (const ItemLabel *label : labels) {
        if (label->isVisible() && label->property(InterfaceItem::stateProperty) == InterfaceItem::hoveredState
            && label->font().family() != QLatin1StringView("FontAwesome"))
            return label;
    }
    return nullptr;
}

bool waitsForAnswer(const Screen *screen)
{
    const QList<PropertyDisplayLabel *> labels = screen->findChildren<PropertyDisplayLabel *>();
    return std::any_of(labels.begin(), labels.end(), [](const PropertyDisplayLabel *label) {
        return label->isVisible() && label->text() == QLatin1StringView("TBD");
    });
}

/// The page has slid in, and its values are there.
bool settles(const Screen *screen)
{
    return QTest::qWaitFor([screen] { return screen->pos() == QPoint() && !waitsForAnswer(screen); }, 3000);
}

QScrollBar *scrollBar(const Screen *screen)
{
    const auto *area = screen->findChild<QScrollArea *>();
    return area ? area->verticalScrollBar() : nullptr;
}

void key(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

} // namespace

MenuWalk::MenuWalk(Visit visit, Choice choice)
    : m_visit(std::move(visit))
    , m_choice(std::move(choice))
{
}

QStringList MenuWalk::run()
{
    page({});
    return m_faults;
}

void MenuWalk::complain(const QStringList &place, const QString &what)
{
    m_faults.append(QStringLiteral("%1: %2").arg(place.join(QStringLiteral(" > ")), what));
}

void MenuWalk::page(const QStringList &place)
{
    Screen *screen = topScreen();
    if (!screen || !settles(screen))
        complain(place, QStringLiteral("a value does not come"));
    m_visit(place, false);
    if (qobject_cast<ScreenData *>(screen))
        rows(place);
}

void MenuWalk::rows(const QStringList &place)
{
    const Screen *screen = topScreen();
    const ItemLabel *before = nullptr;
    for (int stop = 0; stop < mostStops; ++stop) {
        const ItemLabel *label = hovered(screen);
        if (!label || label == before)
            break; // the end
        before = label;
        row(place + QStringList{label->text()});
        if (topScreen() != screen) {
            complain(place + QStringList{label->text()}, QStringLiteral("cannot be left"));
            return;
        }
        key(Qt::Key_D);
    }
    QScrollBar *bar = scrollBar(screen);
    for (int turn = 0; turn < mostStops && bar->value() < bar->maximum(); ++turn)
        key(Qt::Key_D);
    if (bar->value() < bar->maximum())
        complain(place, QStringLiteral("rows that cannot be seen"));
    if (bar->maximum() > 0)
        m_visit(place, true);
}

void MenuWalk::row(const QStringList &place)
{
    static const QStringList buttons{"Back", "Save", "Switch"};
    const Screen *screen = topScreen();
    if (buttons.contains(place.last()) && place.size() > 1 && hovered(screen)->y() > 200)
        return; // the bar at the bottom
    if (!m_choice(place))
        return;
    key(Qt::Key_Return);
    if (topScreen() == screen) { // a row that opens nothing, or a wheel
        if (QApplication::focusWidget() != screen) {
            m_visit(place, false);
            key(Qt::Key_Escape);
        }
        return;
    }
    page(place);
    const Screen *child = topScreen();
    for (int tries = 0; tries < 3 && topScreen() != screen; ++tries)
        key(Qt::Key_Escape);                                       // the first may leave what is being edited
    if (!QTest::qWaitFor([child] { return !child->isVisible(); })) // slid out: the next row may open the same page
        complain(place, QStringLiteral("does not go"));
}
