// makedatabase FILE: makes an empty recipe file. One that is there is left as it is.

#include "Schema.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <cstdio>
#include <filesystem>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("usage: makedatabase FILE\n", stderr);
        return 2;
    }
    const std::filesystem::path file = argv[1];
    if (std::filesystem::exists(std::filesystem::symlink_status(file)))
        return 0;
    // Made beside its place and moved there whole: a build that is stopped leaves no half a file.
    std::filesystem::path unfinished = file;
    unfinished += ".new";
    try {
        std::filesystem::remove(unfinished);
        SQLite::Database database(unfinished.string(),
                                  SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec(creationScript());
        std::filesystem::rename(unfinished, file);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "makedatabase: %s: %s\n", file.string().c_str(), error.what());
        return 1;
    }
    return 0;
}
