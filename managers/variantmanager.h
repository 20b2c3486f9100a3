#pragma once

#include "protocol/dt3sink.h"

#include <QObject>

#include <array>
#include <cstdint>
#include <vector>

struct FrameDescriptor;

/// Finds out from the device what frame this is and which boards sit in it.
///
/// On connection it reads the part number, then the hardware version of every add-on slot; when all have come it
/// deals the slots to cards and says so. After a loss of the link it starts anew; what it knew stays readable.
class VariantManager : public QObject, public Dt3Sink
{
    Q_OBJECT
public:
    /// The one of this process. Made on first use; goes with the application object.
    static VariantManager *instance();

    /// A row of the frame table; null until the part number has been recognised.
    const FrameDescriptor *frameDescriptor() const { return m_frameDescriptor; }

    /// Hardware version of a card, 0 to 165. @param direction 1 for input cards, anything else for output cards.
    /// @param index from 0; 0 is answered for a card that the frame does not have.
    int cardVersion(int direction, int index) const;

    void propertyReceived(const QString &property, const QString &value) override { update(property, value); }
    void propertyChanged(const QString &property, const QString &value) override { update(property, value); }

signals:
    /// frameDescriptor() and cardVersion() are good now. Once per connection.
    void variantIdentified();

public slots:
    void connectionStateChanged(bool connected);

private:
    static constexpr int firstSlot = 2;
    static constexpr int lastSlot = 22;

    VariantManager();
    void update(const QString &property, const QString &value);
    void readPartNumber(const QString &value);
    void readAddonVersion(int slot, const QString &value);
    void identify();

    const FrameDescriptor *m_frameDescriptor = nullptr;
    std::array<int, lastSlot - firstSlot + 1> m_addonVersions; ///< By slot; -1: not received yet.
    std::vector<uint32_t> m_inputCards, m_outputCards;         ///< Card words, in card order.
    bool m_identified = false;
};
