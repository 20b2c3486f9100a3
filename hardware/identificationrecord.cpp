#include "hardware/identificationrecord.h"

#include "hardware/randomaccessstorageinterface.h"

#include <array>
#include <cstdlib>

namespace {

constexpr uint32_t partNumberOffset = 244;
constexpr uint32_t partNumberLength = 8;

} // namespace

IdentificationRecord::IdentificationRecord(RandomAccessStorageInterface *storage)
    : m_storage(storage)
{
}

int IdentificationRecord::partNumber() const
{
    std::array<char, partNumberLength + 1> text{};
    if (m_storage->read(partNumberOffset, text.data(), partNumberLength) != 0)
        return 0;
    return static_cast<int>(std::strtol(text.data(), nullptr, 10)); // eight characters cannot exceed an int
}
