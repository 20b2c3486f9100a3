#include "simulator/coreservice/answer.h"

#include <QRegularExpression>

namespace {

QString propertyLine(const QString &node, const PropertyTree::Property &property)
{
    return (property.isWritable() ? "pw " : "pr ") + node + '.' + property.name + '=' + escapeValue(property.value);
}

/// @param path a node, a node's ".*" or a property. Node names may hold dots, so a node goes first.
QStringList answerToGet(PropertyTree &tree, const QString &path)
{
    QStringList lines;
    if (const PropertyTree::Node *node = tree.node(path)) {
        for (const QString &child : node->children)
            lines.append("n- " + PropertyTree::childPath(path, child));
        return lines;
    }
    const qsizetype dot = path.lastIndexOf('.');
    const QString nodePath = path.left(dot);
    const PropertyTree::Node *node = dot < 0 ? nullptr : tree.node(nodePath);
    if (!node)
        return {errorLine(path, "no such node")};
    const QString wanted = path.mid(dot + 1);
    for (const PropertyTree::Property &property : node->properties)
        if (wanted == "*" || wanted == property.name)
            lines.append(propertyLine(nodePath, property));
    if (lines.isEmpty() && wanted != "*")
        return {errorLine(path, "no such property")};
    return lines;
}

QStringList answerToSet(PropertyTree &tree, const QString &path, const QString &value)
{
    const QString error = tree.write(path, value);
    return {error.isEmpty() ? "s- " + path : errorLine(path, error)};
}

/// @param call "NODE:method(arguments", where both the node's name and the arguments may hold ":word(" themselves:
///        the first place that makes a method of the tree divides them.
QStringList answerToCall(PropertyTree &tree, const QString &call)
{
    static const QRegularExpression methodStart(":\\w+\\(");
    QRegularExpressionMatch division = methodStart.match(call);
    for (QRegularExpressionMatch match = division; match.hasMatch();
         match = methodStart.match(call, match.capturedStart() + 1)) {
        if (!tree.hasMethod(call.left(match.capturedEnd() - 1)))
            continue;
        division = match;
        break;
    }
    if (!division.hasMatch())
        return {errorLine(call.section('(', 0, 0), "not a method")};
    const QString method = call.left(division.capturedEnd() - 1);
    const QString error = tree.call(method, call.mid(division.capturedEnd()));
    return {error.isEmpty() ? "m- " + method : errorLine(method, error)};
}

} // namespace

QStringList answerTo(PropertyTree &tree, const Request &request)
{
    switch (request.verb) {
    case Request::Verb::Get: return answerToGet(tree, request.path);
    case Request::Verb::Set: return answerToSet(tree, request.path, request.value);
    case Request::Verb::Call: return answerToCall(tree, request.path);
    default: return {errorLine("?", "not understood")};
    }
}

QString errorLine(const QString &path, const QString &message) { return "e- " + path + ' ' + escapeValue(message); }
