#include "simulator/coreservice/healthproperties.h"

#include "simulator/coreservice/valuerule.h"

#include <span>

namespace {

struct Sensor
{
    const char *name;
    double nominal; ///< Volts; for a temperature what it usually reads, degrees Celsius.
};

// clang-format off
constexpr Sensor controlUnit[] = {
    {"Voltage0_5V0", 5.0}, {"Voltage2_1V8", 1.8}, {"Voltage2_1V2", 1.2},
    {"Temperature0", 41.0},
};

constexpr Sensor motherboard[] = {
    {"Voltage0_3V3", 3.3}, {"Voltage1_2V5", 2.5}, {"Voltage1_12V0", 12.0},
    {"Temperature0", 38.0}, {"Temperature1", 42.0}, {"Temperature2", 45.0},
};

constexpr Sensor boardPort[] = {
    {"Voltage0_5V0", 5.0}, {"Voltage1_5V0", 5.0}, {"Voltage2_3V3", 3.3}, {"Voltage3_1V3", 1.3},
    {"Voltage4_1V0", 1.0}, {"Voltage5_3V3", 3.3}, {"Voltage6_1V2", 1.2}, {"Voltage7_1V1", 1.1},
    {"Voltage8_1V5", 1.5}, {"Voltage9_2V5", 2.5}, {"Voltage10_3V3", 3.3}, {"Voltage11_3V3", 3.3},
    {"Temperature0", 47.0},
};
// clang-format on

QString sensorValue(const Sensor &sensor, int spread)
{
    const bool isVoltage = sensor.name[0] == 'V';
    const double reading = isVoltage ? sensor.nominal * (1.0 + 0.002 * spread) : sensor.nominal + 0.5 * spread;
    const double step = isVoltage ? sensor.nominal * 0.05 : 5.0;
    const auto text = [isVoltage](double number) { return QString::number(number, 'f', isVoltage ? 2 : 1); };
    const QStringList fields = {
        text(reading) + (isVoltage ? " V" : " C"),
        text(isVoltage ? sensor.nominal - step : 5.0),
        text(isVoltage ? sensor.nominal + step : 60.0),
        text(isVoltage ? sensor.nominal - 2 * step : 0.0),
        text(isVoltage ? sensor.nominal + 2 * step : 70.0),
        text(reading - step / 5),
        text(reading + step / 5),
    };
    return fields.join(';');
}

/// @param spread -2 to 2: how far from nominal this part reads.
void addSensors(PropertyTree &tree, const QString &node, std::span<const Sensor> sensors, int spread)
{
    for (const Sensor &sensor : sensors)
        tree.addProperty(node, sensor.name, ValueRule::fixed, sensorValue(sensor, spread));
}

void addBoards(PropertyTree &tree, const QString &prefix, int boards)
{
    for (int board = 1; board <= boards; ++board)
        for (int port = 1; port <= 4; ++port)
            addSensors(tree, QString("/SYS/%1%2/PORT%3/HEALTH").arg(prefix).arg(board).arg(port), boardPort,
                (board + port) % 5 - 2);
}

} // namespace

void addHealthProperties(PropertyTree &tree, const FrameDescriptor &frame)
{
    addSensors(tree, "/SYS/CECU/HEALTH", controlUnit, 1);
    addSensors(tree, "/SYS/HSMB/HEALTH", motherboard, -1);
    addBoards(tree, "IB", frame.inputCardCount());
    addBoards(tree, "OB", frame.outputCardCount());
}
