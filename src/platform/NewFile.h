#pragma once

#include <QByteArrayView>

#include <filesystem>
#include <system_error>

namespace platform {

// Makes a file with these bytes. Fails where there is one of that name; what a failure leaves may
// be a part of it.
std::error_code writeNewFile(const std::filesystem::path &path, QByteArrayView bytes);

} // namespace platform
