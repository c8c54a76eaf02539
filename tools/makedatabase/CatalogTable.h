#pragma once

#include <QStringList>

#include <functional>

// Reads one of the text files from which the catalogs are filled, and passes each row to `store`. A
// row is a line of `fieldCount` fields separated by '|'. Spaces around a field, empty lines and
// lines that begin with '#' are ignored. The first field is the name. It must be valid in the
// catalog's window, and names must be unique and sorted as in the catalogs. Throws
// std::runtime_error with the file and line if a row is invalid or `store` throws.
void readCatalogTable(const QString &path, qsizetype fieldCount,
                      const std::function<void(const QStringList &)> &store);
