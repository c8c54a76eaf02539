#pragma once

#include <QString>

#include <string_view>

namespace platform {

// Returns the text of the bytes. Unlike QString::fromUtf8(), it keeps a byte order mark at their
// start, which inside a file is part of the text.
QString decodeUtf8(std::string_view bytes);

} // namespace platform
