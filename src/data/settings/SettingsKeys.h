#pragma once

#include <QString>

// The keys of the program's settings below HKEY_CURRENT_USER.
QString sortingKey();
QString htmlKey();
