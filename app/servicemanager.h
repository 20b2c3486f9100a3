#pragma once

#include <QTimer>

/// The service manager's view of the program: told once that it is up and then, where it asks for that, again and again
/// that the event loop turns. Does nothing where no service manager listens.
class ServiceManager
{
public:
    /// The program is up: its LCD shows something. Needs the application object.
    ServiceManager();

private:
    QTimer m_watchdog;
};
