#include "protocol/incomingline.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

namespace {

/// A line's first word, with the blank behind it.
struct Prefix
{
    QByteArrayView text;
    IncomingLine::Kind kind;
};

constexpr Prefix prefixes[] = {
    {"CHG ", IncomingLine::Changed},
    {"pr ", IncomingLine::Property},
    {"pw ", IncomingLine::Property},
    {"n- ", IncomingLine::Node},
    {"o- ", IncomingLine::Opened},
    {"NEW ", IncomingLine::Added},
    {"DEL ", IncomingLine::Removed},
};

const char *find(QByteArrayView text, char c, qsizetype from = 0)
{
    return static_cast<const char *>(std::memchr(text.data() + from, c, size_t(text.size() - from)));
}

/// The four characters after "{" as a number; 0 if they are none.
quint16 signatureOf(QByteArrayView line)
{
    bool isNumber = false;
    const uint signature = line.sliced(1, std::min<qsizetype>(4, line.size() - 1)).toUInt(&isNumber);
    return isNumber ? quint16(signature) : 0;
}

constexpr char16_t afterBackslash(QChar c)
{
    switch (c.unicode()) {
    case 'n': return '\n';
    case 'r': return '\r';
    case 't': return '\t';
    case '#':
    case '%':
    case '(':
    case ')':
    case '\\':
    case '{':
    case '}': return c.unicode();
    default: return 0;
    }
}

/// Writes into a text's memory, and takes no byte order mark for one.
QString decode(QByteArrayView utf8, QString memory)
{
    QStringDecoder decoder(
        QStringDecoder::Utf8, QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    memory.resize(decoder.requiredSpace(utf8.size()));
    memory.truncate(decoder.appendToBuffer(memory.data(), utf8) - memory.constData());
    return memory;
}

} // namespace

IncomingLine IncomingLine::parse(QByteArrayView line)
{
    IncomingLine result;
    if (line.isEmpty())
        return result;
    if (line.front() == '{') {
        result.kind = BlockStart;
        result.signature = signatureOf(line);
        return result;
    }
    if (line.front() == '}') {
        result.kind = BlockEnd;
        return result;
    }

    const auto *prefix = std::find_if(
        std::begin(prefixes), std::end(prefixes), [line](const Prefix &known) { return line.startsWith(known.text); });
    if (prefix == std::end(prefixes))
        return result;
    const Kind kind = prefix->kind;
    result.path = line.sliced(prefix->text.size());
    if (kind == Property || kind == Changed) {
        const char *dot = find(result.path, '.');
        if (!dot)
            return result; // names no property that anyone could have asked for
        result.nodeLength = dot - result.path.data();
        if (const char *equals = find(result.path, '=', result.nodeLength)) {
            const qsizetype pathLength = equals - result.path.data();
            result.value = result.path.sliced(pathLength + 1);
            result.path = result.path.first(pathLength);
        }
    }
    result.kind = kind;
    return result;
}

QString textOf(QByteArrayView utf8)
{
    // Three bytes that other readers take for a mark and swallow.
    return utf8.startsWith("\xef\xbb\xbf") ? decode(utf8, {}) : QString::fromUtf8(utf8);
}

QString unescapeValue(QByteArrayView escaped, QString *spare)
{
    QString value = spare && escaped.size() >= longValue ? decode(escaped, std::exchange(*spare, {})) : textOf(escaped);
    const qsizetype backslash = value.indexOf(u'\\');
    if (backslash < 0)
        return value;
    QChar *to = value.data() + backslash;
    const QChar *const end = value.constData() + value.size();
    for (const QChar *c = to; c != end; ++c) {
        const char16_t resolved = *c == u'\\' && c + 1 != end ? afterBackslash(c[1]) : u'\0';
        *to++ = resolved ? QChar(resolved) : *c;
        if (resolved)
            ++c;
    }
    value.truncate(to - value.constData());
    return value;
}
