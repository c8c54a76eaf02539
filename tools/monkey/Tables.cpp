#include "Tables.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QSet>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

class Rows
{
public:
    Rows(SQLite::Database &database, const char *query)
        : m_statement(database, query)
    {
    }

    bool next() { return m_statement.executeStep(); }
    QString text(int column)
    {
        return QString::fromStdString(m_statement.getColumn(column).getString());
    }
    qint64 number(int column) { return m_statement.getColumn(column).getInt64(); }

private:
    SQLite::Statement m_statement;
};

std::map<Key, std::vector<Link>> readLinks(SQLite::Database &database, const char *query)
{
    std::map<Key, std::vector<Link>> links;
    for (Rows row(database, query); row.next();)
        links[row.number(0)].push_back({row.number(1), row.text(2)});
    return links;
}

void describeLinks(QStringList &lines, const QString &table,
                   const std::map<Key, std::vector<Link>> &links)
{
    for (const auto &[recipe, ofRecipe] : links) {
        QStringList texts;
        for (const Link &link : ofRecipe)
            texts += u"%1 \"%2\""_s.arg(link.key).arg(link.quantity);
        if (!texts.isEmpty())
            lines += u"%1 of recipe %2: %3"_s.arg(table).arg(recipe).arg(texts.join(", "_L1));
    }
}

QStringList describe(const Tables &tables)
{
    QStringList lines;
    for (const auto &[key, row] : tables.recipes) {
        lines += u"Recipes %1: \"%2\", \"%3\", \"%4\", type %5, \"%6\", rating %7, serves %8"_s.arg(
            QString::number(key), row.name, row.description, row.author, QString::number(row.type),
            row.instructions, QString::number(row.rating), numberText(row.serves));
    }
    for (const auto &[key, row] : tables.ingredients) {
        lines += u"Ingredients %1: \"%2\", type %3, shelf life %4, vegetarian %5"_s.arg(
            QString::number(key), row.name, QString::number(row.type), numberText(row.shelfLife),
            row.vegetarian ? u"yes"_s : u"no"_s);
    }
    for (const auto &[key, row] : tables.utensils)
        lines += u"Utensils %1: \"%2\""_s.arg(QString::number(key), row.name);
    describeLinks(lines, u"RecipeIngredients"_s, tables.ingredientLinks);
    describeLinks(lines, u"RecipeUtensils"_s, tables.utensilLinks);
    return lines;
}

template <class Row>
QString doubledIn(const std::map<Key, Row> &rows)
{
    QString doubled;
    for (const auto &[key, row] : rows) {
        if (findName(rows, row.name, key) != key)
            doubled += u"  \"%1\" is the name of two rows\n"_s.arg(row.name);
    }
    return doubled;
}

} // namespace

Tables readTables(SQLite::Database &database)
{
    Tables tables;
    for (Rows row(database,
                  "SELECT RecipeID, RecipeName, Description, Author, RecipeType, "
                  "Instructions, Rating, Serves FROM Recipes");
         row.next();) {
        tables.recipes[row.number(0)] = {row.text(1), row.text(2),
                                         row.text(3), static_cast<int>(row.number(4)),
                                         row.text(5), static_cast<int>(row.number(6)),
                                         row.text(7)};
    }
    for (Rows row(database,
                  "SELECT IngredientID, IngredientName, IngredientType, ShelfLife, "
                  "Vegetarian FROM Ingredients");
         row.next();) {
        tables.ingredients[row.number(0)] = {row.text(1), static_cast<int>(row.number(2)),
                                             row.text(3), row.number(4) != 0};
    }
    for (Rows row(database, "SELECT UtensilID, UtensilName FROM Utensils"); row.next();)
        tables.utensils[row.number(0)] = {row.text(1)};
    tables.ingredientLinks = readLinks(
        database, "SELECT RecipeID, IngredientID, Quantity FROM RecipeIngredients ORDER BY rowid");
    tables.utensilLinks =
        readLinks(database, "SELECT RecipeID, UtensilID, '' FROM RecipeUtensils ORDER BY rowid");
    return tables;
}

QString difference(const Tables &expected, const Tables &stored)
{
    const QStringList wanted = describe(expected);
    const QStringList found = describe(stored);
    QString lines;
    for (const QString &line : wanted) {
        if (!found.contains(line))
            lines += u"  expected: %1\n"_s.arg(line);
    }
    for (const QString &line : found) {
        if (!wanted.contains(line))
            lines += u"  stored:   %1\n"_s.arg(line);
    }
    return lines;
}

QString doubledNames(const Tables &tables)
{
    return doubledIn(tables.recipes) + doubledIn(tables.ingredients) + doubledIn(tables.utensils);
}

QString numberText(const QString &typed)
{
    bool isNumber = true;
    const double number = typed.isEmpty() ? 0 : typed.toDouble(&isNumber);
    return isNumber ? QString::number(number) : typed;
}
