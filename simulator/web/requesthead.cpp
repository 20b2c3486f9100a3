#include "simulator/web/requesthead.h"

#include <QMultiMap>
#include <QRegularExpression>

#include <optional>

namespace {

using Fields = QMultiMap<QByteArray, QByteArray>; // names in lower case

/// Lines end with CR LF; a lone one of the two is part of its line, where it is not accepted.
QList<QByteArray> splitLines(const QByteArray &text)
{
    QList<QByteArray> lines;
    qsizetype begin = 0;
    for (qsizetype end = text.indexOf("\r\n"); end >= 0; end = text.indexOf("\r\n", begin)) {
        lines.append(text.mid(begin, end - begin));
        begin = end + 2;
    }
    return lines;
}

/// Nothing where a line is no header field.
std::optional<Fields> parseFields(const QList<QByteArray> &lines)
{
    static const QRegularExpression form(
        QStringLiteral("\\A([!#$%&'*+.^_`|~0-9A-Za-z-]+):[ \\t]*([^\\x00-\\x08\\x0a-\\x1f\\x7f]*?)[ \\t]*\\z"));
    Fields fields;
    for (const QByteArray &line : lines) {
        const QRegularExpressionMatch match = form.match(QString::fromLatin1(line));
        if (!match.hasMatch())
            return std::nullopt;
        fields.insert(match.captured(1).toLatin1().toLower(), match.captured(2).toLatin1());
    }
    return fields;
}

bool isLoopbackName(const QByteArray &host)
{
    static const QRegularExpression names(QStringLiteral("\\A(127\\.0\\.0\\.1|localhost|\\[::1\\])(:[0-9]{1,5})?\\z"),
        QRegularExpression::CaseInsensitiveOption);
    return names.match(QString::fromLatin1(host)).hasMatch();
}

bool isForeign(const QByteArray &host, const Fields &fields)
{
    const QByteArray own = "http://" + host;
    return !isLoopbackName(host)
        || (fields.contains("origin") && fields.value("origin").compare(own, Qt::CaseInsensitive) != 0);
}

int checkFields(const Fields &fields, RequestHead *head)
{
    for (const char *name : {"host", "origin", "content-length", "upgrade", "expect"}) {
        if (fields.count(name) > 1)
            return 400;
    }
    head->host = fields.value("host");
    if (isForeign(head->host, fields))
        return 403;
    if (fields.contains("transfer-encoding"))
        return 411; // the body's size has to be known beforehand
    static const QRegularExpression number(QStringLiteral("\\A[0-9]{1,9}\\z"));
    const QByteArray length = fields.value("content-length", "0");
    if (!number.match(QString::fromLatin1(length)).hasMatch())
        return 400;
    head->bodySize = length.toLongLong();
    head->isUpgrade = fields.contains("upgrade");
    head->expectsContinue = fields.value("expect").toLower() == "100-continue";
    return head->bodySize > RequestHead::longestBody ? 413 : 0;
}

} // namespace

RequestHead parseRequestHead(const QByteArray &text)
{
    static const QRegularExpression form(QStringLiteral("\\A([A-Z]+) (/[\\x21-\\x7e]*) HTTP/1\\.[01]\\z"));
    RequestHead head;
    QList<QByteArray> lines = splitLines(text.chopped(2));
    const QRegularExpressionMatch match = form.match(QString::fromLatin1(lines.takeFirst()));
    const std::optional<Fields> fields = parseFields(lines);
    if (!match.hasMatch() || !fields) {
        head.refusal = 400;
        return head;
    }
    head.method = match.captured(1).toLatin1();
    head.target = match.captured(2).toLatin1();
    head.refusal = checkFields(*fields, &head);
    if (head.refusal == 0 && head.method != "GET" && head.method != "POST")
        head.refusal = 405;
    else if (head.refusal == 0 && head.isUpgrade && !(head.method == "GET" && head.isFor("/front")))
        head.refusal = 404;
    return head;
}
