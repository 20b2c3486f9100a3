// The pages of the LCD at work, measured from within: started by lcdbenchmark as the program of a test bed. All pages
// of the panel are built; a list page of the largest size moves its highlight, slides and opens over another one.

#include "benchmarks/lcdbenchmark-common.h"
#include "benchmarks/lcdbenchmark-frame.h"
#include "protocol/catalogue.h"
#include "ui/fonts.h"
#include "ui/pool.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screendata.h"
#include "ui/stylesheet.h"

#include <QApplication>
#include <QEasingCurve>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QScrollBar>

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

constexpr int rowCount = 48;
constexpr int aimOfMove = 20, aimOfSlide = 40; // floors

/// A list page of the largest size: a caption and a value in each row.
class LongPage : public ScreenData
{
public:
    LongPage(QWidget *parent, const QString &what)
        : ScreenData(parent)
    {
        static std::array<Dt3Property, rowCount> properties; // one descriptor for all pages, as in the catalogue
        for (int row = 0; row < rowCount; ++row) {
            properties[size_t(row)].setPath(QStringLiteral("/LIST.Value%1").arg(row));
            addPropertyLine(what + QStringLiteral(" Port %1").arg(row + 1), &properties[size_t(row)])
                ->setValueText(QStringLiteral("1920x1080p%1").arg(row));
        }
        setTitle(what);
        showBackButton();
    }

    int scrolled() const { return findChild<MyScroll *>()->verticalScrollBar()->value(); }
    /// Where a row's widgets stand on the LCD.
    QRegion place(int row) const
    {
        const DataLine *line = lines()[row];
        QRegion region;
        for (const QWidget *widget : {static_cast<QWidget *>(line->iconLabel()),
                 static_cast<QWidget *>(line->captionLabel()), static_cast<QWidget *>(line->values().first())})
            region += QRect(widget->mapTo(window(), QPoint()), widget->size());
        return region & lcd;
    }
    void turn(int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &event);
    }
};

/// The page has come to its place and covers the others.
void settle(const Screen &page)
{
    const auto settled = [&page] {
        const QList<Screen *> screens = page.parentWidget()->findChildren<Screen *>();
        return std::all_of(screens.begin(), screens.end(), [&page](const Screen *screen) {
            return screen == &page ? screen->geometry() == lcd : !screen->isVisible();
        });
    };
    while (!settled())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

struct Moves
{
    Figure within, scrolling;
    int largestBeside = 0; ///< Pixels outside of the two rows, in a move within the page.
    int twoRows = 0;       ///< Pixels of the rows of the last one.
};

/// Walks down the rows and up again.
void walk(Pass pass, LongPage &page, Moves *moves)
{
    int row = 0;
    for (const int step : {1, -1}) {
        for (int move = 1; move < rowCount; ++move, row += step) {
            const int before = page.scrolled();
            const Frame made = makeFrame(pass, [&] { page.turn(step > 0 ? Qt::Key_D : Qt::Key_A); });
            if (page.scrolled() != before) {
                moves->scrolling.add(pass, made);
                continue;
            }
            moves->within.add(pass, made);
            const QRegion rows = page.place(row) + page.place(row + step);
            moves->twoRows = pixels(rows);
            moves->largestBeside = std::max(moves->largestBeside, pixels(made.onLcd - rows));
        }
    }
}

/// The frames of one slide, 16 ms from each to the next.
void slide(Pass pass, LongPage &page, bool in, Figure *figure)
{
    const QEasingCurve curve(QEasingCurve::InOutCubic);
    for (int time = 16; time < 300; time += 16) {
        const int way = qRound(lcd.width() * curve.valueForProgress(time / 300.0));
        const int x = in ? lcd.width() - way : way;
        if (x == page.x() || x == lcd.width()) // nothing to see yet
            continue;
        figure->add(pass, makeFrame(pass, [&] { page.move(x, 0); }));
    }
    page.move(in ? 0 : lcd.width(), 0);
    finishFrame();
}

/// Up to the complete picture: the page is put where its slide ends.
Frame open(Pass pass, LongPage &page)
{
    return makeFrame(pass, [&page] {
        page.showMe();
        page.move(0, 0);
    });
}

/// One memcpy of the LCD's pixels, in microseconds.
double memcpyTime()
{
    std::vector<char> from(lcdBytes, 1), to(lcdBytes);
    std::vector<double> times;
    for (int copy = 0; copy < 2000; ++copy) {
        const double start = cpuTime();
        std::memcpy(to.data(), from.data(), lcdBytes);
        asm volatile("" : : "r"(to.data()) : "memory"); // it is used
        times.push_back(cpuTime() - start);
    }
    return median(times);
}

void measureMoves(LongPage &page, double floor)
{
    Moves moves;
    for (int repetition = 0; repetition < 40; ++repetition)
        walk(Pass::Time, page, &moves);
    walk(Pass::Count, page, &moves);
    moves.within.print("highlight move within the page", floor, aimOfMove);
    std::printf(
        "    its two rows have %d px; beside them it repaints %d px (aim: 0)\n", moves.twoRows, moves.largestBeside);
    moves.scrolling.print("highlight move that scrolls", floor, aimOfMove);
}

void measureSlides(LongPage &page, LongPage &below, double floor)
{
    Figure in, out;
    below.setVisible(true);
    for (const Pass pass : {Pass::Time, Pass::Count}) {
        for (int repetition = 0; repetition < (pass == Pass::Time ? 60 : 1); ++repetition) {
            slide(pass, page, false, &out);
            slide(pass, page, true, &in);
        }
    }
    in.print("one frame of the slide in", floor, aimOfSlide);
    out.print("one frame of the slide out", floor, aimOfSlide);
}

void measureOpenings(LongPage &page, Pool *pool, double floor)
{
    Figure first, again;
    for (const Pass pass : {Pass::Time, Pass::Count}) {
        for (int repetition = 0; repetition < (pass == Pass::Time ? 60 : 3); ++repetition) {
            page.hideMe();
            page.move(lcd.width(), 0);
            page.hide();
            finishFrame();
            const auto fresh = std::make_unique<LongPage>(pool, QStringLiteral("Fresh"));
            finishFrame();
            first.add(pass, open(pass, *fresh));
            fresh->hideMe();
            fresh->hide();
            finishFrame();
            again.add(pass, open(pass, page));
        }
    }
    first.print("opening the page, first time", floor);
    again.print("opening the page, again", floor);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QLoggingCategory::setFilterRules(QStringLiteral("default=false")); // no service is there, and each page says so
    fillCatalogue();
    blackenBackground();
    loadFonts(QStringLiteral(FONT_FOLDER));
    Pool *pool = Pool::instance();
    pool->initScreens();
    LongPage below(pool, QStringLiteral("Output"));
    LongPage page(pool, QStringLiteral("Input"));
    below.showMe();
    settle(below);
    page.showMe();
    settle(page);

    const double floor = memcpyTime();
    std::printf("%-44s %9s %9s %8s %8s   %s\n", "", "CPU us", "floors", "painted", "bounds", "aim");
    std::printf("%-44s %9.1f %9.1f\n", "memcpy of the LCD's pixels (the floor)", floor, 1.0);
    measureMoves(page, floor);
    measureSlides(page, below, floor);
    measureOpenings(page, pool, floor);
}
