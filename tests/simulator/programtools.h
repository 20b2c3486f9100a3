#pragma once

#include <QByteArray>

/// What a shell script in the program's place begins with. "link [PORT]" connects it to the core service, which makes
/// it ready; "ask REQUEST"; "light NUMBER VALUE" lights an LED of the panel whose input device is open. Descriptors get
/// numbers that the shell chooses: the preload library has some of its own.
inline const QByteArray programTools = R"sh(#!/bin/bash
link() { exec {core}<>/dev/tcp/127.0.0.1/${1-6107}; ask 'GET /.PartNumber'; }
ask() { printf '0001#%s\r\n' "$1" >&$core; }
light() { printf "\0\0\0\0\0\0\0\0\x11\0\x$(printf %02x $1)\0\x0$2\0\0\0" >&$device; }
)sh";
