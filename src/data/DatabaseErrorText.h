#pragma once

#include <QString>

// What to tell the user about a failure with the recipe file at `path`: what is wrong and what to
// do next. `code` is an extended result code of SQLite, `message` its own words.
QString databaseErrorText(const QString &path, int code, const QString &message);

QString newerVersionText(const QString &path);
