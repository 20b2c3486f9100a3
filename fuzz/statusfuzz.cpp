#include "frontpanel/controlpanelhandler.h"
#include "frontpanel/frontlogic.h"
#include "fuzz/harness.h"
#include "hardware/framedescriptor.h"
#include "hardware/panellayout.h"
#include "managers/crosspointmanager.h"
#include "managers/frontpanelstatemanager.h"
#include "managers/operationstatemanager.h"
#include "managers/presetmanager.h"
#include "managers/upgradestatemanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "ui/navigationmanager.h"
#include "ui/screens/edidbrowser.h"
#include "ui/screens/screenedid.h"
#include "ui/screens/screenhealth.h"
#include "ui/screens/screeninoutports.h"
#include "ui/screens/sharedscreens.h"

#include <QApplication>
#include <QKeyEvent>
#include <QRegularExpression>

// What the device reports, on the front and on the pages of ports, health and EDIDs.
// An input's first line is "PARTNUMBER VERSION", the frame and the version of all its boards. Of the lines that follow
// "@2" opens a page, ">DDP" turns the knob and pushes it ("X" is Escape), "#704" presses a button, "#" lets the front's
// time run out; every other one comes from the device, to everyone, whether he asked for it or not.

namespace {

/// The front and its pages, wired as the program does as far as it takes no connection.
class Panel
{
public:
    Panel(QWidget *window, const QByteArray &partNumber, const QByteArray &version);
    ~Panel();
    void run(const QByteArray &line);

private:
    void wire();
    void turn(const QByteArray &keys);
    void hear(const IncomingLine &line);

    MyWidget m_lcd;
    SharedScreens m_shared{};
    QList<Screen *> m_pages; ///< The LCD's.
    CrosspointManager m_crosspoint;
    FrontPanelStateManager m_frontPanelState;
    OperationStateManager m_operationState;
    UpgradeStateManager m_upgradeState;
    ControlPanelHandler m_panel{{}, 0}; // nobody looks at the LEDs
    FrontLogic m_logic{{&m_panel, &m_panel, &m_panel}};
};

Panel::Panel(QWidget *window, const QByteArray &partNumber, const QByteArray &version)
    : m_lcd(window)
{
    m_lcd.show();
    m_shared.edidViewer = new ScreenEdidViewer(&m_lcd);
    m_shared.edidSwitcher = new ScreenEdidSwitcher(&m_lcd);
    m_shared.edidSaver = new ScreenEdidSaver(&m_lcd);
    m_pages = {new ScreenHealth(&m_lcd), new ScreenInOutPorts(&m_lcd, true, m_shared),
        new ScreenInOutPorts(&m_lcd, false, m_shared), new ScreenEdid(&m_lcd, m_shared)};
    PresetManager::instance(); // waits for the frame
    VariantManager *variant = VariantManager::instance();
    variant->propertyReceived(propPartNumber.path(), partNumber);
    for (int slot = 2; slot <= 22; ++slot)
        variant->propertyReceived(QString("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot), version);
    m_logic.setLayout(variant->frameDescriptor() ? variant->frameDescriptor()->layoutId() : 0);
    wire();
    m_pages[0]->showMe();
}

Panel::~Panel()
{
    delete Dt3Manager::instance(); // with all that waits for an answer
    PresetManager::destroyInstance();
    delete VariantManager::instance();
}

void Panel::wire()
{
    using Logic = FrontLogic;
    using State = FrontPanelStateManager;
    Logic *logic = &m_logic;
    const auto check = [](const char *form) {
        return [form = QRegularExpression(form)](const QString &changes) {
            require(form.match(changes).hasMatch(), "the device understands what it is asked to change");
        };
    };
    // clang-format off
    QObject::connect(&m_crosspoint, &CrosspointManager::connectionChanged, logic, &Logic::crosspointStatusChanged);
    QObject::connect(&m_crosspoint, &CrosspointManager::lockStateChanged, logic, &Logic::destinationPortStatusChanged);
    QObject::connect(&m_operationState, &OperationStateManager::operationStateChanged, logic, &Logic::operationStateChanged);
    QObject::connect(&m_upgradeState, &UpgradeStateManager::upgradeStateChanged, logic, &Logic::upgradeStateChanged);
    QObject::connect(&m_frontPanelState, &State::controlLockStateChanged, logic, &Logic::onControlLockStatusChange);
    QObject::connect(&m_frontPanelState, &State::autotakeModeChanged, logic, &Logic::onAutotakeModeChange);
    QObject::connect(logic, &Logic::loadPresetButtonPushed, logic, [logic] { logic->loadPresetMenuShowChange(true); });
    QObject::connect(logic, &Logic::savePresetButtonPushed, logic, [logic] { logic->savePresetMenuShowChange(true); });
    QObject::connect(logic, &Logic::presetLoad, PresetManager::instance(), &PresetManager::loadPresetByButtonNum);
    QObject::connect(logic, &Logic::presetSave, PresetManager::instance(), &PresetManager::createPresetByButtonNum);
    QObject::connect(logic, &Logic::connectCrosspoint, logic, check(R"(\A(I[1-9]\d{0,2}(:-|x)O([1-9]|[1-3]\d|4[0-8]);)*\z)"));
    QObject::connect(logic, &Logic::lockDestination, logic, check(R"(\A(O([1-9]|[1-3]\d|4[0-8]);)+\z)"));
    QObject::connect(logic, &Logic::unlockDestination, logic, check(R"(\A(O([1-9]|[1-3]\d|4[0-8]);)+\z)"));
    // clang-format on
}

void Panel::run(const QByteArray &line)
{
    const int number = line.mid(1).toInt();
    if (line.startsWith('@') && m_pages.value(number)) {
        m_pages[number]->showMe();
    } else if (line.startsWith('>')) {
        turn(line.mid(1, 100));
    } else if (line == "#") {
        m_logic.idleTimeoutHandler();
        m_logic.takeBlinkTimeoutHandler();
        m_logic.lockBlinkTimeoutHandler();
    } else if (line.startsWith('#') && number >= panelKey(1, 1) && number <= panelKey(3, 40)) {
        m_logic.handleButton(number, true);
        m_logic.handleButton(number, false);
    } else {
        hear(IncomingLine::parse(line));
    }
}

void Panel::turn(const QByteArray &keys)
{
    for (const char key : keys) {
        const int code = key == 'P' ? int{Qt::Key_Return} : key == 'X' ? int{Qt::Key_Escape} : key;
        QKeyEvent event(QEvent::KeyPress, code, Qt::NoModifier);
        if (QByteArrayView("PXADEQ").contains(key) && m_lcd.window()->focusWidget())
            QCoreApplication::sendEvent(m_lcd.window()->focusWidget(), &event);
    }
}

void Panel::hear(const IncomingLine &line)
{
    QList<Dt3Sink *> sinks{&m_crosspoint, &m_frontPanelState, &m_operationState, &m_upgradeState,
        PresetManager::instance(), VariantManager::instance()};
    for (ScreenData *page : m_lcd.findChildren<ScreenData *>())
        sinks.append(page);
    const QString path = textOf(line.path), value = unescapeValue(line.value);
    const QString parent = path.section('/', 0, -2), child = path.section('/', -1);
    for (Dt3Sink *sink : std::as_const(sinks)) {
        switch (line.kind) {
        case IncomingLine::Property: sink->propertyReceived(path, value); break;
        case IncomingLine::Changed: sink->propertyChanged(path, value); break;
        case IncomingLine::Node: sink->nodeReceived(path); break;
        case IncomingLine::Added: sink->nodeAdded(parent, child); break;
        case IncomingLine::Removed: sink->nodeRemoved(parent, child); break;
        default: break;
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "statusfuzz", *argv[] = {name, nullptr};
    static auto &application = *new QApplication(argc, argv); // for the life of the process, as the window
    static auto &window = *new MyWidget;
    if (!window.isVisible()) {
        fillCatalogue();
        window.show();
    }
    Q_UNUSED(application)
    const QList<QByteArray> lines = inputOf(data, size).toByteArray().split('\n');
    const QList<QByteArray> frame = lines[0].split(' ');
    Panel panel(&window, frame[0], frame.value(1));
    for (const QByteArray &line : lines.mid(1))
        panel.run(line);
    QCoreApplication::processEvents(); // lays out and paints
    return 0;
}
