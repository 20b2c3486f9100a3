#include "simulator/coreservice/edidproperties.h"

#include "simulator/coreservice/valuerule.h"

#include <array>
#include <iterator>

namespace {

constexpr std::array<const char *, 4> fieldNames = {"Manufacturer", "PreferredResolution", "MonitorName", "AudioInfo"};
using Edid = std::array<const char *, 4>;

// clang-format off
constexpr Edid factory[] = {
    {"FCT", "1024x768p60.00Hz",  "D1024X768",   ""},
    {"FCT", "1280x1024p60.00Hz", "D1280X1024",  ""},
    {"FCT", "1600x1200p60.00Hz", "D1600X1200",  ""},
    {"FCT", "1920x1200p59.95Hz", "D1920X1200",  ""},
    {"FCT", "2560x1600p59.97Hz", "D2560X1600",  ""},
    {"FCT", "1280x720p50.00Hz",  "H720P50",     "LPCM 2ch 48kHz"},
    {"FCT", "1280x720p60.00Hz",  "H720P60",     "LPCM 2ch 48kHz"},
    {"FCT", "1920x1080p50.00Hz", "H1080P50",    "LPCM 2ch 48kHz"},
    {"FCT", "1920x1080p60.00Hz", "H1080P60",    "LPCM 2ch 48kHz"},
    {"FCT", "1920x1080p60.00Hz", "H1080P60M",   "LPCM 8ch 192kHz,AC-3 6ch 48kHz,DTS 6ch 48kHz"},
    {"FCT", "3840x2160p30.00Hz", "H2160P30",    "LPCM 2ch 48kHz"},
    {"FCT", "3840x2160p60.00Hz", "H2160P60",    "LPCM 2ch 48kHz"},
    {"FCT", "3840x2160p60.00Hz", "H2160P60M",   "LPCM 8ch 192kHz,AC-3 6ch 48kHz,DTS 6ch 48kHz"},
    {"FCT", "4096x2160p60.00Hz", "H4096P60",    "LPCM 8ch 192kHz"},
    {"FCT", "3840x2160p60.00Hz", "P2160P60",    "LPCM 2ch 48kHz"},
    {"FCT", "2560x1440p59.95Hz", "Universal",   "LPCM 8ch 192kHz,AC-3 6ch 48kHz"},
};

/// What hangs on the outputs; they take turns.
constexpr Edid displays[] = {
    {"OVN", "1920x1080p60.00Hz", "Lobby wall",  "LPCM 2ch 48kHz"},
    {"OVN", "3840x2160p60.00Hz", "Stage left",  "LPCM 8ch 192kHz,AC-3 6ch 48kHz"},
    {"KRD", "1280x800p59.81Hz",  "Projector 2", ""},
};
// clang-format on

constexpr Edid empty = {"", "", "", ""};
constexpr int userCount = 16;
constexpr size_t emulatedAsDelivered = 8; // 1080p60 with plain audio

/// "F12" lives at "/EDID/F/F12".
QString edidPath(const QString &name) { return "/EDID/" + name.left(1) + '/' + name; }

void addEdid(PropertyTree &tree, QChar bank, int number, const Edid &edid, const char *accepts)
{
    for (size_t i = 0; i < fieldNames.size(); ++i)
        tree.addProperty(edidPath(bank + QString::number(number)), fieldNames[i], accepts, edid[i]);
}

/// Copies one EDID over another. @param from, to the letters of the banks they may be of. Empty, or what is wrong.
QString copyEdid(
    PropertyTree &tree, const QString &source, const QString &destination, const QString &from, const QString &to)
{
    const auto exists = [&tree](const QString &name, const QString &banks) {
        return !name.isEmpty() && banks.contains(name[0]) && tree.node(edidPath(name));
    };
    if (!exists(source, from))
        return "no such source: " + source;
    if (!exists(destination, to))
        return "no such destination: " + destination;
    for (const char *field : fieldNames)
        tree.setValue(edidPath(destination) + '.' + field, tree.value(edidPath(source) + '.' + field));
    return {};
}

QString switchAll(PropertyTree &tree, const QString &source)
{
    const QStringList emulated = tree.node("/EDID/E")->children;
    for (const QString &destination : emulated)
        if (QString error = copyEdid(tree, source, destination, "FDU", "E"); !error.isEmpty())
            return error;
    return {};
}

} // namespace

void addEdidProperties(PropertyTree &tree, const FrameDescriptor &frame)
{
    int number = 0;
    for (const Edid &edid : factory)
        addEdid(tree, 'F', ++number, edid, ValueRule::fixed);
    for (int output = 1; output <= frame.outputPortCount(); ++output)
        addEdid(tree, 'D', output, displays[static_cast<size_t>(output) % std::size(displays)], ValueRule::fixed);
    for (int user = 1; user <= userCount; ++user)
        addEdid(tree, 'U', user, empty, ValueRule::byMethod);
    for (int input = 1; input <= frame.inputPortCount(); ++input)
        addEdid(tree, 'E', input, factory[emulatedAsDelivered], ValueRule::byMethod);

    tree.addMethod("/EDID", "switch", [&tree](const QString &pair) {
        return copyEdid(tree, pair.section(':', 0, 0), pair.section(':', 1), "FDU", "E");
    });
    tree.addMethod("/EDID", "switchAll", [&tree](const QString &source) { return switchAll(tree, source); });
    tree.addMethod("/EDID", "copy", [&tree](const QString &pair) {
        return copyEdid(tree, pair.section(':', 0, 0), pair.section(':', 1), "FDU", "U");
    });
}
