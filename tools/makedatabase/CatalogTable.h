#pragma once

#include <QStringList>

#include <functional>

// Reads one of the plain text tables from which the catalogs are filled, and gives each row to
// `store`. A row is a line of `fieldCount` fields with '|' between them; blanks around a field do
// not count, nor do empty lines and lines that begin with '#'. The first field is the name, such as
// the catalog's window would take it; names are in the order of the catalogs and none stands twice.
// What is wrong, and what `store` throws, is thrown as std::runtime_error that names file and line.
void readCatalogTable(const QString &path, qsizetype fieldCount,
                      const std::function<void(const QStringList &)> &store);
