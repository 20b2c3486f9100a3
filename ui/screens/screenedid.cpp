#include "ui/screens/screenedid.h"

#include "protocol/catalogue.h"
#include "ui/screens/sharedscreens.h"

#include <iterator>

namespace {

/// In the order of the catalogue's group names.
constexpr const char *bankCaptions[] = {"Factory EDIDs", "Last Attached EDIDs", "User EDIDs", "Emulated EDIDs"};

} // namespace

ScreenEdid::ScreenEdid(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    addRows({
        {"View", new ScreenEdidView(parent, shared)}, // the parent's
        {"Switch", shared.edidSwitcher},
        {"Save", shared.edidSaver},
    });
    showBackButton();
}

ScreenEdidView::ScreenEdidView(QWidget *parent, const SharedScreens &shared)
    : ScreenData(parent)
{
    static_assert(std::size(bankCaptions) == std::tuple_size_v<decltype(m_banks)>);
    for (size_t bank = 0; bank < m_banks.size(); ++bank) {
        m_banks[bank] = propEdid;
        DataLine *line = addLine(QString::fromLatin1(bankCaptions[bank]), shared.edidViewer);
        line->setProperty(&m_banks[bank]);
        line->setPort(edidGroupNames[bank], true);
    }
    showBackButton();
}
