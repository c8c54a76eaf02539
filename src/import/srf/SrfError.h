#pragma once

#include <QString>

// Why a recipe file is not imported.
struct SrfError {
    enum class Kind {
        Line, // a line holds something else than expected
        EndOfFile, // the file ends where line should follow; found is empty
        LineFeeds, // the lines end in LF alone; nothing else is said of the file
    };

    int line; // counted from 1
    QString expected; // for a person to read, fits behind "expected "
    QString found; // the text as it stands in the file, however long
    Kind kind = Kind::Line;
};

// The complaint as a plain text for a person: names the file, the line, what was expected and what
// stood there, shortened where it is long and with its control characters made visible.
QString srfErrorText(const SrfError &error, const QString &path);
