#include "simulator/words.h"

Words splitWords(const QString &line)
{
    Words words;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        const QChar next = i + 1 < line.size() ? line[i + 1] : QChar();
        if (c == '\\' && (next == '"' || next == '\\')) {
            word += next;
            inWord = true;
            ++i;
        } else if (c == '"') {
            quoted = !quoted;
            inWord = true;
        } else if (c.isSpace() && !quoted) {
            if (inWord)
                words.list += word;
            word.clear();
            inWord = false;
        } else if (c == '#' && !inWord) {
            break;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted)
        words.error = QStringLiteral("a quoted text is not closed");
    else if (inWord)
        words.list += word;
    return words;
}
