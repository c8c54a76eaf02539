#pragma once

#include "Bench.h"
#include "GeneratedRecipe.h"

#include <filesystem>
#include <span>
#include <vector>

// A recipe file and the recipe in it.
struct RecipeFile {
    std::filesystem::path path;
    GeneratedRecipe recipe;
};

// Writes `count` recipe files into a folder with that name. The recipes are numbered from `first`
// and are in no generated database. They use a small catalog, so that most of their ingredients
// exist after the first files.
std::vector<RecipeFile> writeFiles(const Bench &bench, const QString &folder, int first, int count);

// Creates a database without any rows, which replaces that of the previous call. Returns its path.
QString emptyDatabase(const Bench &bench);

// Returns the seconds that plain SQLite takes to insert the rows of these files in one transaction.
double insertPlainly(const Bench &bench, std::span<const RecipeFile> files);
