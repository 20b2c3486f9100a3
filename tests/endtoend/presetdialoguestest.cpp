#include "tests/endtoend/front.h"

#include <QTest>

namespace {

constexpr int take = 33, load = 34, save = 35; // buttons, and their LEDs
constexpr int enterKey = 28, escapeKey = 1;

} // namespace

/// Presets from the buttons of the front and from the menu: "Hall" is on button 2.
class PresetDialoguesTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_front.reset(); }
    void loadsFromTheButtons();
    void savesFromTheButtons();
    void menuLightsTheMode();

private:
    /// The LCD after these buttons.
    QImage tap(std::initializer_list<int> buttons)
    {
        for (const int button : buttons)
            m_front->tap(1, button);
        return m_front->picture();
    }
    QImage key(int code)
    {
        for (const bool down : {true, false})
            m_front->device().bed().setKeyboardKey(code, down);
        return m_front->picture();
    }
    /// Turns the knob, then pushes it.
    QImage knob(int detents)
    {
        m_front->device().bed().turnKnob(detents, std::chrono::milliseconds(60));
        m_front->picture(); // it comes from another device than the push
        return key(enterKey);
    }
    QString leds() const { return QString("%1 %2").arg(m_front->led(1, load)).arg(m_front->led(1, save)); }

    std::unique_ptr<Front> m_front;
    QImage m_menu;
};

void PresetDialoguesTest::init()
{
    m_front = std::make_unique<Front>(1);
    m_front->device().core().addPreset("Hall");
    QVERIFY(m_front->device().core().setProperty("/MEDIA/PRESET.Button2AssignedPreset", "Hall"));
    QVERIFY(m_front->start());
    m_menu = m_front->picture();
}

void PresetDialoguesTest::loadsFromTheButtons()
{
    const QImage list = tap({load});
    QVERIFY(list != m_menu);
    QCOMPARE(leds(), "1 0");
    const QImage question = tap({2}), warning = tap({5}); // which has no preset
    QVERIFY(question != list && warning != list && warning != question);
    QVERIFY(tap({2}) == question);
    QTRY_VERIFY_WITH_TIMEOUT(m_front->picture() == list, 15000); // idle: the mode stays
    QCOMPARE(leds(), "1 0");
    QVERIFY(tap({5}) == warning);
    QVERIFY(tap({load}) == m_menu); // with the warning over the list
    QCOMPARE(leds(), "0 0");
    QCOMPARE(m_front->requests(), QStringList());
    QVERIFY(tap({load, 2, take}) == m_menu);
    QTRY_COMPARE(m_front->requests(), QStringList("CALL /MEDIA/PRESET/Hall:load()"));
    QCOMPARE(leds(), "0 0");
}

void PresetDialoguesTest::savesFromTheButtons()
{
    const QImage list = tap({save});
    QVERIFY(list != m_menu);
    QCOMPARE(leds(), "0 1");
    const QImage create = tap({5}), overwrite = tap({2});
    QVERIFY(create != list && overwrite != list && overwrite != create);
    QTRY_VERIFY_WITH_TIMEOUT(m_front->picture() == list, 15000);
    QVERIFY(tap({2}) == overwrite);
    QVERIFY(tap({save}) == m_menu);
    QCOMPARE(leds(), "0 0");

    QVERIFY(tap({load}) != list);
    QVERIFY(tap({2}) != overwrite);
    QVERIFY(tap({save}) == list); // from one mode to the other
    QCOMPARE(leds(), "0 1");
    QVERIFY(tap({5}) == create);
    QVERIFY(tap({load}) != m_menu);
    QCOMPARE(leds(), "1 0");
    QVERIFY(tap({load}) == m_menu);
    QCOMPARE(m_front->requests(), QStringList());
    QVERIFY(tap({save, 5, take}) == m_menu);
    QTRY_COMPARE(m_front->requests(), QStringList("CALL /MEDIA/PRESET:createButtonAssignedPreset(5,VIDEO)"));
    QCOMPARE(leds(), "0 0");
    QCOMPARE(m_front->device().core().presetNames(), (QStringList{"Hall", "Button5"}));
    QVERIFY(tap({save, 5}) != create); // now it would be overwritten
}

void PresetDialoguesTest::menuLightsTheMode()
{
    const QImage ofButton = tap({load});
    tap({load});
    const QImage presets = knob(5);
    const QImage list = knob(0);
    QVERIFY(list == ofButton);
    QCOMPARE(leds(), "1 0");
    QVERIFY(knob(0) != list); // the question
    QVERIFY(knob(0) == list); // yes
    QTRY_COMPARE(m_front->requests(), QStringList("CALL /MEDIA/PRESET/Hall:load()"));
    QCOMPARE(leds(), "1 0");
    QVERIFY(knob(5) == presets); // Back
    QCOMPARE(leds(), "0 0");
    const QImage saving = knob(1);
    QCOMPARE(leds(), "0 1");
    QVERIFY(key(escapeKey) != saving);
    QCOMPARE(leds(), "0 0");
    QVERIFY(knob(-1) == list);
    QVERIFY(tap({load}) == presets); // its button closes it, too
    QCOMPARE(leds(), "0 0");
    QVERIFY(tap({save}) == saving);
    QVERIFY(tap({save}) == presets);
    QCOMPARE(m_front->requests().size(), 1);
}

QTEST_GUILESS_MAIN(PresetDialoguesTest)
#include "presetdialoguestest.moc"
