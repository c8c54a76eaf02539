#include "data/TypesAndRatings.h"
#include "recipes/RecipeIndex.h"
#include "search/SearchQuery.h"
#include "support/FileBytes.h"
#include "support/RandomSeed.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

#include <QTest>

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

// As they are written in SQL.
const QStringList texts = {u"NULL"_s,
                           u"12"_s,
                           u"'soup'"_s,
                           u"'Leek soup'"_s,
                           u"'Leeks, soup'"_s,
                           u"'Crème'"_s,
                           u"'le' || X'0A' || 'ek'"_s,
                           u"''"_s};
const QStringList types = {u"NULL"_s, u"0"_s, u"1"_s, u"14"_s, u"16"_s, u"-1"_s, u"'Soup'"_s};
const QStringList queryWords = {u"s"_s,       u"soup"_s, u"LEEK"_s, u"\"leek\""_s,
                                u"creme"_s,   u"12"_s,   u"misc"_s, u"\"le ek\""_s,
                                u"cookies"_s, u"NULL"_s, u"soups"_s};

// Returns the keys of the recipes in whose texts each of the words is found, or is not if a minus
// precedes it.
std::vector<qint64> matchesOneByOne(const TestDatabase &file, const QStringList &words)
{
    const SQLite::Database database = file.other();
    SQLite::Statement recipes(database,
                              "SELECT RecipeID, RecipeName, Description, Author, "
                              "ifnull(RecipeType, 0), typeof(RecipeType) FROM Recipes "
                              "ORDER BY RecipeID");
    SQLite::Statement ingredients(database,
                                  "SELECT IngredientName FROM RecipeIngredients JOIN "
                                  "Ingredients USING (IngredientID) WHERE RecipeID = ?");
    std::vector<qint64> keys;
    while (recipes.executeStep()) {
        QStringList found;
        for (const int column : {1, 2, 3})
            found += QString::fromStdString(recipes.getColumn(column).getString());
        if (recipes.getColumn(5).getString() != "text")
            found += recipeTypes().value(recipes.getColumn(4).getInt());
        ingredients.reset();
        ingredients.bind(1, recipes.getColumn(0).getInt64());
        while (ingredients.executeStep())
            found += QString::fromStdString(ingredients.getColumn(0).getString());
        const bool isMatch = std::all_of(words.begin(), words.end(), [&](const QString &word) {
            const bool isExcluded = word.startsWith(u'-');
            const SearchQuery query(QStringView(word).sliced(isExcluded ? 1 : 0));
            return isExcluded != std::any_of(found.begin(), found.end(), [&](const QString &text) {
                       return query.matches(text);
                   });
        });
        if (isMatch)
            keys.push_back(recipes.getColumn(0).getInt64());
    }
    return keys;
}

} // namespace

class tst_RecipeIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Recipes change in this program and in another one. A link can lead to a recipe or an
    // ingredient that is missing.
    void findsWhatIsStored()
    {
        const TestDatabase file;
        const unsigned seed = randomSeed();
        std::mt19937 random(seed);
        const auto below = [&random](int end) { return int(random() % unsigned(end)); };
        const auto one = [&](const QStringList &list) { return list.at(below(int(list.size()))); };
        const auto statement = [&] {
            switch (below(6)) {
            case 0:
                return u"UPDATE Recipes SET RecipeName = %1, RecipeType = %2 WHERE RecipeID % %3 = 0"_s
                    .arg(one(texts), one(types))
                    .arg(2 + below(20));
            case 1:
                return u"INSERT OR REPLACE INTO Ingredients (IngredientName, IngredientID) "
                       "VALUES (%1, %2)"_s.arg(one(texts))
                           .arg(1 + below(9));
            case 2:
                return u"DELETE FROM Ingredients WHERE IngredientID = %1"_s.arg(1 + below(9));
            case 3:
                return u"DELETE FROM RecipeIngredients WHERE rowid % 30 = %1"_s.arg(below(30));
            case 4:
                return u"INSERT INTO Recipes (Description, Author) VALUES (%1, %2)"_s.arg(
                    one(texts), one(texts));
            default:
                return u"INSERT INTO RecipeIngredients (RecipeID, IngredientID) SELECT RecipeID, "
                       u"%1 FROM Recipes "
                       "WHERE RecipeID % 10 = %2"_s.arg(1 + below(9))
                           .arg(below(10));
            }
        };
        // As many recipes as are read at a time.
        file.write(
            u"WITH n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n LIMIT 1000) INSERT "
            "INTO Recipes (RecipeID, Author) SELECT 3 * i - 1500, i FROM n; INSERT INTO "
            "Ingredients (IngredientName) VALUES ('Leek'), ('Salt'), ('Crème'), ('s'); "
            "INSERT INTO RecipeIngredients (RecipeID, IngredientID) SELECT -RecipeID, abs(RecipeID / 3) % 10 FROM Recipes"_s);
        const auto database = Database::open(file.path());
        database->connection().exec("PRAGMA synchronous = OFF"); // makes the test much faster
        RecipeIndex index;
        for (int round = 0; round < 60; ++round) {
            const QString change = statement();
            if (below(2) == 0) {
                file.write(change);
            } else {
                Transaction transaction(*database);
                database->Execute(change);
                index.matches(*database, SearchQuery(u"s"));
                if (below(4) != 0)
                    transaction.commit();
            }
            for (int query = 0; query < 3; ++query) {
                QStringList words;
                for (int count = below(4); count > 0; --count)
                    words += (below(4) == 0 ? u"-"_s : QString()) + one(queryWords);
                if (below(4) == 0)
                    words += u"\"leek s"_s; // ends the query, since the mark is not closed
                const auto found = index.matches(*database, SearchQuery(words.join(u' ')));
                QVERIFY2(found == matchesOneByOne(file, words),
                         qPrintable(u"seed %1, round %2: %3, %4"_s.arg(seed).arg(round).arg(
                             change, words.join(u' '))));
            }
        }
    }

    // The keys of the other file may be those of other recipes.
    void readsAnotherFile()
    {
        const TestDatabase file;
        file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Bread'), ('Leek soup')"_s);
        const QByteArray bytes = bytesOf(file.path());
        file.write(u"UPDATE Recipes SET RecipeName = 'Soup' WHERE RecipeID = 1"_s);
        const auto database = Database::open(file.path());
        RecipeIndex index;
        const auto find = [&] { return index.matches(*database, SearchQuery(u"soup")); };
        QCOMPARE(find(), (std::vector<qint64>{1, 2}));
        QFile::remove(file.path());
        setBytes(file.path(), bytes);
        Database::reopen(file.path());
        QCOMPARE(find(), std::vector<qint64>{2});
    }

    void titles_data()
    {
        addRows<QString, std::vector<qint64>>({{"whole", u"SOUP"_s, {2}},
                                               {"beginning", u"lee"_s, {1, 3}},
                                               {"accent", u"creme"_s, {4}},
                                               {"end", u"eek soup"_s, {}},
                                               {"more than the last", u"creme\nx"_s, {}}});
    }
    void titles()
    {
        const auto [text, keys] = fetchRow<QString, std::vector<qint64>>();
        const TestDatabase file;
        file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Leek'), ('Soup'), ('Leek soup'), "
                   "('Crème'), (NULL)"_s);
        const auto database = Database::open(file.path());
        RecipeIndex index;
        index.matches(*database, SearchQuery(u"e"));
        QCOMPARE(index.titled(text), keys);
    }

    void readsAgainAfterFailure()
    {
        const TestDatabase file;
        file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Leek soup')"_s);
        const auto database = Database::open(file.path(), std::chrono::milliseconds(1));
        RecipeIndex index;
        const auto find = [&] { return index.matches(*database, SearchQuery(u"soup")).size(); };
        for (int time = 0; time < 2; ++time) {
            SQLite::Database other = file.other();
            other.exec("BEGIN EXCLUSIVE; UPDATE Recipes SET RecipeName = 'Soup'");
            QCOMPARE(failureOf(find), lockedText(file, DatabaseError::Operation::Reading));
            other.exec("COMMIT");
            QCOMPARE(find(), 1U);
        }
    }
};

QTEST_APPLESS_MAIN(tst_RecipeIndex)
#include "tst_recipeindex.moc"
