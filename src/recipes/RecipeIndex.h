#pragma once

#include "data/Database.h"

#include <QStringView>
#include <QtGlobal>

#include <string>
#include <vector>

class SearchQuery;
struct SearchWord;

// Finds recipes while somebody types. Keeps what is searched of all recipes in memory, in folded
// form: titles, descriptions, authors, the texts of their types and the names of their ingredients.
class RecipeIndex
{
public:
    // Returns the keys of the recipes that match the query, in ascending order. Each of its words
    // may be found in another text of a recipe. Reads all recipes at the first call, and again if
    // this or another program has changed them since. Throws DatabaseError if they cannot be read;
    // the next call then tries again. The database must be the same in all calls.
    std::vector<qint64> matches(Database &database, const SearchQuery &query);

    // Whether matches() has read the recipes, which may have changed since.
    bool isRead() const { return m_isBuilt; }
    // The same for what has been read last, without a look at the file.
    std::vector<qint64> matchesAsRead(const SearchQuery &query) const;

    // Returns the keys of the recipes that have this title, or else of those whose titles begin
    // with it, in ascending order. Case and accents make no difference. Searches what matches()
    // has read last; the text must not be empty.
    std::vector<qint64> titled(QStringView text) const;

private:
    // A recipe and an ingredient of it, by their numbers here.
    struct Link {
        quint32 recipe;
        quint32 ingredient;
    };

    // Texts one after another, each followed by a line end, which no folded text contains.
    struct Texts {
        std::vector<qint64> keys; // ascending
        std::vector<std::size_t> starts; // for each key
        std::string text;

        void add(qint64 key); // whose texts are then appended
        void shrink(); // to the memory that is needed

        // Sets `found` for each key in whose texts the word is.
        void find(const SearchWord &word, std::vector<bool> &found) const;
    };

    bool isCurrent(Database &database) const;
    void build(Database &database);
    void readIngredients(Database &database);
    void readRecipes(Database &database);
    void readLinks(Database &database);
    std::vector<bool> recipesWith(const SearchWord &word) const; // by the numbers of the recipes

    bool m_isBuilt = false;
    Texts m_recipes;
    Texts m_ingredients;
    std::vector<Link> m_links;

    // The state of the file that was read.
    int m_dataVersion = 0;
    TableChanges m_changes{};
};
