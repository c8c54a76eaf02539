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

// Inserts the rows of these files with plain SQLite, in one transaction.
Cost insertPlainly(const Bench &bench, std::span<const RecipeFile> files);
