#pragma once

#include <QSet>
#include <QStringList>

#include <vector>

// A recipe, as other pages link to it.
struct RecipeEntry {
    qint64 key;
    QString title;
    int type; // position in recipeTypes()
    QString page; // file name
};

// A recipe type that has recipes.
struct TypeEntry {
    int type; // position in recipeTypes()
    QString name;
    QString page; // file name
    qsizetype recipes; // number of them
};

// All pages and their links: what the pages of the main menu and of the types show.
struct SiteMap {
    static constexpr QLatin1StringView mainMenuPage{"index.html"};
    static constexpr QLatin1StringView styleSheet{"style.css"};

    std::vector<RecipeEntry> recipes; // in the sort order of the settings
    std::vector<TypeEntry> types; // in the order of recipeTypes()
};

// Makes the site map of recipes that have their stored titles and no pages yet: names their pages,
// cleans their titles and finds the types.
SiteMap siteMapOf(std::vector<RecipeEntry> recipes);

// The names of all files of the site.
QStringList fileNames(const SiteMap &site);

// The file names of pages consist of lower-case ASCII letters, digits, hyphens and underscores:
// valid on every file system and in every link.

// Returns for example "type_grains-bean-rice.html". No recipe's page has such a name.
QString typePageName(const QString &type);

// Makes the unique file names of the recipes' pages. A name depends only on the title, so that
// links to a recipe stay valid when other recipes are added, deleted or sorted differently. If the
// title does not fit into the name completely ("Crème", "Soup!"), a hash of it is appended.
class RecipePageNames
{
public:
    // Of several recipes with the same title, all but the first get their key in the name.
    QString take(const QString &title, qint64 key);

private:
    QSet<QString> m_taken;
};
