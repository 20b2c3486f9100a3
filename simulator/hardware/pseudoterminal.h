#pragma once

#include <QString>

/// A raw pseudo-terminal: bytes pass unchanged both ways. The program opens the far end by its path, as often as
/// it likes; this end never blocks.
class PseudoTerminal
{
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    /// The near end; -1 if the system has no pseudo-terminal left.
    int fd() const { return m_fd; }
    QString farPath() const { return m_farPath; }
    /// Whether anybody has the far end open.
    bool isOpened() const;
    /// Drops what was written to the far end and not read there.
    void discardUnread();

private:
    int m_fd;
    QString m_farPath;
};
