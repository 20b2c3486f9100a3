#pragma once

#include <QProcessEnvironment>

class DeviceFiles;

/// Where the program keeps its run-time files, in the tree.
constexpr const char *runtimeFolder = "/runtime";

/// This process's own environment, changed so that a program started with it sees the tree's devices, draws on
/// "/dev/fb0" and takes its keyboard from "/dev/input/event1".
QProcessEnvironment makeProgramEnvironment(const DeviceFiles &files);
