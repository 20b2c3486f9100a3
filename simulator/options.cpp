#include "simulator/options.h"

#include "simulator/commands.h"

#include <QCommandLineParser>
#include <QProcess>

namespace {

const QString demoScript = QStringLiteral(":/demo/demo.script");

struct Fault
{
    const char *name;
    void (*apply)(HardwareFaults &faults);
};

// clang-format off
constexpr Fault faultTable[] = {
    {"i2c-missing",     [](HardwareFaults &faults) { faults.i2c = HardwareFaults::I2c::Missing; }},
    {"i2c-nack",        [](HardwareFaults &faults) { faults.i2c = HardwareFaults::I2c::Nack; }},
    {"i2c-timeout",     [](HardwareFaults &faults) { faults.i2c = HardwareFaults::I2c::Timeout; }},
    {"eeprom-blank",    [](HardwareFaults &faults) { faults.eepromBlank = true; }},
    {"soc-other",       [](HardwareFaults &faults) { faults.otherProcessor = true; }},
    {"panel-missing=1", [](HardwareFaults &faults) { faults.panelMissing[0] = true; }},
    {"panel-missing=2", [](HardwareFaults &faults) { faults.panelMissing[1] = true; }},
    {"panel-missing=3", [](HardwareFaults &faults) { faults.panelMissing[2] = true; }},
    {"encoder-missing", [](HardwareFaults &faults) { faults.encoderMissing = true; }},
};
// clang-format on

QString faultNames()
{
    QStringList names;
    for (const Fault &fault : faultTable)
        names += QString::fromLatin1(fault.name);
    return names.join(", ");
}

bool applyFault(const QString &name, HardwareFaults *faults)
{
    for (const Fault &fault : faultTable) {
        if (name == fault.name) {
            fault.apply(*faults);
            return true;
        }
    }
    return false;
}

QString exitCodes()
{
    QString text;
    for (const ExitCodeText &row : exitCodeTexts)
        text += QStringLiteral("  %1  %2\n").arg(static_cast<int>(row.code)).arg(QString::fromLatin1(row.text));
    return text;
}

QStringList wrapperCommand(const QString &command)
{
    QStringList words = QProcess::splitCommand(command);
    if (words.value(0).section('/', -1) == "strace")
        words.insert(1, QStringLiteral("-I2")); // with -o it would not heed SIGTERM, and leave the program behind
    return words;
}

Notice usageError(const QString &error)
{
    return {ExitCode::Usage, error + QStringLiteral("\n\"panel-simulator --help\" lists the options.")};
}

} // namespace

std::variant<Options, Notice> parseOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Plays the device around the front-panel program: its core service "
                                                    "on 127.0.0.1:6107, its button panels, knob,\n"
                                                    "LCD and EEPROM. Starts the program (front-panel, beside this one) "
                                                    "in it and takes commands from standard input."));
    const QCommandLineOption help({"h", "help"}, "Shows this help.");
    const QCommandLineOption frame("frame",
        "The frame model to play, by its row in --list-frames or its part number; "
        "default 1, an 8 x 8 frame whose keys are all on panel 1.",
        "ROW|PART-NUMBER", "1");
    const QCommandLineOption listFrames("list-frames", "Lists the frame models.");
    const QCommandLineOption noProgram("no-program", "The device alone; another program may connect to it.");
    const QCommandLineOption script("script",
        "Executes the commands of a file (- for standard input) once the program is "
        "ready, and ends; a failure is reported with its line.",
        "FILE");
    const QCommandLineOption demo(
        "demo", "Plays a short script that comes with the simulator: routes, locks, autotake.");
    const QCommandLineOption wrap("wrap",
        "Starts the program under gdb, valgrind, strace or the like. The terminal is the "
        "command's then: no console, no record of the program's messages.",
        "COMMAND");
    const QCommandLineOption fault(
        "fault", "Starts with broken hardware; may be given several times. One of: " + faultNames() + '.', "FAULT");
    const QCommandLineOption httpPort("http-port",
        "Where the page with the front of the frame is served, on 127.0.0.1; 0 takes any free port. Without it 8080, "
        "or any free port where that is taken, and no page beside a script.",
        "PORT");
    const QCommandLineOption noOpen("no-open", "Does not open the page in the desktop's browser.");
    parser.addOptions({help, frame, listFrames, noProgram, script, demo, wrap, fault, httpPort, noOpen});
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (parser.isSet(help)) {
        return Notice{ExitCode::Ok,
            parser.helpText() + QStringLiteral("\nExit codes:\n") + exitCodes()
                + QStringLiteral("\nCommands of console and script:\n") + commandHelp()};
    }
    if (parser.isSet(listFrames))
        return Notice{ExitCode::Ok, frameList()};
    if (!parser.positionalArguments().isEmpty())
        return usageError(QStringLiteral("\"%1\" is no option.").arg(parser.positionalArguments().constFirst()));

    Options options;
    options.frame = frameNamed(parser.value(frame));
    if (!options.frame)
        return Notice{ExitCode::Usage,
            QStringLiteral("There is no frame \"%1\"; \"panel-simulator --list-frames\" shows them.")
                .arg(parser.value(frame))};
    for (const QString &name : parser.values(fault)) {
        if (!applyFault(name, &options.faults))
            return usageError(QStringLiteral("\"%1\" is no fault; one of: %2.").arg(name, faultNames()));
    }
    options.withProgram = !parser.isSet(noProgram);
    options.hasScript = parser.isSet(script) || parser.isSet(demo);
    options.script = parser.isSet(demo) ? demoScript : parser.value(script);
    if (parser.isSet(script) && parser.isSet(demo))
        return usageError(QStringLiteral("--demo is a script of its own; give --script or --demo."));
    if (parser.isSet(demo) && !options.withProgram)
        return usageError(QStringLiteral("--demo shows the program at work; it cannot do without."));
    if (parser.isSet(wrap)) {
        options.wrapper = wrapperCommand(parser.value(wrap));
        if (options.wrapper.isEmpty() || !options.withProgram)
            return usageError(QStringLiteral("--wrap needs a command, and a program to put it in front of."));
        if (options.script == "-")
            return usageError(
                QStringLiteral("With --wrap standard input is the command's; give the script as a file."));
    }
    options.withPage = !options.hasScript || parser.isSet(httpPort);
    options.openPage = !parser.isSet(noOpen);
    if (parser.isSet(httpPort)) {
        bool isPort = false;
        options.httpPort = parser.value(httpPort).toUShort(&isPort);
        if (!isPort)
            return usageError(QStringLiteral("--http-port takes a number from 0 to 65535."));
    }
    return options;
}

const FrameDescriptor *frameNamed(const QString &name)
{
    bool isNumber = false;
    const uint number = name.toUInt(&isNumber);
    if (!isNumber)
        return nullptr;
    const std::span<const FrameDescriptor> frames = frameDescriptors();
    if (number >= 1 && number <= frames.size())
        return &frames[number - 1];
    return findFrameDescriptor(number);
}

QString frameList()
{
    QString list = QStringLiteral("row  part number  inputs x outputs  layout");
    int row = 0;
    for (const FrameDescriptor &frame : frameDescriptors()) {
        list += QStringLiteral("\n%1  %2     %3 x %4           %5")
                    .arg(++row, 3)
                    .arg(frame.partNumber, 8, 10, QLatin1Char('0'))
                    .arg(frame.inputPortCount(), 2)
                    .arg(frame.outputPortCount(), -2)
                    .arg(frame.layoutId());
    }
    return list;
}
