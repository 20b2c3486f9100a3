#include "ui/screens/screeninoutports.h"

#include "hardware/framedescriptor.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "ui/screens/screenaudio.h"
#include "ui/screens/screenport.h"
#include "ui/screens/sharedscreens.h"
#include "ui/styles.h"

#include <algorithm>

namespace {

constexpr int audioOnlyKind = 2; // of a frame's port
constexpr int iconWidth = 20;    // pixels

/// The signs of a row, in their order; they light for 3 in two bits of the status byte, or for a status letter.
const struct
{
    QString video, audioOnly; ///< What is drawn on a video port, and on one that has audio alone.
    int lowBit;               ///< -1: the letters decide.
    const char *letters;
} signs[] = {
    {Glyph::key, {}, 4, ""},
    {Glyph::music, Glyph::music, 6, ""},
    {Glyph::signalBars, {}, 2, ""},
    {Glyph::plug, {}, 0, ""},
    {Glyph::eyeSlash, Glyph::mutedSpeaker, -1, "MU"},
    {Glyph::lock, Glyph::lock, -1, "LU"},
};

/// In "MF3" the "M" and 0xF3; a byte of 0 in "M-", and where its last two characters are no number.
struct PortStatus
{
    explicit PortStatus(const QString &text)
        : letter(text.front())
        , byte(text.size() > 1 && text[1] == '-' ? 0
                                                 : text.last(std::min<qsizetype>(text.size(), 2)).toUInt(nullptr, 16))
    {
    }

    QChar letter;
    unsigned byte;
};

} // namespace

ScreenInOutPorts::ScreenInOutPorts(QWidget *parent, bool input, const SharedScreens &shared)
    : ScreenData(parent)
    , m_input(input)
    , m_shared(shared)
{
    showBackButton();
    connect(VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenInOutPorts::variantIdentified);
}

void ScreenInOutPorts::variantIdentified()
{
    if (!lines().isEmpty())
        return;
    const FrameDescriptor *frame = VariantManager::instance()->frameDescriptor();
    // The pages are owned by the Pool, as this one.
    if (m_input) {
        addWatchedProperty(&propXpSourcePortStatus);
        auto *page = new ScreenInputPort(parentWidget(), m_shared);
        for (int port = 0; port < frame->inputPortCount(); ++port)
            addPort(port + 1, false, page);
        return;
    }
    addWatchedProperty(&propXpDestinationPortStatus);
    auto *audio = new ScreenOutAudio(parentWidget(), m_shared);
    auto *page = new ScreenOutputPort(parentWidget(), m_shared, audio);
    for (int port = 0; port < frame->outputPortCount(); ++port) {
        const bool audioOnly = frame->portKind(port, true) == audioOnlyKind;
        addPort(port + 1, audioOnly, audioOnly ? static_cast<Screen *>(audio) : page);
    }
}

void ScreenInOutPorts::addPort(int number, bool audioOnly, Screen *page)
{
    DataLine *line = addLine(QStringLiteral("Port %1").arg(number), page);
    line->setPort((m_input ? QStringLiteral("/I%1") : QStringLiteral("/O%1")).arg(number), true);
    Icons &icons = m_icons.emplaceBack();
    for (size_t i = 0; i < icons.size(); ++i) {
        icons[i] = new StyledLabel(this); // the row's
        icons[i]->setSheet(Style::portIcon);
        icons[i]->setFixedWidth(iconWidth); // one under the other
        icons[i]->setAlignment(Qt::AlignCenter);
        icons[i]->setStyledProperty("active", false);
        icons[i]->setText(audioOnly ? signs[i].audioOnly : signs[i].video);
        line->addWidget(icons[i]);
    }
}

void ScreenInOutPorts::updateValue(const QString &property, const QString &value)
{
    ScreenData::updateValue(property, value);
    if (property == (m_input ? propXpSourcePortStatus : propXpDestinationPortStatus).path())
        showStatus(value);
}

void ScreenInOutPorts::showStatus(const QString &status)
{
    const QStringList parts = status.split(';', Qt::SkipEmptyParts);
    for (qsizetype row = 0; row < std::min(parts.size(), m_icons.size()); ++row) {
        const PortStatus port(parts[row]);
        for (size_t i = 0; i < iconCount; ++i) {
            const auto &sign = signs[i];
            const bool active = sign.lowBit < 0 ? QLatin1StringView(sign.letters).contains(port.letter)
                                                : (port.byte >> sign.lowBit & 3U) == 3;
            m_icons[row][i]->setStyledProperty("active", active);
        }
    }
}
