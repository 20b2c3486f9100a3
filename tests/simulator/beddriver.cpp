/// A small program for the test bed: does in order what its arguments say and prints what it saw.
///   beddriver identify            the frame's part number, as the front panel finds it
///   beddriver soc                 whether the processor is supported
///   beddriver alpha               switches the overlay's alpha off
///   beddriver read A:OFFSET:LEN   the EEPROM at 7-bit address A (hexadecimal), or the error code
///   beddriver write OFFSET:TEXT   into the EEPROM, in one transfer whatever the pages say
///   beddriver next LEN            the EEPROM from its own address counter on
///   beddriver leds PATH:FIRST:N   writes the N LED records with codes from FIRST on, value code % 3
///   beddriver halves PATH:CODE    writes one half of such a record, and the other after a key
///   beddriver farewell PATH       stays until SIGTERM, then floods the device with LED records and makes one last
///   request beddriver events PATH:SIZE:N  waits for N records of this size and prints them beddriver open PATH opens a
///   device for good beddriver paint RRGGBB        fills the LCD beddriver say TEXT:REST       TEXT to standard output
///   and error, then REST and a line end to each beddriver folder              the working directory beddriver exit N
///   crash   stay   stubborn (stays, SIGTERM or not)
#include "hardware/frameidentification.h"
#include "hardware/linuxi2cbus.h"
#include "hardware/overlayalpha.h"
#include "hardware/supportedsoc.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <linux/fb.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <linux/input.h>
#include <map>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

using Words = std::vector<std::string>;

Words split(const std::string &text)
{
    Words words(1);
    for (const char c : text) {
        if (c == ':')
            words.emplace_back();
        else
            words.back() += c;
    }
    return words;
}

unsigned number(const std::string &text, int base = 10)
{
    return static_cast<unsigned>(std::strtoul(text.c_str(), nullptr, base));
}

void print(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

std::string printable(const std::vector<uint8_t> &bytes)
{
    std::string text;
    for (const uint8_t byte : bytes)
        text += byte >= ' ' && byte <= '~' ? static_cast<char>(byte) : '.';
    return text;
}

int openDevice(const std::string &path)
{
    const int fd = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    print((fd < 0 ? "cannot open " : "opened ") + path);
    return fd;
}

void identify(const Words &)
{
    FrameIdentification &identification = FrameIdentification::instance();
    const int result = identification.open();
    print("identified " + std::to_string(result) + " " + std::to_string(identification.variantCode()));
    identification.close();
}

constexpr I2cTransferOptions chip{.flags = 0, .timeoutFactor = 1000, .busSpeed = 400000, .addressBytes = 2};

void readEeprom(const Words &words)
{
    LinuxI2cBus bus;
    bus.open("/dev/i2c-0");
    std::vector<uint8_t> bytes(number(words[2]));
    const auto result = bus.read(static_cast<uint8_t>(number(words[0], 16) << 1), number(words[1]), bytes.data(),
        static_cast<uint32_t>(bytes.size()), chip);
    print("read " + std::to_string(result) + " " + printable(bytes));
}

void writeEeprom(const Words &words)
{
    LinuxI2cBus bus;
    bus.open("/dev/i2c-0");
    const auto result
        = bus.write(0xAE, number(words[0]), words[1].data(), static_cast<uint32_t>(words[1].size()), chip);
    print("wrote " + std::to_string(result));
}

void readOn(const Words &words)
{
    std::vector<uint8_t> bytes(number(words[0]));
    i2c_msg message{0x57, I2C_M_RD, static_cast<uint16_t>(bytes.size()), bytes.data()};
    i2c_rdwr_ioctl_data request{&message, 1};
    const int bus = open("/dev/i2c-0", O_RDWR | O_CLOEXEC);
    const int result = ioctl(bus, I2C_RDWR, &request);
    print("next " + std::to_string(result) + " " + printable(bytes));
    close(bus);
}

struct CompactRecord
{
    int32_t seconds, microseconds;
    uint16_t type, code;
    int32_t value;
};

CompactRecord ledRecord(unsigned code)
{
    return {0, 0, EV_LED, static_cast<uint16_t>(code), static_cast<int32_t>(code % 3)};
}

void writeLeds(const Words &words)
{
    const int fd = openDevice(words[0]);
    const unsigned first = number(words[1]);
    for (unsigned code = first; code < first + number(words[2]); ++code) {
        const CompactRecord record = ledRecord(code);
        if (write(fd, &record, sizeof record) != sizeof record)
            print("write failed");
    }
    close(fd);
}

void writeHalves(const Words &words)
{
    const int fd = openDevice(words[0]);
    const CompactRecord record = ledRecord(number(words[1]));
    constexpr size_t half = sizeof record / 2;
    const auto *bytes = reinterpret_cast<const char *>(&record);
    if (write(fd, bytes, half) != half)
        print("write failed");
    print("half");
    pollfd key{fd, POLLIN, 0};
    poll(&key, 1, -1);
    if (write(fd, bytes + half, half) != half)
        print("write failed");
    close(fd);
}

void farewell(const Words &words)
{
    const int fd = openDevice(words[0]);
    const int keyboard = openDevice("/dev/input/event1");
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    print("staying");
    int signal = 0;
    sigwait(&signals, &signal);
    const CompactRecord record{0, 0, EV_LED, 40, 1};
    int written = 0;
    while (written < 10000 && write(fd, &record, sizeof record) > 0)
        ++written;
    print(written > 0 && written < 10000 ? "device full" : "device never full");
    print("released " + std::to_string(ioctl(keyboard, EVIOCGRAB, 0)));
}

void printRecord(const char *bytes, size_t size)
{
    CompactRecord record;
    if (size == sizeof record) {
        std::memcpy(&record, bytes, sizeof record);
    } else {
        input_event event;
        std::memcpy(&event, bytes, sizeof event);
        record = {static_cast<int32_t>(event.input_event_sec), static_cast<int32_t>(event.input_event_usec), event.type,
            event.code, event.value};
    }
    char line[100];
    std::snprintf(line, sizeof line, "event %d.%06d %d %d %d", record.seconds, record.microseconds, record.type,
        record.code, record.value);
    print(line);
}

void readEvents(const Words &words)
{
    const int fd = openDevice(words[0]);
    const size_t size = number(words[1]);
    std::vector<char> bytes;
    for (size_t left = number(words[2]); left > 0;) {
        pollfd ready{fd, POLLIN, 0};
        poll(&ready, 1, -1);
        char chunk[1024];
        const ssize_t count = read(fd, chunk, sizeof chunk);
        if (count <= 0)
            return print("read failed");
        bytes.insert(bytes.end(), chunk, chunk + count);
        for (; left > 0 && bytes.size() >= size; --left) {
            printRecord(bytes.data(), size);
            bytes.erase(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(size));
        }
    }
    print("rest " + std::to_string(bytes.size()));
    close(fd);
}

void paint(const Words &words)
{
    const int fd = openDevice("/dev/fb0");
    fb_fix_screeninfo fixed{};
    fb_var_screeninfo variable{};
    if (ioctl(fd, FBIOGET_FSCREENINFO, &fixed) != 0 || ioctl(fd, FBIOGET_VSCREENINFO, &variable) != 0)
        return print("no framebuffer");
    void *memory = mmap(nullptr, fixed.smem_len, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    if (memory == MAP_FAILED)
        return print("cannot map");
    const uint32_t colour = number(words[0], 16);
    const auto channel
        = [&](const fb_bitfield &field, unsigned shift) { return (colour >> shift & 0xFF) << field.offset; };
    const uint32_t pixel = channel(variable.red, 16) | channel(variable.green, 8) | channel(variable.blue, 0);
    for (uint32_t y = 0; y < variable.yres; ++y) {
        auto *line = reinterpret_cast<uint32_t *>(static_cast<char *>(memory) + y * fixed.line_length);
        std::fill_n(line, variable.xres, pixel);
    }
    munmap(memory, fixed.smem_len);
    close(fd);
    print("painted");
}

void say(const Words &words)
{
    for (const std::string &part : {words[0], words[1] + "\n"}) {
        std::fputs(part.c_str(), stdout);
        std::fflush(stdout);
        std::fputs(part.c_str(), stderr);
    }
}

void stay(const Words &)
{
    print("staying");
    for (;;)
        pause();
}

const std::map<std::string, std::function<void(const Words &)>> commands{
    {"identify", identify},
    {"soc", [](const Words &) { print(isSupportedSoc() ? "supported" : "not supported"); }},
    {"alpha", [](const Words &) { disableOverlayAlpha(); }},
    {"read", readEeprom},
    {"write", writeEeprom},
    {"next", readOn},
    {"leds", writeLeds},
    {"halves", writeHalves},
    {"farewell", farewell},
    {"events", readEvents},
    {"open", [](const Words &words) { openDevice(words[0]); }},
    {"paint", paint},
    {"say", say},
    {"folder", [](const Words &) { print(std::string("folder ") + std::filesystem::current_path().c_str()); }},
    {"exit", [](const Words &words) { std::exit(static_cast<int>(number(words[0]))); }},
    {"crash", [](const Words &) { raise(SIGKILL); }},
    {"stay", stay},
    {"stubborn",
        [](const Words &words) {
            std::signal(SIGTERM, SIG_IGN);
            stay(words);
        }},
};
constexpr std::array withoutArgument{"identify", "soc", "alpha", "folder", "crash", "stay", "stubborn"};

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc;) {
        const std::string command = argv[i++];
        const bool alone = std::find(withoutArgument.begin(), withoutArgument.end(), command) != withoutArgument.end();
        commands.at(command)(alone || i == argc ? Words(3) : split(argv[i++]));
    }
    return 0;
}
