#include "games/gamescreen.h"

#include <QCoreApplication>
#include <QTimerEvent>

namespace {

constexpr int tickTime = 20;   // ms
constexpr int restTime = 1000; // ms

} // namespace

GameScreen::GameScreen(QWidget *parent)
    : Screen(parent)
    , m_scene(wholeLcd) // fixed: it would grow, and move, with items outside
    , m_view(&m_scene, this)
{
    const QList<QWidget *> furniture = findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *widget : furniture) // title and buttons of a page
        widget->setVisible(widget == &m_view);
    stackContents(Contents::Fill);                       // nothing of it shows, but it owns the layouts
    m_scene.setItemIndexMethod(QGraphicsScene::NoIndex); // what moves would be sorted in anew all the time
    m_view.setGeometry(wholeLcd);
    m_view.setFrameShape(QFrame::NoFrame);
    m_view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view.setFocusPolicy(Qt::NoFocus);
    rest();
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
    if (!isVisible()) {
        makeUpTicks();
        return;
    }
    tick();
    draw();
    if (isOver())
        savePressed();
}

void GameScreen::showEvent(QShowEvent *event)
{
    makeUpTicks();
    m_timer.start(tickTime, this);
    draw();
    Screen::showEvent(event);
}

void GameScreen::hideEvent(QHideEvent *event)
{
    rest();
    Screen::hideEvent(event);
}

void GameScreen::rest()
{
    m_hidden.start();
    m_hiddenTicks = 0;
    m_timer.start(restTime, this);
}

void GameScreen::makeUpTicks()
{
    for (const qint64 due = m_hidden.elapsed() / tickTime; m_hiddenTicks < due; ++m_hiddenTicks)
        tick();
}
