#pragma once

#include <QStringList>

#include <vector>

// A recipe as links name it.
struct RecipeEntry {
    qint64 key;
    QString title;
    int type; // position in recipeTypes()
    QString page; // name of its file
};

// A type that has recipes.
struct TypeEntry {
    int type;
    QString name;
    QString page;
    qsizetype recipes; // how many
};

// All pages and how they are linked: what the main menu and the types' pages show.
struct SiteMap {
    static constexpr QLatin1StringView mainMenuPage{"index.html"};
    static constexpr QLatin1StringView styleSheet{"style.css"};

    std::vector<RecipeEntry> recipes; // in the stored sort order
    std::vector<TypeEntry> types; // in the order of recipeTypes()
};

// Of recipes with their titles as they are stored: names their pages and finds the types.
SiteMap siteMapOf(std::vector<RecipeEntry> recipes);

// The names of all files of the site.
QStringList fileNames(const SiteMap &site);
