// clang-format off
#include <umockdev.h> // ahead of everything: Qt's headers make "signals" a macro
// clang-format on

#include "simulator/hardware/clientmemory.h"

ClientMemory ClientMemory::follow(size_t offset, size_t length) const
{
    if (!m_data)
        return ClientMemory(nullptr);
    g_autoptr(GError) error = nullptr;
    UMockdevIoctlData *target = umockdev_ioctl_data_resolve(m_data, offset, length, &error);
    if (!target || error)
        return ClientMemory(nullptr);
    umockdev_ioctl_data_unref(target); // what holds the pointer keeps its target, too
    return ClientMemory(target);
}

std::span<uint8_t> ClientMemory::bytes() const
{
    if (!m_data)
        return {};
    return {m_data->data, static_cast<size_t>(m_data->data_len)};
}
