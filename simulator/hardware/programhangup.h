#pragma once

#include <QString>

/// Cuts the connections of every program that lives in the tree of device files at this root, and waits until
/// the tree's own thread has noticed (at most a second). umockdev leaves them open for good when its test bed goes,
/// and a program in an ioctl request would wait for ever, deaf to signals.
void hangUpPrograms(const QString &root);
