#pragma once

#include <QString>

#include <array>
#include <cstdint>

/// What the front knows of one destination. Source 0 is no source.
struct Destination
{
    uint8_t source = 0;        ///< On the device.
    bool locked = false;       ///< On the device.
    uint8_t pendingSource = 0; ///< Being edited, valid after editSources().
    bool pendingLock = false;  ///< Being edited, valid after editLocks().
};

/// Routing and locks of all destinations, as the device has them and as they are being edited, and the texts in
/// which both travel. Destinations count from 1.
class DestinationTable
{
public:
    static constexpr int capacity = 48;

    /// @param count 0 to capacity.
    void setCount(int count);
    int count() const { return m_count; }

    Destination &operator[](int destination);

    /// Takes over the device's status text: one field per destination, divided by ";". Missing fields change
    /// nothing, surplus ones are ignored.
    /// Routing: "0" or a letter and the source number; what is no number means no source.
    void readSources(const QString &status);
    /// Locks: "U..." or "L..." is locked.
    void readLocks(const QString &status);

    /// Starts editing from what the device has.
    void editSources();
    void editLocks();

    /// Routing changes for the device, ascending: "I7xO2;" cuts source 7 from destination 2, "I3:-O5;" connects.
    QString sourceChanges() const;
    /// Destinations to lock, or to unlock: "O3;O5;".
    QString lockChanges(bool lock) const;

private:
    std::array<Destination, capacity> m_destinations;
    int m_count = 0;
};
