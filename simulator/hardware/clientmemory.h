#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

struct _UMockdevIoctlData; // NOLINT(bugprone-reserved-identifier): umockdev's name

/// Memory of the program whose ioctl request is being answered, as a local copy; what is changed in it reaches the
/// program together with the answer. Valid until then.
class ClientMemory
{
public:
    /// @param data borrowed; null stands for no memory.
    explicit ClientMemory(_UMockdevIoctlData *data)
        : m_data(data)
    {
    }

    /// The memory behind the pointer at this offset; none if it is a null pointer or cannot be read.
    ClientMemory follow(size_t offset, size_t length) const;

    /// The object behind the pointer that the memory begins with; null if there is none.
    template <typename T> T *target() const
    {
        const std::span<uint8_t> bytes = follow(0, sizeof(T)).bytes();
        return bytes.size() == sizeof(T) ? reinterpret_cast<T *>(bytes.data()) : nullptr;
    }

    std::span<uint8_t> bytes() const;

private:
    _UMockdevIoctlData *m_data;
};
