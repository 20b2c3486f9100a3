#include "games/brickrules.h"
#include "games/fallingrules.h"

#include <QMap>
#include <QRegularExpression>
#include <QTest>

namespace {

/// Places of the paddle, by the tick before which it moves there. Until the first one it stays below the ball.
using Moves = QMap<int, int>;

/// Plays the falling blocks, and notes what is asked for.
class Player
{
public:
    /// @param kinds are drawn, over and over.
    explicit Player(const QByteArray &kinds)
        : m_rules([kinds, at = 0]() mutable { return unsigned(kinds[at++ % kinds.size()] - '0'); })
    {
    }

    /// @param keys a number repeats the one behind it.
    QString play(const QString &keys)
    {
        for (const auto &match : QRegularExpression("(\\d*)(\\D)").globalMatch(keys)) {
            for (int times = std::max(match.capturedView(1).toInt(), 1); times > 0; --times)
                press(match.capturedView(2).front().toLatin1());
        }
        return m_notes.join(' ');
    }

private:
    void press(char key)
    {
        int ticks = 0;
        QString picture = "..../..../..../....";
        switch (const auto phase = m_rules.phase(); key) {
        case 'A': return m_rules.moveBy(-1);
        case 'D': return m_rules.moveBy(1);
        case 'Y': return m_rules.rotate(0);
        case 'X': return m_rules.rotate(1);
        case '<': return m_rules.hold(FallingRules::Direction::Left);
        case '>': return m_rules.hold(FallingRules::Direction::Right);
        case 'o': return m_rules.letGo();
        case 'v': return m_rules.drop();
        case 'N': return m_rules.newGame();
        case '.': return m_rules.tick();
        case '*': // the rest of the phase
            while (m_rules.phase() == phase && phase != FallingRules::Phase::Stopped)
                m_rules.tick();
            return;
        case 't': // how long until the piece moves, comes or goes
            for (const QString from = place(); place() == from && ticks < 999; ++ticks)
                m_rules.tick();
            m_notes += QString::number(ticks);
            return;
        case '@': m_notes += place(); return;
        case '#': // the piece in columns 3 to 6, rows 0 to 3
            for (const QPoint &cell : m_rules.piece())
                picture[5 * cell.y() + cell.x() - 3] = 'x';
            m_notes += picture.remove(QRegularExpression("\\.+(?=/|$)"));
            return;
        case '=': // the bottom row, and how many cells of the well are full
            picture.clear();
            for (int i = 0; i < 200; ++i)
                picture += QString::number(m_rules.shownCell(i % 10, 2 + i / 10)).replace('7', '.');
            m_notes += QString("%1:%2").arg(picture.last(10)).arg(200 - picture.count('.'));
            return;
        case '$':
            m_notes
                += QString::asprintf("%u/%u/%u/%u", m_rules.lines(), m_rules.level(), m_rules.score(), m_rules.top());
            return;
        default: qFatal("%c is no key", key);
        }
    }
    QString place() const
    {
        if (m_rules.phase() == FallingRules::Phase::Stopped)
            return "over";
        const QPoint cell = m_rules.piece()[0];
        return m_rules.isPieceHidden() ? "hidden" : QString("%1,%2").arg(cell.x()).arg(cell.y());
    }

    FallingRules m_rules;
    QStringList m_notes;
};

} // namespace

/// The rules of the games, tick by tick.
class GameRulesTest : public QObject
{
    Q_OBJECT
private slots:
    void ballTurns_data();
    void ballTurns();
    void blocksFall_data();
    void blocksFall();
};

void GameRulesTest::ballTurns_data()
{
    QTest::addColumn<Moves>("moves");
    QTest::addColumn<int>("ticks");
    QTest::addColumn<QString>("seen"); // then: ball, its next step, paddle; the bricks that the last tick took or gave
    const auto row = [](const char *name, const Moves &moves, int ticks, const char *seen) {
        QTest::newRow(name) << moves << ticks << QString(seen);
    };
    row("below bricks, the first is the one on the left", {}, 98, "100,121 by -3,1 above 58 -4,11");
    row("bricks from all sides, the walls, the top", {}, 28706, "226,1 by -3,1 above 184");
    const Moves late{{1, 170}, {194, 70}, {198, 100}, {200, 60}, {400, 90}, {401, 40}, {598, 120}, {599, 80}};
    row("in a corner of bricks", late, 706, "82,111 by 3,-1 above 80 -3,11");
    row("4 beside the paddle", {{1, -1}, {5, 131}}, 5, "235,220 by 3,1 above 131");
    row("3 beside the paddle", {{1, 0}, {5, 132}}, 5, "235,220 by -3,1 above 132");
    row("touches the paddle's side", {{1, 0}, {5, 135}}, 5, "235,220 by -3,-1 above 135");
    row("the floor, before the paddle; all starts again", {{99, 0}}, 206, "220,215 by 3,-1 above 170 +4,11");
    row("the paddle stops on the left", {{1, -1}}, 1, "223,216 by 3,1 above 0");
    row("and on the right", {{1, 221}}, 1, "223,216 by 3,1 above 220");
}

void GameRulesTest::ballTurns()
{
    QFETCH(const Moves, moves);
    QFETCH(const int, ticks);
    BrickRules rules, before;
    for (int tick = 1; tick <= ticks; ++tick) {
        const auto next = moves.upperBound(tick);
        const int place = next == moves.begin() ? rules.ball().x() - 45 : *std::prev(next);
        before = rules;
        rules.movePaddle(place - rules.paddle().x());
        rules.tick();
    }
    BrickRules after = rules;
    after.tick();
    const QPoint ball = rules.ball().topLeft(), step = after.ball().topLeft() - ball;
    QString seen
        = QString::asprintf("%d,%d by %d,%d above %d", ball.x(), ball.y(), step.x(), step.y(), rules.paddle().x());
    for (int i = 0; i < 16 * 12; ++i) {
        if (rules.hasBrick(i / 12, i % 12) != before.hasBrick(i / 12, i % 12))
            seen += QString::asprintf(" %c%d,%d", before.hasBrick(i / 12, i % 12) ? '-' : '+', i / 12, i % 12);
    }
    QTEST(seen, "seen");
}

void GameRulesTest::blocksFall_data()
{
    QTest::addColumn<QByteArray>("kinds");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("notes");
    const auto row = [](const char *name, const char *kinds, const QString &keys, const char *notes) {
        QTest::newRow(name) << QByteArray(kinds) << keys << QString(notes);
    };
    row("T", "0", "#Y#Y#Y#YX#X#X#X#",
        "//.xxx/..x /..x/..xx/..x /..x/.xxx/ /..x/.xx/..x /..x/.xx/..x /..x/.xxx/ /..x/..xx/..x //.xxx/..x");
    row("I", "1", "#Y#YX#", "//xxxx/ ..x/..x/..x/..x ..x/..x/..x/..x");
    row("O", "2", "#Y#X#", "//.xx/.xx //.xx/.xx //.xx/.xx");
    row("Z", "3", "#Y#YX#", "//.xx/..xx /...x/..xx/..x /...x/..xx/..x");
    row("S", "4", "#Y#YX#", "//..xx/.xx /..x/..xx/...x /..x/..xx/...x");
    row("L", "5", "#Y#Y#Y#", "//.xxx/.x /..x/..x/..xx /...x/.xxx/ /.xx/..x/..x");
    row("J", "6", "#X#X#X#", "//.xxx/...x /..x/..x/.xx /.x/.xxx/ /..xx/..x/..x");
    row("the walls stop turns and moves", "1", "Y4DY@8AY@DY@9D@9A@", "9,0 1,0 0,2 6,2 0,2");
    row("so does the pile", "1", "Yv**YDv18.YA@", "6,18");

    row("falls after 80 ticks, every 8, each; the next one is not dropped", "2", "tt@vtt**tt", "80 8 4,4 8 1 1 8");
    row("the higher it lies the longer until the next, and the end", "1", QString("v*t").repeated(20) + "@",
        "11 11 13 13 13 13 15 15 15 15 17 17 17 17 19 19 19 19 21 21 over");
    row("of 7 kinds; an equal one is drawn again, but once", "9933444", "#v**#v**#v**#",
        "//.xx/.xx //.xx/..xx //..xx/.xx //..xx/.xx");
    row("held: at once, after 17, every 7", "2", ">@t@t@", "5,2 17 6,2 7 7,2");
    row("let go", "2", ">16.ot", "64");
    row("held at the wall: as soon as it can", "2", "4D>3A@t@t@", "5,2 1 6,2 7 7,2");
    row("stays charged there", "2", "<60.D@t@", "1,2 1 0,2");
    row("held between two pieces: nothing", "2", "v*>*tt@", "1 8 4,4");
    row("held on it charges there", "2", "v97.>.*tt@", "1 5 5,3");

    const auto fill = [](int rows) { // with lying pieces, and two upright ones whose upper ends stay
        return QString("3Av**Dv**").repeated(rows) + "Y3Dv**Y4Dv*";
    };
    row("and while rows go", "1", fill(4).replace("Y4Dv*", "Y3Dv14.>*") + "**t@", "1 4,3");
    row("rows go from the middle, then those above come down", "1", fill(3) + "@=.=4.=4.=4.=4.=t=",
        "hidden 1111111111:32 1111..1111:26 111....111:20 11......11:14 1........1:8 ..........:2 13 ........11:2");
    row("lines, points and the best score", "1",
        fill(1) + "$NY" + fill(2) + "$NY" + fill(3) + "$NY" + fill(4) + "$NY" + fill(1) + "$N$",
        "1/8/360/0 2/8/900/360 3/8/2700/900 4/8/10800/2700 1/8/360/10800 0/8/0/10800");
    row("a new game while rows go", "1", fill(4) + "5.N=@t@", "..........:0 5,0 80 5,1");
    row("nothing goes on after the end, but with a new game", "1",
        fill(4) + QString("v**").repeated(25) + "@$=99.$=>N@$=t@",
        "over 4/8/10800/0 ...1111...:80 4/8/10800/0 ...1111...:80 3,2 0/8/0/10800 ..........:0 80 3,3");
    QString keys; // to clear 4 rows at once, so many times
    const auto clear = [](int times) {
        return QString("Y5Av**Y4Av**Y3Av**Y2Av**YAv**Yv**YDv**Y2Dv**Y3Dv**Y4Dv***").repeated(times);
    };
    for (const int times : {22, 1, 2, 8, 7, 20, 340})
        keys += clear(times) + ".$t";
    row("levels, up to which it falls faster", "1", keys + 'N' + clear(23) + '$',
        "88/8/237600/0 8 92/9/249600/0 6 100/10/274800/0 5 132/13/393600/0 4 160/16/523200/0 3 240/24/999999/0 2 "
        "1600/159/999999/0 1 92/9/249600/999999");
}

void GameRulesTest::blocksFall()
{
    QFETCH(const QByteArray, kinds);
    QFETCH(const QString, keys);
    QTEST(Player(kinds).play(keys), "notes");
}

QTEST_GUILESS_MAIN(GameRulesTest)
#include "gamerulestest.moc"
