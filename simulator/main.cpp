#include "simulator/options.h"
#include "simulator/session.h"
#include "simulator/signalwatcher.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

int show(const Notice &notice)
{
    std::fprintf(notice.code == ExitCode::Ok ? stdout : stderr, "%s\n", qUtf8Printable(notice.text));
    return static_cast<int>(notice.code);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const std::variant<Options, Notice> parsed = parseOptions(QCoreApplication::arguments());
    if (const Notice *notice = std::get_if<Notice>(&parsed))
        return show(*notice);
    const Options &options = *std::get_if<Options>(&parsed);

    // In the debugger Ctrl-C interrupts the program under it.
    SignalWatcher signalWatcher(!options.wrapper.isEmpty() && !options.hasScript);
    Session session(options);
    QObject::connect(&signalWatcher, &SignalWatcher::endRequested, &session, &Session::stop);
    QMetaObject::invokeMethod(&session, &Session::start, Qt::QueuedConnection);
    return QCoreApplication::exec();
}
