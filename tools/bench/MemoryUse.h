#pragma once

#include <QStringList>

// Runs memoryuse/main.cpp, whose arguments these are, in a new process. Returns the number of bytes
// that it prints. Throws std::runtime_error if it fails.
double memoryUse(const QStringList &arguments);
