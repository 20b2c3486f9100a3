#pragma once

#include <QByteArrayView>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What the fuzzers share. Each of them defines the function that runs one input.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// Ends the process, in every kind of build, where something does not hold that always has to.
inline void require(bool holds, const char *what)
{
    if (holds)
        return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}

/// The input as bytes. What the code under test would log about it is kept quiet.
inline QByteArrayView inputOf(const uint8_t *data, size_t size)
{
    static const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    Q_UNUSED(before)
    return {data, qsizetype(size)};
}
