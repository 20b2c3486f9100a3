#pragma once

#include "simulator/coreservice/propertytree.h"
#include "simulator/coreservice/request.h"

#include <QStringList>

/// What the tree answers to a GET, SET or CALL, done by then; the lines between the block's braces:
/// "n- NODE" per child, "pr NODE.Name=value" or "pw ..." (writable), "s- NODE.Name" for a SET and
/// "m- NODE:method" for a CALL that worked, else one error line.
QStringList answerTo(PropertyTree &tree, const Request &request);

/// "e- PATH message", the message escaped like a value.
QString errorLine(const QString &path, const QString &message);
