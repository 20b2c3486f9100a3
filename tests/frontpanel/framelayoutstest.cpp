#include "frontpanel/framelayouts.h"

#include "eventdevice.h"

#include <QTest>

namespace {

/// Buttons given by their keys, in the order of the port numbers: "704-711 720-727".
QList<int> keysOf(const QString &ranges)
{
    QList<int> keys;
    for (const QString &range : ranges.split(' ')) {
        const int last = range.section('-', 1).toInt();
        for (int key = range.section('-', 0, 0).toInt(); key <= last; ++key)
            keys += key;
    }
    return keys;
}

QString write(int key, int value)
{
    return QString("%1.%2=%3").arg((key - 704) / 40 + 1).arg((key - 704) % 40 + 1).arg(value);
}

/// Expected and actual records are compared panel by panel: their order across panels cannot be seen.
QStringList byPanel(QStringList writes)
{
    std::stable_sort(writes.begin(), writes.end(), [](const QString &a, const QString &b) { return a[0] < b[0]; });
    return writes;
}

} // namespace

class FrameLayoutsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void keysAndTheirMeaning();
    void ledsAreThoseOfTheButtons();
    void numbersWithoutButton();
    void clearing();
    void progress();

private:
    std::unique_ptr<FrontLayout> makeLayout(int id) const;
    PanelFront m_front;
};

std::unique_ptr<FrontLayout> FrameLayoutsTest::makeLayout(int id) const
{
    const auto [panel1, panel2, panel3] = m_front.panels();
    switch (id) {
    case 1: return std::make_unique<Frame8Layout>(panel1);
    case 2: return std::make_unique<Frame16Layout>(panel1);
    case 3: return std::make_unique<Frame16Plus4AudioLayout>(panel1, panel2);
    case 4: return std::make_unique<Frame24Layout>(panel1, panel2, panel3);
    case 5: return std::make_unique<Frame32Plus8AudioLayout>(panel1, panel2, panel3);
    default: return std::make_unique<Frame48Layout>(panel1, panel2, panel3);
    }
}

void FrameLayoutsTest::initTestCase_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("inputs");
    QTest::addColumn<QString>("outputs");
    QTest::addColumn<int>("take");       ///< Load and Save are its neighbours.
    QTest::addColumn<QString>("beyond"); ///< Input 0, output 0, the first input and output too many.
    // clang-format off
    QTest::newRow("8")    << 1 << "704-711"                 << "720-727"                 << 736 << "1.0=1 1.16=1 1.9=1 1.25=1";
    QTest::newRow("16")   << 2 << "704-719"                 << "720-735"                 << 736 << "1.0=1 1.16=1 1.17=1 1.33=1";
    QTest::newRow("16+4") << 3 << "704-711 720-727"         << "744-751 760-771"         << 739 << "1.0=1 2.0=1";
    QTest::newRow("24")   << 4 << "704-711 720-727 744-751" << "760-767 784-791 800-807" << 736 << "1.0=1 2.16=1 2.9=1 3.25=1";
    QTest::newRow("32+8") << 5 << "704-735"                 << "744-775 784-791"         << 736 << "1.0=1 2.0=1 1.33=1 3.9=1";
    QTest::newRow("48")   << 6 << "704-735 744-759"         << "760-775 784-815"         << 736 << "1.0=1 2.16=1 2.17=1 3.33=1";
    // clang-format on
}

void FrameLayoutsTest::keysAndTheirMeaning()
{
    QFETCH_GLOBAL(int, id);
    QFETCH_GLOBAL(QString, inputs);
    QFETCH_GLOBAL(QString, outputs);
    QFETCH_GLOBAL(int, take);
    const auto layout = makeLayout(id);
    const QList<int> inputKeys = keysOf(inputs);
    const QList<int> outputKeys = keysOf(outputs);
    for (int key = 690; key <= 840; ++key) {
        for (const FrontEvent event : {FrontEvent{0, key, 1}, FrontEvent{0, key, 0}, FrontEvent{0, key, 2},
                 FrontEvent{1, key, 1}, FrontEvent{1, key, 0}}) {
            const bool pressed = event.source == 0 && event.value == 1;
            const bool released = event.source == 0 && event.value == 0;
            QCOMPARE(layout->isTakePressed(event), pressed && key == take);
            QCOMPARE(layout->isTakeReleased(event), released && key == take);
            QCOMPARE(layout->isLoadPresetPressed(event), pressed && key == take + 1);
            QCOMPARE(layout->isSavePresetPressed(event), pressed && key == take + 2);
            QCOMPARE(layout->isControlLockPressed(event), pressed && key == 742);
            QCOMPARE(layout->isControlLockReleased(event), released && key == 742);
            QCOMPARE(layout->isDestinationLockPressed(event), pressed && key == 743);
            QCOMPARE(layout->isInputButton(event), pressed && inputKeys.contains(key));
            QCOMPARE(layout->isOutputButton(event), pressed && outputKeys.contains(key));
            if (layout->isInputButton(event))
                QCOMPARE(layout->inputNumber(event), inputKeys.indexOf(key) + 1);
            if (layout->isOutputButton(event))
                QCOMPARE(layout->outputNumber(event), outputKeys.indexOf(key) + 1);
        }
    }
}

void FrameLayoutsTest::ledsAreThoseOfTheButtons()
{
    QFETCH_GLOBAL(int, id);
    QFETCH_GLOBAL(QString, inputs);
    QFETCH_GLOBAL(QString, outputs);
    QFETCH_GLOBAL(int, take);
    const auto layout = makeLayout(id);
    QStringList expected{write(take, 1), write(take + 1, 2), write(take + 2, 3), write(742, 4), write(743, 5)};
    layout->setTakeLed(1);
    layout->setLoadPresetLed(2);
    layout->setSavePresetLed(3);
    layout->setControlLockLed(4);
    layout->setDestinationLockLed(5);
    int number = 0;
    for (const int key : keysOf(inputs)) {
        ++number;
        layout->setInputLed(number, number);
        expected += write(key, number);
    }
    number = 0;
    for (const int key : keysOf(outputs)) {
        ++number;
        layout->setOutputLed(number, number);
        expected += write(key, number);
    }
    QCOMPARE(m_front.takeWrites(), byPanel(expected));
}

void FrameLayoutsTest::numbersWithoutButton()
{
    QFETCH_GLOBAL(int, id);
    QFETCH_GLOBAL(QString, inputs);
    QFETCH_GLOBAL(QString, outputs);
    QFETCH_GLOBAL(QString, beyond);
    const auto layout = makeLayout(id);
    layout->setInputLed(0, 1);
    layout->setOutputLed(0, 1);
    layout->setInputLed(static_cast<int>(keysOf(inputs).size()) + 1, 1);
    layout->setOutputLed(static_cast<int>(keysOf(outputs).size()) + 1, 1);
    QCOMPARE(m_front.takeWrites(), byPanel(beyond.split(' ')));
}

void FrameLayoutsTest::clearing()
{
    QFETCH_GLOBAL(int, id);
    QFETCH_GLOBAL(QString, inputs);
    QFETCH_GLOBAL(QString, outputs);
    const auto layout = makeLayout(id);
    QStringList expected;
    for (const int key : keysOf(inputs))
        expected += write(key, 0);
    layout->clearInputLeds();
    QCOMPARE(m_front.takeWrites(), byPanel(expected));
    for (const int key : keysOf(outputs))
        expected += write(key, 0);
    layout->clearPortLeds();
    QCOMPARE(m_front.takeWrites(), byPanel(expected));
}

void FrameLayoutsTest::progress()
{
    QFETCH_GLOBAL(int, id);
    QFETCH_GLOBAL(QString, inputs);
    QFETCH_GLOBAL(QString, outputs);
    const auto layout = makeLayout(id);
    const QList<int> bar = keysOf(inputs) + keysOf(outputs);
    const int length = static_cast<int>(bar.size());
    for (const int position : {0, 1, 3, length / 2, length, length + 1, 255}) {
        QStringList expected;
        for (int i = 1; i <= length; ++i)
            expected += write(bar[i - 1], i < position ? 1 : i == position ? 2 : 0);
        layout->showProgress(position);
        QCOMPARE(m_front.takeWrites(), byPanel(expected));
    }
}

QTEST_MAIN(FrameLayoutsTest)
#include "framelayoutstest.moc"
