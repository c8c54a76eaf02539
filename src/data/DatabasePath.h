#pragma once

#include <QString>

// Full path of the recipe file. Set once by the start-up routine, before any window loads, and read
// by every window that opens data sources.
inline QString DatabasePath;
