#include "simulator/coreservice/portproperties.h"

#include "simulator/coreservice/valuerule.h"

#include <algorithm>

namespace {

using namespace ValueRule;

/// What a port carries; ports take turns.
enum Signal { FullHd, UltraHd, Dvi, NoSignal, signalCount };

struct PortRow
{
    const char *node; ///< Below the port.
    const char *name;
    const char *accepts;
    const char *values[signalCount]; ///< The first alone where the signal does not matter.
};

// clang-format off
constexpr PortRow rows[] = {
    {"STATUS", "Connected",            fixed, {"true", "true", "true", "false"}},
    {"STATUS", "SignalPresent",        fixed, {"true", "true", "true", "false"}},
    {"STATUS", "SignalType",           fixed, {"HDMI", "HDMI", "DVI", "-"}},
    {"STATUS", "ColorSpace",           fixed, {"RGB", "YUV_444", "RGB", "-"}},
    {"STATUS", "ColorDepth",           fixed, {"8", "8", "8", "-"}},
    {"STATUS", "ActiveHdcpVersion",    fixed, {"1", "2", "0", "0"}},
    {"STATUS", "Hdcp2StreamType",      fixed, {"0", "1", "0", "0"}},
    {"STATUS", "EmbeddedAudioPresent", fixed, {"true", "true", "false", "false"}},
    {"STATUS", "ActiveResolution",     fixed, {"1920x1080p60.00Hz", "3840x2160p60.00Hz", "1280x720p50.00Hz", "-"}},
    {"STATUS", "TotalResolution",      fixed, {"2200x1125", "4400x2250", "1980x750", "-"}},
    {"STATUS", "PixelClock",           fixed, {"148.50", "594.00", "74.25", "0.00"}},
    {"STATUS", "Scrambling",           fixed, {"false", "true", "false", "false"}},
    {"STATUS", "TmdsClockRate",        fixed, {"false", "true", "false", "false"}},
    {"STATUS", "DpLinkRate",           fixed, {"-"}},
    {"STATUS", "DpLaneCount",          fixed, {"-"}},
    {"SETTINGS", "HdcpVersion",              "0|1|2|3",                {"2"}},
    {"SETTINGS", "EnableHPD",                "AUTO|ON|OFF",            {"AUTO"}},
    {"SETTINGS", "DpMaxLaneCount",           "1|2|4",                  {"4"}},
    {"SETTINGS", "DpMaxLinkRate",            "RBR|HBR|HBR2",           {"HBR2"}},
    {"SETTINGS", "EnablePower",              boolean,                  {"true"}},
    {"SETTINGS", "TpgMode",                  "0|1",                    {"0"}},
    {"SETTINGS", "Conversion",               "OFF|420|422|LEFT|RIGHT", {"OFF"}},
    {"SETTINGS", "ForcedSignalType",         "AUTO|HDMI|DVI",          {"AUTO"}},
    {"SETTINGS", "HdcpMode",                 "AUTO|ALWAYS",            {"AUTO"}},
    {"SETTINGS", "ForcedScrambling",         "AUTO|ON|OFF",            {"AUTO"}},
    {"SETTINGS", "ForcedHdmi2TmdsClockRate", "AUTO|ON|OFF",            {"AUTO"}},
    {"EMBEDDEDAUDIO", "SignalPresent", fixed, {"true", "true", "false", "false"}},
    {"EMBEDDEDAUDIO", "AudioType",     fixed, {"PCM", "AC-3", "", ""}},
    {"EMBEDDEDAUDIO", "SamplingFreq",  fixed, {"48", "48", "", ""}},
    {"EMBEDDEDAUDIO", "AudioMode",     "OFF|HDMI|ANALOG|HDMI+ANALOG",  {"HDMI"}},
    {"ANALOGAUDIO", "AudioMode",       "OFF|HDMI|ANALOG",              {"HDMI"}},
    {"ANALOGAUDIO", "Gain",            "-12..35",                      {"0"}},
    {"ANALOGAUDIO", "Mute",            boolean,                        {"false"}},
    {"ANALOGAUDIO", "VolumePercent",   byMethod,                       {"80"}},
    {"ANALOGAUDIO", "VolumedB",        byMethod,                       {"-12.00"}},
    {"ANALOGAUDIO", "Balance",         byMethod,                       {"0"}},
};
// clang-format on

constexpr double dbPerPercent = 0.6; // 100 % is 0 dB, 0 % is -60 dB

using Steps = void (*)(PropertyTree &tree, const QString &node, double by);

void stepVolumePercent(PropertyTree &tree, const QString &node, double by)
{
    const double percent = std::clamp(tree.value(node + ".VolumePercent").toDouble() + by, 0.0, 100.0);
    tree.setValue(node + ".VolumePercent", QString::number(percent));
    tree.setValue(node + ".VolumedB", QString::number((percent - 100.0) * dbPerPercent, 'f', 2));
}

void stepVolumedB(PropertyTree &tree, const QString &node, double by)
{
    stepVolumePercent(tree, node, by / dbPerPercent);
}

void stepBalance(PropertyTree &tree, const QString &node, double by)
{
    const double balance = std::clamp(tree.value(node + ".Balance").toDouble() + by, -100.0, 100.0);
    tree.setValue(node + ".Balance", QString::number(balance));
}

constexpr struct
{
    const char *name;
    Steps steps;
} methods[] = {
    {"stepVolumePercent", stepVolumePercent},
    {"stepVolumedB", stepVolumedB},
    {"stepBalance", stepBalance},
};

void addStepMethods(PropertyTree &tree, const QString &node)
{
    for (const auto &method : methods) {
        tree.addMethod(node, method.name, [&tree, node, steps = method.steps](const QString &argument) {
            bool isNumber = false;
            const double by = argument.toDouble(&isNumber);
            if (!isNumber)
                return "not a step: " + argument;
            steps(tree, node, by);
            return QString();
        });
    }
}

QString portType(const FrameDescriptor &frame, int index, bool output)
{
    constexpr const char *videoTypes[] = {"", "HDMI", "DP"};
    QString video = videoTypes[frame.portClass(index, output)];
    if (!frame.portHasA(index, output))
        return video;
    return video.isEmpty() ? "AUDIO" : video + "_AUDIO";
}

void addPort(PropertyTree &tree, const FrameDescriptor &frame, int index, bool output)
{
    const QString port = QString("/MEDIA/PORTS/VIDEO/%1%2").arg(output ? 'O' : 'I').arg(index + 1);
    const QString type = portType(frame, index, output);
    const int signal = index % signalCount;
    tree.addProperty(port, "PortType", fixed, type);
    tree.addProperty(port, "PortVersion", fixed, output ? "V12" : "V20");
    for (const PortRow &row : rows)
        tree.addProperty(
            port + '/' + row.node, row.name, row.accepts, row.values[signal] ? row.values[signal] : row.values[0]);
    addStepMethods(tree, port + "/ANALOGAUDIO");
    if (type.startsWith("DP") && signal != NoSignal) {
        tree.setValue(port + "/STATUS.SignalType", "DP");
        tree.setValue(port + "/STATUS.DpLinkRate", "HBR2");
        tree.setValue(port + "/STATUS.DpLaneCount", "4");
    }
}

} // namespace

void addPortProperties(PropertyTree &tree, const FrameDescriptor &frame)
{
    for (int index = 0; index < frame.inputPortCount(); ++index)
        addPort(tree, frame, index, false);
    for (int index = 0; index < frame.outputPortCount(); ++index)
        addPort(tree, frame, index, true);
}
