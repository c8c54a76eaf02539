#pragma once

#include <QByteArray>

#include <filesystem>
#include <vector>

// What a directory holds. Names are bytes: they need not be text.
namespace platform {

// Whether it is a directory that can be listed and entered.
bool canBeOpened(const std::filesystem::path &directory);

// The names of the files that end in the suffix (ASCII, in any letter case), in the order in which
// the file system lists them; without folders and hidden files. Links count as what they lead to.
// None where the directory cannot be read.
std::vector<QByteArray> filesEndingIn(QByteArrayView suffix,
                                      const std::filesystem::path &directory);

// The directories in it that can be opened, by name; without hidden ones.
std::vector<std::filesystem::path> subdirectories(const std::filesystem::path &directory);

} // namespace platform
