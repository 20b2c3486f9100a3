#include "managers/variantmanager.h"

#include "hardware/assigncards.h"
#include "protocol/catalogue.h"

#include <QCoreApplication>
#include <QPointer>
#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr int inputDirection = 1;

constexpr uint32_t cardWord(int version)
{
    const auto number = static_cast<uint32_t>(version);
    return 1U << 31 | (number / 10 & 0xF) << 23 | (number % 10 & 0xF) << 19;
}

constexpr int versionOf(uint32_t cardWord)
{
    return static_cast<int>((cardWord >> 19 & 0xF) + 10 * (cardWord >> 23 & 0xF));
}
static_assert(versionOf(cardWord(0)) == 0 && versionOf(cardWord(19)) == 19 && versionOf(cardWord(159)) == 159);

} // namespace

VariantManager *VariantManager::instance()
{
    static QPointer<VariantManager> self;
    if (!self) {
        self = new VariantManager; // owned by the post routine
        qAddPostRoutine([] { delete self.data(); });
    }
    return self;
}

VariantManager::VariantManager() { m_addonVersions.fill(-1); }

int VariantManager::cardVersion(int direction, int index) const
{
    const std::vector<uint32_t> &cards = direction == inputDirection ? m_inputCards : m_outputCards;
    // The list is short where the frame's slots could not all be told.
    return index >= 0 && static_cast<size_t>(index) < cards.size() ? versionOf(cards[static_cast<size_t>(index)]) : 0;
}

void VariantManager::connectionStateChanged(bool connected)
{
    if (connected) {
        get(propPartNumber.path());
        return;
    }
    m_addonVersions.fill(-1);
    m_identified = false;
}

void VariantManager::update(const QString &property, const QString &value)
{
    if (m_identified)
        return;
    if (property == propPartNumber.path())
        readPartNumber(value);
    static const QRegularExpression addonProperty(QStringLiteral("AddonHwVersion(\\d+)$"));
    if (const auto match = addonProperty.match(property); match.hasMatch())
        readAddonVersion(match.captured(1).toInt(), value);
    if (std::find(m_addonVersions.begin(), m_addonVersions.end(), -1) == m_addonVersions.end())
        identify();
}

void VariantManager::readPartNumber(const QString &value)
{
    m_frameDescriptor = findFrameDescriptor(value.toUInt());
    for (int slot = firstSlot; slot <= lastSlot; ++slot)
        get(QStringLiteral("/MANAGEMENT/UID.AddonHwVersion%1").arg(slot));
}

void VariantManager::readAddonVersion(int slot, const QString &value)
{
    if (slot < firstSlot || slot > lastSlot)
        return;
    static const QRegularExpression version(QStringLiteral("^V(\\d+)_"));
    m_addonVersions[static_cast<size_t>(slot - firstSlot)] = version.match(value).captured(1).toInt(); // 0 for none
}

void VariantManager::identify()
{
    if (!m_frameDescriptor) {
        qWarning("Some weird variant was detected. Giving up.");
        return;
    }
    m_identified = true;
    std::array<uint32_t, 20> slotWords; // the version of slot 22 is awaited, but no card sits there
    std::transform(m_addonVersions.begin(), m_addonVersions.begin() + slotWords.size(), slotWords.begin(), cardWord);
    m_inputCards.clear();
    m_outputCards.clear();
    assignCards(*m_frameDescriptor, slotWords, m_inputCards, m_outputCards); // says itself what it cannot place
    emit variantIdentified();
}
