#include "simulator/coreservice/request.h"

#include <QRegularExpression>

namespace {

struct VerbName
{
    const char *name;
    Request::Verb verb;
};

constexpr VerbName verbNames[] = {
    {"GET ", Request::Verb::Get},
    {"SET ", Request::Verb::Set},
    {"CALL ", Request::Verb::Call},
    {"OPEN ", Request::Verb::Open},
    {"CLOSE ", Request::Verb::Close},
};

/// Takes the verb's own part of the path off it. False: there is none.
bool takeValue(Request &request)
{
    if (request.verb == Request::Verb::Set) {
        const qsizetype equals = request.path.indexOf('=');
        request.value = request.path.mid(equals + 1);
        request.path.truncate(equals);
        return equals >= 0;
    }
    if (request.verb == Request::Verb::Call) {
        const bool ends = request.path.endsWith(')') && request.path.contains('(');
        request.path.chop(ends ? 1 : 0);
        return ends;
    }
    return true;
}

} // namespace

Request parseRequest(const QString &line)
{
    static const QRegularExpression signature("^(\\d{4,5})#");
    const QRegularExpressionMatch match = signature.match(line);
    Request request;
    request.signature = match.captured(1);
    const QString rest = line.mid(match.capturedLength(0));
    for (const VerbName &verb : verbNames) {
        if (!rest.startsWith(verb.name))
            continue;
        request.path = rest.mid(static_cast<qsizetype>(qstrlen(verb.name)));
        request.verb = verb.verb;
    }
    if (!request.path.startsWith('/') || !takeValue(request))
        request.verb = Request::Verb::Malformed;
    return request;
}

QString escapeValue(const QString &value)
{
    constexpr QStringView special = u"\\\n\r\t#%(){}";
    constexpr QStringView letters = u"\\nrt#%(){}";
    static_assert(special.size() == letters.size());
    QString escaped;
    escaped.reserve(value.size());
    for (const QChar character : value) {
        const qsizetype at = special.indexOf(character);
        if (at >= 0)
            escaped += '\\';
        escaped += at >= 0 ? letters[at] : character;
    }
    return escaped;
}
