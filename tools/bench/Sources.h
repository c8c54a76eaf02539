#pragma once

#include <QString>

#include <vector>

// A data source that a window of the program opens.
struct Source {
    const char *title; // completes "read ..." in the table of results
    QString text;
    QString plainText; // the SQL statement that returns the same rows
};

std::vector<Source> windowSources();

// The tables that the importer opens.
std::vector<QString> importerSources();

// The statement for the ingredients of all recipes.
QString ingredientJoin();

// The statement for the recipe list.
QString listWithCounts();
