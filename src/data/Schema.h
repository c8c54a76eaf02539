#pragma once

#include "data/FieldValue.h"

#include <span>
#include <string>
#include <string_view>

// The five tables of a recipe file. Texts are declared COLLATE NOCASE, for which the program
// registers its own comparison; no text has an index, since other tools would damage it.

struct Field {
    std::string_view name;
    FieldType type;
};

struct Table {
    std::string_view name;
    std::span<const Field> fields; // the first one is the key where the table has one of its own
    bool hasKey;
};

inline constexpr std::size_t tableCount = 5;

std::span<const Table, tableCount> schemaTables();

// The table's number in schemaTables(), or -1; case does not count.
int tableNumber(std::string_view name);

inline constexpr int schemaVersion = 1; // user_version of the files this program makes
inline constexpr int applicationId = 0x50575242; // "PWRB"

// The statements that make an empty recipe file.
std::string creationScript();
