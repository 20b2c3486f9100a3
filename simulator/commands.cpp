#include "simulator/commands.h"

#include "simulator/commandparsers.h"

namespace {

// clang-format off
constexpr Command table[] = {
    {"press",            "KEY",                           "a button goes down and stays down", parsePress},
    {"release",          "KEY",                           "it comes up again", parseRelease},
    {"tap",              "KEY [MS]",                      "down, and up again after this time; 50 ms", parseTap},
    {"turn",             "N [slow|fast]",                 "turns the knob by N detents, anticlockwise when negative", parseTurn},
    {"push",             "[MS]",                          "pushes the knob for this time; 50 ms", parsePush},
    {"escape",           "[MS]",                          "the keyboard's Escape key, likewise", parseEscape},
    {"set",              "PATH=VALUE",                    "the device changes a property, read-only ones too", parseSet},
    {"get",              "PATH",                          "shows a property of the device", parseGet},
    {"call",             "PATH:METHOD(ARGUMENTS)",        "invokes a method of the device", parseCall},
    {"link drop",        "",                              "cuts the program off from the core service", parseLinkDrop},
    {"link restore",     "",                              "lets it connect again", parseLinkRestore},
    {"upgrade",          "SECONDS",                       "runs a firmware upgrade that takes this long", parseUpgrade},
    {"preset add",       "NAME",                          "stores the present routing as a preset", parsePresetAdd},
    {"preset remove",    "NAME",                          "deletes a preset", parsePresetRemove},
    {"leds",             "",                              "shows every LED that is not 0", parseLeds},
    {"lcd",              "FILE.png",                      "saves a picture of the LCD", parseLcd},
    {"wait",             "MS",                            "a pause for people; scripts are better off with the next two and expect", parseWait},
    {"wait-lcd-still",   "[MS] [within MS]",              "waits until the LCD has not changed for this time; 300 ms", parseWaitLcdStill},
    {"wait-ready",       "[MS]",                          "waits until the program is connected and has asked what it wants to know; at most 30000 ms", parseWaitReady},
    {"expect led",       "KEY VALUE [within MS]",         "the LED of a key has, or gets, this value", parseExpectLed},
    {"expect request",   "TEXT [within MS]",              "the program sends a request with this text in it", parseExpectRequest},
    {"expect property",  "PATH=VALUE [within MS]",        "a property of the device has, or gets, this value", parseExpectProperty},
    {"expect message",   "TEXT [within MS]",              "the program logs a message with this text in it", parseExpectMessage},
    {"expect exit",      "CODE [within MS]",              "the program ends with this exit code", parseExpectExit},
    {"expect-lcd",       "FILE.png [DIFFERENCE [PERCENT]] [within MS]", "the LCD shows, or comes to show, this picture", parseExpectLcd},
    {"restart",          "",                              "ends the program, starts it again and waits until it is ready", parseRestart},
    {"help",             "[COMMAND]",                     "this list", parseHelp},
    {"quit",             "",                              "ends the program and the simulator", parseQuit},
};
// clang-format on

constexpr const char *notes = R"(
KEY is source N, destination N, take, load, save, panel-lock, destination-lock, or PANEL.BUTTON (2.17).
An expectation has 5000 ms to come true unless "within MS" says otherwise.
"expect request" takes the first request that fits behind the one that the last "expect request" took; at first behind
the script's start, so that the program's own first requests are not seen. "expect message" does the same with messages,
at first from the program's start. After "restart" both begin with what the new program sends.
A pixel of the LCD may be off by DIFFERENCE in a channel (0 to 255; 0), PERCENT of them (0) by more than that; where too
many are, the actual picture is saved beside FILE.png.
Slow detents are 120 ms apart, fast ones 20 ms.
Double quotes keep several blanks in a row, a # at the beginning of a word, and a last "within MS" that belongs to the
text; \" and \\ stand for the characters themselves. Outside of quotes a # that begins a word begins a comment.)";

} // namespace

std::span<const Command> commands() { return table; }

const Command *takeCommand(QStringList *words)
{
    for (const Command &command : table) {
        const QStringList name = QString::fromLatin1(command.name).split(' ');
        if (words->mid(0, name.size()) == name) {
            words->remove(0, name.size());
            return &command;
        }
    }
    return nullptr;
}

QString commandHelp(const QString &firstWord)
{
    QStringList help;
    for (const Command &command : table) {
        const QString name = QString::fromLatin1(command.name);
        if (!firstWord.isEmpty() && name.section(' ', 0, 0) != firstWord)
            continue;
        const QString usage = (name + ' ' + QString::fromLatin1(command.arguments)).trimmed();
        help += QStringLiteral("  %1  %2").arg(usage, -38).arg(QString::fromLatin1(command.help));
    }
    if (firstWord.isEmpty())
        help += QString::fromLatin1(notes);
    return help.join('\n');
}
