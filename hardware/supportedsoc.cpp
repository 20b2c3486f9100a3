#include "hardware/supportedsoc.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

struct CloseFile
{
    void operator()(std::FILE *file) const { std::fclose(file); }
};

} // namespace

bool isSupportedSoc()
{
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen("/sys/bus/soc/devices/soc0/soc_id", "re"));
    if (!file)
        return false;
    std::array<char, 256> line;
    while (std::fgets(line.data(), static_cast<int>(line.size()), file.get()))
        if (std::strstr(line.data(), "i.MX6"))
            return true;
    return false;
}
