#include "app/endrequests.h"
#include "app/servicemanager.h"
#include "app/wiring.h"
#include "frontpanel/controllockfilter.h"
#include "frontpanel/controlpanelhandler.h"
#include "frontpanel/frontlogic.h"
#include "frontpanel/rotaryencoderhandler.h"
#include "hardware/framedescriptor.h"
#include "hardware/frameidentification.h"
#include "hardware/overlayalpha.h"
#include "hardware/supportedsoc.h"
#include "managers/crosspointmanager.h"
#include "managers/frontpanelstatemanager.h"
#include "managers/operationstatemanager.h"
#include "managers/presetmanager.h"
#include "managers/upgradestatemanager.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "protocol/dt3manager.h"
#include "ui/fonts.h"
#include "ui/navigationmanager.h"
#include "ui/pool.h"
#include "ui/stylesheet.h"

#include <QApplication>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

/// The layout id of the frame that the EEPROM names; 0 when it could not be told in three attempts.
int identifyFrame(FrameIdentification &identification)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (identification.open() == 0) {
            const int code = identification.variantCode();
            if (const FrameDescriptor *frame = findFrameDescriptor(static_cast<uint32_t>(code))) {
                qDebug("Front layout initialized. (%d)", frame->layoutId());
                return frame->layoutId();
            }
            qWarning("Some weird variant was detected. (%.8d)", code);
        }
        identification.close();
        std::this_thread::sleep_for(std::chrono::milliseconds(300)); // the bus may be busy while the board boots
    }
    qWarning("Failed to init front layout.");
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    EndRequests endRequests; // before there are other threads
    QApplication application(argc, argv);
    if (!QGuiApplication::primaryScreen()) {
        qWarning("There is no LCD to draw on, so front-panel ends. Is /dev/fb0 there, and may this user write to it?");
        return EXIT_FAILURE;
    }
    endRequests.watch();
    fillCatalogue(); // before anyone copies or uses an entry
    VariantManager *variant = VariantManager::instance();

    RotaryEncoderHandler encoder(QStringLiteral("/dev/input/event0"));
    ControlPanelHandler panel1(QStringLiteral("/dev/input/event2"), 0);
    ControlPanelHandler panel2(QStringLiteral("/dev/input/event3"), 40);
    ControlPanelHandler panel3(QStringLiteral("/dev/input/event4"), 80);
    FrameIdentification &identification = FrameIdentification::instance();
    FrontLogic logic({&panel1, &panel2, &panel3});

    if (isSupportedSoc())
        disableOverlayAlpha();
    logic.setLayout(identifyFrame(identification));

    ControlLockFilter filter(&logic);
    application.installEventFilter(&filter);

    blackenBackground();
    loadFonts(QStringLiteral("qt-base/font"));

    NavigationManager *navigation = NavigationManager::instance();
    Dt3Manager *dt3 = Dt3Manager::instance();
    Pool *pool = Pool::instance();
    QCoreApplication::processEvents(); // the LCD shows its first picture
    pool->initScreens();

    CrosspointManager crosspoint;
    FrontPanelStateManager frontPanelState;
    OperationStateManager operationState;
    UpgradeStateManager upgradeState;
    connectHouse({*dt3, *variant, *pool, *navigation, crosspoint, frontPanelState, operationState, upgradeState,
        *PresetManager::instance(), filter, logic});

    dt3->connectToDevice();
    ServiceManager serviceManager;
    const int status = QApplication::exec();
    PresetManager::destroyInstance();
    return status;
}
