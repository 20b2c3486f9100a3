#include "tests/ui/lcd.h"
#include "ui/collection.h"
#include "ui/collectionnavigator.h"
#include "ui/itemslider.h"
#include "ui/itemwheellistlabel.h"
#include "ui/itemwheelrangelabel.h"

#include <QSignalSpy>
#include <QTest>

#include <map>

namespace {

/// One of those that the highlight goes over.
struct Row
{
    Row(const QString &name, Lcd *lcd, CollectionNavigator *highlight)
        : label(lcd)
    {
        label.setText(name);
        collection.addWidget(&label);
        highlight->append(&collection);
    }

    ItemLabel label;
    Collection collection;
};

/// The texts of the highlighted rows; "." where there is none.
QString hovered(const Lcd &lcd)
{
    QString names;
    for (const ItemLabel *label : lcd.findChildren<ItemLabel *>())
        names += label->property("state") == "hovered" ? label->text() : QString();
    return names.isEmpty() ? "." : names;
}

} // namespace

/// What the knob does to wheels, sliders and the highlight.
class ItemsTest : public QObject
{
    Q_OBJECT
private slots:
    void wheelTurns_data();
    void wheelTurns();
    void optionsComeAndGo();
    void sliderAsks_data();
    void sliderAsks();
    void highlightIsNeverLost();
};

void ItemsTest::wheelTurns_data()
{
    QTest::addColumn<QList<int>>("range"); // minimum, maximum, zero pad; else it is a list
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QStringList>("keys"); // of one selection each
    QTest::addColumn<QString>("seen");     // in each selection; "~" is a turn of the list
    const auto row
        = [](const char *name, const QList<int> &range, bool wrap, const char *from, const QStringList &keys,
              const char *seen) { QTest::newRow(name) << range << wrap << QString(from) << keys << QString(seen); };
    row("list stops at its ends", {}, false, "c", {"E", "QA"}, "~e~~a");
    row("list wraps", {}, true, "c", {"ED", "QAAAA"}, "~~d~~~~~e");
    row("chosen, then abandoned", {}, false, "a", {"DD\r", "D\x1b"}, "~~ chosen deselected c~ deselected c");
    row("no option does not turn", {}, false, "z", {"DA\x1b"}, " deselected z");
    row("number pads to the maximum's digits", {0, 255, 1}, false, "6", {"D"}, "007");
    row("number does not pad, and stops", {0, 59, 0}, false, "x", {"D", "EEEEEE"}, "159"); // the x counts as 0
    row("number wraps", {1, 12, 1}, true, "12", {"D", "Q"}, "0103");
    row("out of range does not turn", {0, 59, 1}, true, "61", {"DAEQ"}, "61");
    row("whole range of int", {INT_MIN, INT_MAX, 0}, true, "2147483647", {"D"}, "-2147483648");
    row("Escape brings text and number back, Return keeps both", {0, 59, 1}, false, "7", {"EE\x1b", "D\r", "D\x1b"},
        " deselected 7 chosen deselected 08 deselected 08");
}

void ItemsTest::wheelTurns()
{
    QFETCH(const QList<int>, range);
    QFETCH(const bool, wrap);
    QFETCH(const QString, from);
    QFETCH(const QStringList, keys);
    const bool isList = range.isEmpty();
    Lcd lcd;
    ItemWheelListLabel list(&lcd, wrap);
    ItemWheelRangeLabel number(&lcd, range.value(0), range.value(1), wrap, range.value(2), "#");
    ItemWheel &wheel = isList ? static_cast<ItemWheel &>(list) : number;
    list.setOptions({"a", "b", "c", "d", "e"});
    list.setCurrentText(from);
    number.setValue(from);
    QCOMPARE(number.text(), '#' + from);
    QString seen;
    connect(&list, &ItemWheelListLabel::signalScrolled, this, [&seen] { seen += '~'; });
    connect(&wheel, &ItemLabel::signalChosen, this, [&seen] { seen += " chosen"; });
    connect(&wheel, &ItemLabel::signalDeselected, this, [&seen] { seen += " deselected "; });
    wheel.show();
    for (const QString &selection : keys) {
        wheel.select();
        Lcd::keys(qPrintable(selection));
        seen += wheel.text().mid(isList ? 0 : 1);
    }
    QTEST(seen, "seen");
}

void ItemsTest::optionsComeAndGo()
{
    ItemWheelListLabel wheel(nullptr, false);
    wheel.addOption("b");
    wheel.addOption("b");
    wheel.insertOption("b", "a");
    wheel.insertOption("nobody", "c");
    QCOMPARE(wheel.optionCount(), 3);
    QCOMPARE(wheel.text(), "b");
    wheel.removeOption("b");
    QCOMPARE(wheel.text(), "c"); // the one behind it
    wheel.removeOption("c");
    QCOMPARE(wheel.text(), "a"); // it was the last: the one before
    wheel.removeOption("a");
    wheel.scroll(1);
    QCOMPARE(wheel.text(), "");
}

void ItemsTest::sliderAsks_data()
{
    QTest::addColumn<QList<int>>("scale"); // minimum, maximum, bipolar
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QList<int>>("bar"); // left edge and width, in pixels of 270
    const auto row = [](const char *name, const QList<int> &scale, const char *value, const char *keys,
                         const char *asked, const QList<int> &bar) {
        QTest::newRow(name) << scale << QString(value) << QString(keys) << QString(asked) << bar;
    };
    row("both ways", {0, 100, 0}, "50", "DEAQ", "10 10 -10 -10 ", {0, 135});
    row("not over the end by a part of a step", {0, 100, 0}, "95", "DA", "-10 ", {0, 256});
    row("not below the start", {0, 100, 0}, "5", "AD", "10 ", {0, 13});
    row("huge", {0, 100, 0}, "1e99", "DA", "", {0, 270});
    row("truncated", {0, 100, 0}, "90.9", "D", "10 ", {0, 243});
    row("nan is 0", {0, 100, 0}, "nan", "AD", "10 ", {0, 1});
    row("a scale without length", {5, 5, 0}, "5", "DA", "", {0, 1});
    row("to the right", {-10, 10, 1}, "5", "", "", {135, 67});
    row("to the left, below the scale", {-10, 10, 1}, "-20", "", "", {0, 135});
}

void ItemsTest::sliderAsks()
{
    QFETCH(const QList<int>, scale);
    QFETCH(const QString, value);
    QFETCH(const QString, keys);
    Lcd lcd;
    ItemSlider slider(&lcd, scale[0], scale[1], 10);
    slider.resize(270, 10);
    slider.setBipolar(scale[2]);
    slider.setValue(value);
    const QString shown = slider.valueText();
    QString asked;
    connect(&slider, &ItemSlider::signalChanged, this, [&asked](int by) { asked += QString::number(by) + ' '; });
    const QSignalSpy deselected(&slider, &ItemSlider::signalDeselected);
    slider.show();
    slider.select();
    slider.select(); // as a screen that is activated again does: it leaves the keyboard at once all the same
    Lcd::keys(qPrintable(keys + '\r'));
    QTEST(asked, "asked");
    QCOMPARE(deselected.count(), 1);
    QCOMPARE(slider.valueText(), shown); // what it shows changes when the owner says so
    const QRect bar = slider.findChild<QWidget *>()->geometry();
    QTEST((QList{bar.x(), bar.width()}), "bar");
}

void ItemsTest::highlightIsNeverLost()
{
    Lcd lcd;
    CollectionNavigator highlight;
    std::map<QString, Row> rows;
    for (const char *name : {"a", "b", "c"})
        rows.try_emplace(name, name, &lcd, &highlight);
    QString seen = hovered(lcd);
    for (const QString &step : QString("-b > > -c ~c > -a > +b +a xb +c xa xc").split(' ')) {
        Collection *row = step == ">" ? nullptr : &rows.at(step.last(1)).collection;
        switch (step[0].toLatin1()) {
        case '>': highlight.next(); break;
        case '+': highlight.show(row, false); break;
        case '~': highlight.show(row, true); break; // but skipped
        case '-': highlight.hide(row); break;
        case 'x': highlight.remove(row); break;
        }
        seen += ' ' + hovered(lcd);
    }
    QCOMPARE(seen, "a a c c a a a . . b b a a c .");
    rows.clear();
    highlight.next();
    highlight.select();
    const Row d("d", &lcd, &highlight);
    QCOMPARE(hovered(lcd), "d");
}

QTEST_MAIN(ItemsTest)
#include "itemstest.moc"
