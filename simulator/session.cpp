#include "simulator/session.h"

#include "simulator/signalwatcher.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr qsizetype longestScript = 20000; // lines

// A debugger waits for a person, and valgrind takes its time.
constexpr auto wrappedReadyTime = 300s;

constexpr quint16 usualHttpPort = 8080;

bool hasDesktop() { return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY"); }

QString programPath() { return QCoreApplication::applicationDirPath() + QStringLiteral("/front-panel"); }

} // namespace

Session::Session(const Options &options, QObject *parent)
    : QObject(parent)
    , m_options(options)
{
}

void Session::start()
{
    if (m_options.hasScript && m_options.script == "-") {
        m_input = std::make_unique<LineReader>(STDIN_FILENO);
        connect(m_input.get(), &LineReader::lineRead, this, [this](const QString &line) {
            if (addScriptLine(line))
                m_input->next();
        });
        connect(m_input.get(), &LineReader::lineTooLong, this, &Session::refuseLongLine);
        connect(m_input.get(), &LineReader::closed, this, &Session::playScript);
        m_input->next();
    } else if (m_options.hasScript) {
        readScriptFile();
    } else if (makeDevice() && switchOn()) {
        runConsole();
    }
}

bool Session::addScriptLine(const QString &line)
{
    m_scriptLines += line;
    if (m_scriptLines.size() > longestScript)
        end(ExitCode::Usage, QStringLiteral("%1 has more than %2 lines.").arg(scriptName()).arg(longestScript));
    return !m_ending;
}

void Session::refuseLongLine()
{
    end(ExitCode::Usage,
        QStringLiteral("%1:%2: a line of more than %3 bytes")
            .arg(scriptName())
            .arg(m_scriptLines.size() + 1)
            .arg(LineReader::longestLine));
}

void Session::readScriptFile()
{
    QFile file(m_options.script);
    if (!file.open(QIODevice::ReadOnly)) {
        end(ExitCode::Usage, QStringLiteral("%1 cannot be read: %2.").arg(m_options.script, file.errorString()));
        return;
    }
    while (!file.atEnd() && !m_ending) {
        QByteArray line = file.readLine(LineReader::longestLine + 3); // with its end, and one byte too many
        while (line.endsWith('\n') || line.endsWith('\r'))
            line.chop(1);
        if (line.size() > LineReader::longestLine)
            refuseLongLine();
        else
            addScriptLine(QString::fromUtf8(line));
    }
    if (!m_ending)
        playScript();
}

bool Session::makeDevice()
{
    Device::Setup setup;
    setup.frame = m_options.frame;
    setup.faults = m_options.faults;
    setup.wrapper = m_options.wrapper;
    if (m_options.withProgram) {
        setup.program = programPath();
        if (!QFileInfo(setup.program).isExecutable()) {
            end(ExitCode::Missing,
                QStringLiteral("The program %1 is missing. Build it: cmake --build --preset release.\n"
                               "\"panel-simulator --no-program\" plays the device alone.")
                    .arg(setup.program));
            return false;
        }
    }
    m_device = std::make_unique<Device>(setup);
    m_reporter = std::make_unique<EventReporter>(*m_device, m_printer);
    connect(m_device.get(), &Device::programEnded, this, &Session::noteProgramEnd);
    return true;
}

bool Session::switchOn()
{
    const QString error = m_device->powerOn();
    if (!error.isEmpty()) {
        end(ExitCode::Missing, error);
        return false;
    }
    m_printer.print(QStringLiteral("device: frame %1, %2 x %3, layout %4, core service on 127.0.0.1:%5")
                        .arg(m_options.frame->partNumber, 8, 10, QLatin1Char('0'))
                        .arg(m_options.frame->inputPortCount())
                        .arg(m_options.frame->outputPortCount())
                        .arg(m_options.frame->layoutId())
                        .arg(m_device->core().port()));
    if (!showPage())
        return false;
    if (m_device->hasProgram())
        m_device->startProgram();
    return !m_ending;
}

QString Session::scriptName() const
{
    return m_options.script == "-" ? QStringLiteral("standard input") : m_options.script.section('/', -1);
}

void Session::playScript()
{
    if (!makeDevice())
        return;
    const auto readyTime = m_options.wrapper.isEmpty() ? defaultReadyTime : wrappedReadyTime;
    m_script = std::make_unique<ScriptRunner>(*m_device, scriptName(), m_scriptLines, readyTime);
    connect(m_script.get(), &ScriptRunner::progressed, this, [this](const QString &text) { m_printer.print(text); });
    connect(m_script.get(), &ScriptRunner::finished, this, &Session::noteScriptEnd);
    const QString error = m_script->check();
    if (!error.isEmpty())
        end(ExitCode::Usage, error);
    else if (switchOn())
        m_script->start();
}

void Session::runConsole()
{
    if (!m_options.wrapper.isEmpty())
        return; // the terminal is the wrapper's
    makeExecutor();
    m_input = std::make_unique<LineReader>(STDIN_FILENO);
    connect(m_input.get(), &LineReader::lineRead, this, [this](const QString &line) {
        m_printer.promptAnswered();
        m_executor->execute(line);
    });
    connect(m_input.get(), &LineReader::lineTooLong, this, [this] {
        noteResult({ExitCode::Usage, QStringLiteral("a line of more than %1 bytes").arg(LineReader::longestLine)});
    });
    connect(m_input.get(), &LineReader::closed, this, &Session::noteInputEnd);
    if (isatty(STDIN_FILENO))
        m_printer.print(QStringLiteral("\"help\" lists the commands, \"quit\" or Ctrl-C ends."));
    askForLine();
}

void Session::makeExecutor()
{
    m_executor = std::make_unique<CommandExecutor>(*m_device);
    connect(m_executor.get(), &CommandExecutor::finished, this, &Session::noteResult);
    connect(m_executor.get(), &CommandExecutor::quitRequested, this, &Session::stop);
}

bool Session::showPage()
{
    if (!m_options.withPage || (!m_web && !servePage()))
        return !m_options.withPage;
    m_web->setDevice(m_device.get());
    return true;
}

bool Session::servePage()
{
    m_web = std::make_unique<WebServer>();
    bool listens = m_web->listen(m_options.httpPort.value_or(usualHttpPort));
    if (!listens && !m_options.httpPort) { // another simulator may have it
        m_web = std::make_unique<WebServer>();
        listens = m_web->listen(0);
    }
    if (!listens) {
        end(ExitCode::Missing,
            QStringLiteral(
                "The page cannot be served on port %1 of 127.0.0.1: %2.\n\"--http-port 0\" takes a free one.")
                .arg(m_options.httpPort.value_or(0))
                .arg(m_web->errorString()));
        return false;
    }
    connect(m_web.get(), &WebServer::frameRequested, this, &Session::playFrame, Qt::QueuedConnection);
    connect(m_web.get(), &WebServer::quitRequested, this, &Session::stop, Qt::QueuedConnection);
    const QString address = QStringLiteral("http://127.0.0.1:%1").arg(m_web->port());
    m_printer.print(QStringLiteral("page: ") + address);
    if (m_options.openPage && !m_options.hasScript && hasDesktop())
        QProcess::startDetached(QStringLiteral("xdg-open"), {address});
    return true;
}

void Session::playFrame(int row)
{
    if (m_ending)
        return;
    if (m_script) {
        m_printer.print(QStringLiteral("page: the frame model stays while a script runs"));
        return;
    }
    const bool wasBusy = m_executor && m_executor->isBusy();
    const bool hadConsole = m_executor != nullptr;
    m_web->setDevice(nullptr);
    m_executor.reset();
    m_reporter.reset();
    m_device->stopProgram();
    m_device.reset(); // before the next one takes its port
    m_options.frame = &frameDescriptors()[static_cast<size_t>(row - 1)];
    if (!makeDevice() || !switchOn())
        return;
    if (hadConsole)
        makeExecutor();
    if (wasBusy)
        noteResult({ExitCode::Failed, QStringLiteral("the frame model was changed meanwhile")});
}

void Session::askForLine()
{
    m_printer.showPrompt();
    m_input->next();
}

void Session::noteResult(const CommandResult &result)
{
    if (m_ending)
        return;
    if (!result.text.isEmpty())
        m_printer.print(result.ok() ? result.text : QStringLiteral("error: ") + result.text);
    askForLine();
}

void Session::noteInputEnd()
{
    // Nobody types into /dev/null or a finished pipe: the device then runs on until it is told to end.
    if (isatty(STDIN_FILENO))
        end(ExitCode::Ok);
}

void Session::noteScriptEnd(ExitCode code, const QString &text)
{
    if (!SignalWatcher::hasCome()) // Ctrl-C ends the program too: that is no crash
        end(code, text);
}

void Session::noteProgramEnd(const ProgramEnd &programEnd)
{
    if (SignalWatcher::hasCome() || m_script)
        return; // we or the script know what it means
    const bool well = programEnd.how == ProgramEnd::How::Exited && programEnd.exitCode == 0;
    if (programEnd.how == ProgramEnd::How::NotStarted)
        end(ExitCode::Missing, programEnd.text);
    else if (m_options.wrapper.isEmpty())
        m_printer.print(programEnd.text);
    else
        end(well ? ExitCode::Ok : ExitCode::Failed, well ? QString() : programEnd.text);
}

void Session::stop()
{
    if (m_options.hasScript)
        end(ExitCode::Failed, QStringLiteral("The script was interrupted."));
    else
        end(ExitCode::Ok);
}

void Session::end(ExitCode code, const QString &text)
{
    if (std::exchange(m_ending, true))
        return;
    if (m_reporter)
        m_reporter->flush();
    if (!text.isEmpty())
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
    if (m_web)
        m_web->setDevice(nullptr);
    if (m_device && !m_device->stopProgram()) {
        std::fprintf(stderr, "front-panel did not end well when it was asked to; its last messages say more.\n");
        code = code == ExitCode::Ok ? ExitCode::Failed : code;
    }
    QCoreApplication::exit(static_cast<int>(code));
}
