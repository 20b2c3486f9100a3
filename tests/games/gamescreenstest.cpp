#include "games/game.h"
#include "games/game2.h"
#include "tests/ui/lcd.h"
#include "ui/navigationmanager.h"
#include "ui/screenwarning.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsTextItem>
#include <QPainter>
#include <QSignalSpy>
#include <QStyleOptionGraphicsItem>
#include <QTest>
#include <QTimer>
#include <QTimerEvent>

namespace {
int kindsDrawn = 0;
}

/// The falling blocks take their kinds from here: one after the other.
extern "C" int rand() noexcept { return kindsDrawn++; }

namespace {

/// What the LCD is to show.
void paint(QPainter &painter, const BrickRules &rules)
{
    constexpr Qt::GlobalColor stripes[] = {Qt::red, Qt::green, Qt::blue, Qt::yellow};
    for (int i = 0; i < 16 * 12; ++i) {
        painter.setBrush(stripes[(i % 16 + i / 16) % 4]);
        if (rules.hasBrick(i % 16, i / 16))
            painter.drawRect(i % 16 * 20, i / 16 * 10, 20, 10);
    }
    painter.setBrush(Qt::gray);
    painter.drawEllipse(rules.ball());
    painter.drawRect(rules.paddle());
}

void paint(QPainter &painter, const FallingRules &rules)
{
    const auto cell = [&](int kind, const QPoint &place) {
        constexpr QRgb kinds[] = {0xaf298a, 0x0f9bd7, 0xe39f02, 0xd70f37, 0x59b101, 0xe35b02, 0x2141c6, 0x000000};
        painter.setBrush(QColor(kinds[kind]));
        painter.drawRect(QRect(place, QSize(12, 12)));
    };
    for (int i = 0; i < 10 * 20; ++i)
        cell(rules.shownCell(i % 10, i / 10 + 2), QPoint(i % 10, i / 10) * 12);
    painter.setPen(QColor(40, 40, 40));
    for (int i = 0; i <= 20; ++i) {
        painter.drawLine(0, 12 * i, 120, 12 * i);
        painter.drawLine(std::min(i, 10) * 12, 0, std::min(i, 10) * 12, 240);
    }
    painter.setPen(Qt::black);
    for (size_t i = 0; i < 4; ++i) {
        if (!rules.isPieceHidden())
            cell(rules.pieceKind(), (rules.piece()[i] - QPoint(0, 2)) * 12);
        cell(rules.nextKind(), QPoint(150, 96) + rules.nextCells()[i] * 12);
    }
    QFont font("RobotoMedium");
    font.setPixelSize(14);
    const std::tuple<int, const char *, unsigned> numbers[] = {{0, "top", rules.top()}, {40, "score", rules.score()},
        {120, "lines", rules.lines()}, {160, "level", rules.level()}};
    for (const auto &[y, name, number] : numbers) {
        QGraphicsTextItem text(QString("%1\n%2").arg(name).arg(number));
        text.setFont(font);
        text.setDefaultTextColor(Qt::white);
        painter.resetTransform();
        painter.translate(125, y);
        const QStyleOptionGraphicsItem option;
        text.paint(&painter, &option, nullptr);
    }
}

/// A game on the LCD, and its rules played along while it shows: with every tick of its timer, and those the test adds.
template <typename Page, typename Rules, void (Rules::*startAnew)()> struct Stage : public QObject
{
    explicit Stage(const Rules &played = Rules())
        : rules(played)
    {
        root.showMe();
        page.installEventFilter(this);
        page.template findChild<QGraphicsView *>()->viewport()->installEventFilter(this);
        open();
    }

    void open()
    {
        Rules hidden = rules;
        page.showMe();
        if (!QTest::qWaitFor([this] { return timer && !root.isVisible() && page.geometry() == lcd.rect(); }))
            qFatal("the page does not open");
        // It has made up for ticks before it started anew; the ball kept its direction.
        const QImage seen = picture();
        for (int made = 0; made < 500; ++made, hidden.tick()) {
            rules = hidden;
            startGame();
            for (int tick = 0; tick < shownTicks; ++tick)
                rules.tick();
            if (drawn() == seen)
                return;
        }
        qFatal("the page shows no game that has just been started");
    }
    void run(int count)
    {
        if (!QTest::qWaitFor([this] { return timer; }))
            qFatal("the page has no timer");
        for (; count > 0; --count) {
            QTimerEvent tick(timer);
            QCoreApplication::sendEvent(&page, &tick);
        }
    }
    QImage picture() { return page.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    QImage drawn() const
    {
        QImage picture(320, 240, QImage::Format_RGB32);
        picture.fill(Qt::black);
        QPainter painter(&picture);
        paint(painter, rules);
        return picture;
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && object != &page)
            ++paints;
        if (event->type() == QEvent::Show && object == &page)
            timer = shownTicks = 0;
        if (event->type() == QEvent::Timer && object == &page) {
            timer = static_cast<QTimerEvent *>(event)->timerId();
            if (page.isVisible())
                rules.tick(), ++shownTicks;
            else
                ++rounds;
        }
        return false;
    }

    void startGame() { (rules.*startAnew)(); }

    Lcd lcd;
    ScreenWarning root{&lcd, false, false};
    Rules rules;
    Page page{&lcd};
    int timer = 0, shownTicks = 0, rounds = 0, paints = 0;
};

using Bricks = Stage<Game, BrickRules, &BrickRules::restart>;

FallingRules kindsInTurn()
{
    kindsDrawn = 5; // L, after each of its turns it looks different
    return FallingRules([kind = 5U]() mutable { return kind++; });
}

struct Blocks : public Stage<Game2, FallingRules, &FallingRules::newGame>
{
    Blocks()
        : Stage(kindsInTurn())
    {
    }
};

void press(Qt::Key key) { QTest::keyPress(QApplication::focusWidget(), key); }

template <typename S> void coverAndLeave()
{
    S stage;
    stage.page.setTitle("Game");
    stage.run(120);
    QCOMPARE(stage.picture(), stage.drawn());
    for (const QLabel *label : stage.page.template findChildren<QLabel *>())
        QVERIFY2(!label->isVisible(), qPrintable(label->text()));

    ScreenWarning notice(&stage.lcd, false, false); // the link is lost
    QElapsedTimer covered, hidden;
    covered.start();
    notice.showMe();
    QTRY_VERIFY(!stage.page.isVisible());
    hidden.start();
    const QSignalSpy changes(stage.page.template findChild<QGraphicsView *>()->scene(), &QGraphicsScene::changed);
    stage.paints = stage.rounds = 0;
    QTRY_VERIFY(stage.rounds > 0);
    QCOMPARE(changes.count() + stage.paints, 0);
    const qint64 least = hidden.elapsed() / 20;
    stage.page.show();
    const QImage shown = stage.picture(); // as if it had been played all the time
    for (qint64 ticks = 0; ticks < least || (stage.drawn() != shown && ticks <= covered.elapsed() / 20); ++ticks)
        stage.rules.tick();
    QCOMPARE(shown, stage.drawn());
    notice.hideMe();
    stage.startGame();
    QCOMPARE(stage.picture(), stage.drawn());

    stage.run(10);
    press(Qt::Key_Escape);
    QCOMPARE(QApplication::focusWidget(), &stage.root);
    QTRY_VERIFY(!stage.page.isVisible());
    stage.open();
    QCOMPARE(stage.picture(), stage.drawn());
}

} // namespace

/// The games on the LCD, with keys and ticks: the picture is what the rules say.
class GameScreensTest : public QObject
{
    Q_OBJECT
private slots:
    void gamesAreCoveredAndLeft()
    {
        coverAndLeave<Bricks>();
        coverAndLeave<Blocks>();
    }
    void keysMoveThePaddle();
    void keysMoveThePieceUntilTheEnd();
};

void GameScreensTest::keysMoveThePaddle()
{
    Bricks stage;
    for (const auto &[key, step] :
        QList<std::pair<Qt::Key, int>>{{Qt::Key_Up, -1}, {Qt::Key_A, -1}, {Qt::Key_PageUp, -10}, {Qt::Key_Q, -10},
            {Qt::Key_Down, 1}, {Qt::Key_D, 1}, {Qt::Key_PageDown, 10}, {Qt::Key_E, 10}}) {
        press(key);
        stage.rules.movePaddle(step);
        stage.run(1);
        QVERIFY2(stage.picture() == stage.drawn(), qPrintable(QKeySequence(key).toString()));
    }
    QTimer::singleShot(0, &stage.lcd, [] { press(Qt::Key_Delete); });
    QTimer::singleShot(5000, &stage.lcd, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
    press(Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget(), &stage.root);
}

void GameScreensTest::keysMoveThePieceUntilTheEnd()
{
    Blocks stage;
    FallingRules &rules = stage.rules;
    const std::pair<Qt::Key, std::function<void()>> keys[] = {
        {Qt::Key_Y, [&] { rules.rotate(0); }}, // above the well, too
        {Qt::Key_Return, [&] { rules.rotate(0); }},
        {Qt::Key_X, [&] { rules.rotate(1); }},
        {Qt::Key_A, [&] { rules.moveBy(-1); }},
        {Qt::Key_Q, [&] { rules.moveBy(-1); }},
        {Qt::Key_D, [&] { rules.moveBy(1); }},
        {Qt::Key_E, [&] { rules.moveBy(1); }},
        {Qt::Key_Left, [&] { rules.hold(FallingRules::Direction::Left); }},
        {Qt::Key_Right, [&] { rules.hold(FallingRules::Direction::Right); }},
    };
    for (const auto &[key, act] : keys) {
        press(key);
        act();
        QCoreApplication::sendPostedEvents(); // a scene that grew with the piece would move now
        QVERIFY2(stage.picture() == stage.drawn(), qPrintable(QKeySequence(key).toString()));
    }
    for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) { // still held
        QKeyEvent repeated(type, Qt::Key_Right, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(&stage.page, &repeated);
    }
    stage.run(20);
    QCOMPARE(stage.picture(), stage.drawn());
    QTest::keyRelease(&stage.page, Qt::Key_Right);
    rules.letGo();
    for (int i = 0; i < 2000 && rules.phase() != FallingRules::Phase::Stopped; ++i) {
        QCOMPARE(QApplication::focusWidget(), &stage.page);
        press(Qt::Key_Down);
        rules.drop();
        stage.run(1);
        QCOMPARE(stage.picture(), stage.drawn());
    }
    QCOMPARE(QApplication::focusWidget(), &stage.root);
    QTRY_VERIFY(!stage.page.isVisible());
}

QTEST_MAIN(GameScreensTest)
#include "gamescreenstest.moc"
