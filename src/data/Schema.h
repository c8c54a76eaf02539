#pragma once

#include "data/FieldValue.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The five tables of a recipe database. Texts are declared COLLATE NOCASE, for which the program
// registers its own comparison. No text column has an index, since a tool with the built-in NOCASE
// would damage it.

struct Field {
    std::string_view name;
    FieldType type;
    // Whether its texts are too long to keep those of all rows. A table has at most one such field.
    bool isLongText = false;
};

struct Table {
    std::string_view name;
    std::span<const Field> fields; // the first one is the key, if the table has one
    bool hasKey;
};

inline constexpr std::size_t tableCount = 5;

std::span<const Table, tableCount> schemaTables();

// How a field of the table is declared in SQL, such as "TEXT COLLATE NOCASE".
std::string declaration(const Table &table, const Field &field);

// The index of a table in schemaTables(), or -1.
int tableNumber(std::string_view name);

// The names, key words and numbers in an SQL text, in their order.
std::vector<std::string_view> words(std::string_view sql);

// Whether an SQL text names each of the tables, by table number.
std::array<bool, tableCount> namedTables(std::string_view sql);

// Whether two names of tables or fields are the same without regard to case.
bool isSameName(std::string_view a, std::string_view b);

inline constexpr int schemaVersion = 1; // user_version
inline constexpr int applicationId = 0x50575242; // "PWRB"

// The statements that turn a new database file into an empty recipe database.
std::string creationScript();
