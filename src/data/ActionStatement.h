#pragma once

#include <string>
#include <string_view>

// The statement as SQLite takes it: "DELETE table.* From table" loses its column list. The words
// are found whole and never inside quotes; every other statement comes back as it is.
std::string translatedStatement(std::string_view statement);
