#pragma once

#include <QString>

#include <vector>

// The sources that the windows read.
struct Source {
    const char *title; // in the table of results
    QString text;
    QString plainText; // the statement that yields the same rows
};

std::vector<Source> windowSources();

// Those of the hidden importer.
std::vector<QString> importerSources();

// All lines of all recipes.
QString ingredientJoin();

// The recipe list.
QString listWithCounts();
