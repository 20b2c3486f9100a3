#include "ui/screens/screendeviceinfo.h"

#include "hardware/framedescriptor.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "ui/navigationmanager.h"
#include "ui/propertydisplaylabel.h"
#include "ui/screens/sharedscreens.h"

// The pages are owned by the parent, the labels by the rows that they are given to.

namespace {

enum Direction { Output, Input }; // as the variant manager counts them

} // namespace

ScreenDeviceInfo::ScreenDeviceInfo(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"Frame Serial Number", &propSerialNumber},
        {"Hardware Versions", new ScreenHardwareInfo(parent)},
        {"Firmware Versions", new ScreenFirmwareInfo(parent)},
        {"", shared.game},
        {"", shared.game2},
    });
    showBackButton();
}

ScreenHardwareInfo::ScreenHardwareInfo(QWidget *parent)
    : ScreenData(parent)
{
    showBackButton();
    connect(
        VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenHardwareInfo::variantIdentified);
    beginPendingEntry();
}

void ScreenHardwareInfo::variantIdentified()
{
    clearLines();
    addRows({
        {"HSMB", &propUidHwVersion},
        {"CECU", &propUidAddonHwVersion0},
        {"CPNL", &propUidAddonHwVersion1},
    });
    const FrameDescriptor *frame = VariantManager::instance()->frameDescriptor();
    addBoards("IB%1", frame->inputCardCount(), Input);
    addBoards("OB%1", frame->outputCardCount(), Output);
    if (NavigationManager::instance()->isTop(this))
        reactivate(); // the rows that were asked for are gone
    endPendingEntry();
}

void ScreenHardwareInfo::addBoards(const char *caption, int count, int direction)
{
    for (int board = 0; board < count; ++board) {
        DataLine *line = addLine(QString::fromLatin1(caption).arg(board + 1));
        line->addValueWidget(new PropertyDisplayLabel(this));
        line->setValueText(QStringLiteral("V%1").arg(VariantManager::instance()->cardVersion(direction, board)));
    }
}

ScreenFirmwareInfo::ScreenFirmwareInfo(QWidget *parent)
    : ScreenData(parent)
{
    // A component that is absent is known by the number of its property, which is the number of its row too.
    addRows({
        {"Package", &propUidFirmwareVersion},
        {"Core", &propUidAdditionalFirmwareVersion1},
        {"Menu", &propUidAdditionalFirmwareVersion2},
        {"V10 I/O Port", &propUidAdditionalFirmwareVersion3},
        {"ControlPanel", &propUidAdditionalFirmwareVersion4},
        {"Built In Web", &propUidAdditionalFirmwareVersion5},
        {"File System", &propUidAdditionalFirmwareVersion6},
        {"Bootloader", &propUidAdditionalFirmwareVersion7},
        {"V20 I/O Port", &propUidAdditionalFirmwareVersion8},
        {"VPP RX", &propUidAdditionalFirmwareVersion9},
        {"VPP TX", &propUidAdditionalFirmwareVersion10},
    });
    showBackButton();
}

void ScreenFirmwareInfo::setPort(const QString &port)
{
    ScreenData::setPort(port);
    for (const int row : absentIndices()) {
        if (row < lines().size())
            hideLine(lines()[row]);
    }
}
