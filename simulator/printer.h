#pragma once

#include <QString>

/// Writes lines to standard output, above the prompt where a person types.
class Printer
{
public:
    Printer();

    /// One or several lines. Control characters are shown as ?, very long lines are cut.
    void print(const QString &text);
    /// Shows the prompt and keeps it below what is printed from now on. Does nothing where standard input or output
    /// is no terminal.
    void showPrompt();
    /// The person has ended the line behind the prompt.
    void promptAnswered() { m_prompting = false; }

private:
    bool m_interactive;
    bool m_prompting = false;
};
