#include "simulator/printer.h"

#include <QStringList>

#include <cstdio>
#include <unistd.h>

namespace {

constexpr qsizetype longestLine = 1000;
constexpr const char *prompt = "> ";

QByteArray printable(QString line)
{
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control && c != '\t')
            c = '?';
    }
    if (line.size() > longestLine)
        line = line.left(longestLine) + QStringLiteral(" ...");
    return line.toUtf8();
}

} // namespace

Printer::Printer()
    : m_interactive(isatty(STDIN_FILENO) && isatty(STDOUT_FILENO))
{
}

void Printer::print(const QString &text)
{
    if (m_prompting)
        std::fputs("\r\033[K", stdout);
    for (const QString &line : text.split('\n'))
        std::fprintf(stdout, "%s\n", printable(line).constData());
    if (m_prompting)
        std::fputs(prompt, stdout);
    std::fflush(stdout);
}

void Printer::showPrompt()
{
    if (!m_interactive)
        return;
    m_prompting = true;
    std::fputs(prompt, stdout);
    std::fflush(stdout);
}
