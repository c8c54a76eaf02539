#pragma once

#include <QString>

// The full path of the recipe database. The start-up routine sets it once, before any window loads;
// every window that opens data sources reads it.
inline QString DatabasePath;
