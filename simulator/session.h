#pragma once

#include "simulator/commandexecutor.h"
#include "simulator/device.h"
#include "simulator/eventreporter.h"
#include "simulator/linereader.h"
#include "simulator/options.h"
#include "simulator/printer.h"
#include "simulator/scriptrunner.h"
#include "simulator/web/webserver.h"

/// One run of panel-simulator: the device, and the script or console that drives it. Ends the event loop with the
/// run's exit code.
class Session : public QObject
{
    Q_OBJECT
public:
    explicit Session(const Options &options, QObject *parent = nullptr);

    /// Checks what is needed, switches the device on and starts the program. Needs a running event loop.
    void start();
    /// Stops the program and ends the run as wanted.
    void stop();

private:
    QString scriptName() const;
    void readScriptFile();
    /// False: that was one too many, and the run has been ended.
    bool addScriptLine(const QString &line);
    void refuseLongLine();
    void playScript();
    /// False: the run has been ended.
    bool makeDevice();
    bool switchOn();
    void runConsole();
    /// Shows the device on the page, where there is to be one. False: the run has been ended.
    bool showPage();
    bool servePage();
    void makeExecutor();
    /// Ends device and program, and starts those of another frame model.
    void playFrame(int row);
    void askForLine();
    void noteResult(const CommandResult &result);
    void noteInputEnd();
    void noteScriptEnd(ExitCode code, const QString &text);
    void noteProgramEnd(const ProgramEnd &end);
    void end(ExitCode code, const QString &text = {});

    Options m_options;
    Printer m_printer;
    QStringList m_scriptLines;
    bool m_ending = false;
    std::unique_ptr<LineReader> m_input;
    std::unique_ptr<Device> m_device;
    std::unique_ptr<EventReporter> m_reporter;
    std::unique_ptr<CommandExecutor> m_executor;
    std::unique_ptr<ScriptRunner> m_script;
    std::unique_ptr<WebServer> m_web; ///< Goes before the device it shows.
};
