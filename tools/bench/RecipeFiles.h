#pragma once

#include "Bench.h"
#include "GeneratedRecipe.h"

#include <filesystem>
#include <span>
#include <vector>

// A recipe file and what it holds, known without reading it.
struct RecipeFile {
    std::filesystem::path path;
    GeneratedRecipe recipe;
};

// Recipes that no generated database has, numbered from first, with few enough ingredients that all
// are soon known; in a folder of that name.
std::vector<RecipeFile> writeFiles(const Bench &bench, const QString &folder, int first, int count);

// A new recipe file without a row, in the place of the one before.
QString emptyDatabase(const Bench &bench);

// Seconds for the rows of these files in one transaction, by plain inserts.
double insertPlainly(const Bench &bench, std::span<const RecipeFile> files);
