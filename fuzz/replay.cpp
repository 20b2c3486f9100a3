#include "fuzz/harness.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

/// replay FOLDER: runs every file of a corpus once. For builds without libFuzzer, which brings a main of its own.
int main(int argc, char **argv)
{
    require(argc == 2, "called with a folder");
    int count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
        std::printf("%s\n", entry.path().c_str());
        std::fflush(stdout); // it tells the input that ended us
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        require(!file.bad(), "the file can be read");
        LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
        ++count;
    }
    require(count > 0, "the folder holds inputs");
}
