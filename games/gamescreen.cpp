#include "games/gamescreen.h"

#include <QCoreApplication>
#include <QTimerEvent>

namespace {

constexpr int tickTime = 20; // ms

} // namespace

GameScreen::GameScreen(QWidget *parent)
    : Screen(parent)
    , m_scene(wholeLcd) // fixed: it would grow, and move, with items outside
    , m_view(&m_scene, this)
{
    const QList<QWidget *> furniture = findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *widget : furniture) // title and buttons of a page
        widget->setVisible(widget == &m_view);
    stackContents(Contents::Fill); // nothing of it shows, but it owns the layouts
    m_scene.setItemIndexMethod(QGraphicsScene::NoIndex); // what moves would be sorted in anew all the time
    m_view.setGeometry(wholeLcd);
    m_view.setFrameShape(QFrame::NoFrame);
    m_view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view.setFocusPolicy(Qt::NoFocus);
    m_timer.start(tickTime, this);
}

void GameScreen::setActive(bool active)
{
    if (!active)
        return;
    startGame();
    draw();
}

bool GameScreen::handleCommonKey(int key)
{
    if (key == Qt::Key_Escape)
        savePressed();
    else if (key == Qt::Key_Delete)
        QCoreApplication::exit(0);
    else
        return false;
    return true;
}

void GameScreen::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_timer.timerId()) {
        Screen::timerEvent(event);
        return;
    }
    tick();
    if (isVisible())
        draw();
}

void GameScreen::showEvent(QShowEvent *event)
{
    draw();
    Screen::showEvent(event);
}
