#include "OtherProgram.h"

#include "Randomness.h"
#include "data/Schema.h"

#include <SQLiteCpp/Exception.h>

#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace {

template <class Row>
Key oneKeyOf(const std::map<Key, Row> &rows, Randomness &random)
{
    return rows.empty() ? 0 : std::next(rows.begin(), random.below(int(rows.size())))->first;
}

} // namespace

OtherProgram::OtherProgram(const QString &path, Randomness &random)
    : m_connection(path.toStdString(), SQLite::OPEN_READWRITE)
    , m_random(random)
{
}

void OtherProgram::createFile(const QString &path)
{
    SQLite::Database file(path.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    file.exec(creationScript());
    file.exec("BEGIN");
    const QString script =
        u"INSERT INTO Recipes VALUES (NULL, 'Recipe %1', 'About %1', 'Author %1', %1 % 3, 'Cook "
        u"%1', "
        "%1 % 6, %1);"
        "INSERT INTO Ingredients VALUES (NULL, 'Ingredient %1', %1 % 4, %1, %1 % 2);"
        "INSERT INTO Utensils VALUES (NULL, 'Utensil %1');"
        "INSERT INTO RecipeIngredients VALUES (%1, %1, '1 tsp');"
        "INSERT INTO RecipeUtensils VALUES (%1, %1);"_s;
    for (int i = 1; i <= 12; ++i)
        file.exec(QString(script).replace("%1"_L1, QString::number(i)).toStdString());
    file.exec("COMMIT");
}

QString OtherProgram::integrity()
{
    return QString::fromStdString(m_connection.execAndGet("PRAGMA integrity_check").getString());
}

QString OtherProgram::write(const Tables &stored)
{
    QString statement = randomStatement(stored);
    try {
        m_connection.exec(statement.toStdString());
        return statement;
    } catch (const SQLite::Exception &) {
        return {};
    }
}

void OtherProgram::setLocked(bool locked)
{
    try {
        if (locked != m_isLocked)
            m_connection.exec(locked ? "BEGIN EXCLUSIVE" : "ROLLBACK");
        m_isLocked = locked;
    } catch (const SQLite::Exception &) { // in use
    }
}

QString OtherProgram::randomStatement(const Tables &stored)
{
    const Key recipe = oneKeyOf(stored.recipes, m_random);
    const Key ingredient = oneKeyOf(stored.ingredients, m_random);
    const Key utensil = oneKeyOf(stored.utensils, m_random);
    const QString name = m_random.name();
    const auto choose = [&](bool isTaken) { return isTaken ? freshName() : name; };
    switch (m_random.below(9)) {
    case 0:
        return u"INSERT INTO Recipes VALUES (NULL, '%1', '', 'Other', 1, 'Stir', 2, 4)"_s.arg(
            choose(findName(stored.recipes, name, 0) != 0));
    case 1:
        return u"UPDATE Recipes SET RecipeName = '%1' WHERE RecipeID = %2"_s.arg(freshName())
            .arg(recipe);
    case 2:
        return u"UPDATE Recipes SET Author = '%1', Rating = 3 WHERE RecipeID = %2"_s
            .arg(freshName())
            .arg(recipe);
    case 3:
        return u"INSERT INTO Ingredients VALUES (NULL, '%1', 2, 30, 1)"_s.arg(
            choose(findName(stored.ingredients, name, 0) != 0));
    case 4:
        return u"UPDATE Ingredients SET IngredientName = '%1', IngredientType = 5, "
               "Vegetarian = 1 - Vegetarian WHERE IngredientID = %2"_s.arg(freshName())
                   .arg(ingredient);
    case 5:
        return u"INSERT INTO Utensils VALUES (NULL, '%1')"_s.arg(
            choose(findName(stored.utensils, name, 0) != 0));
    case 6:
        return u"UPDATE Utensils SET UtensilName = '%1' WHERE UtensilID = %2"_s.arg(freshName())
            .arg(utensil);
    case 7:
        return u"DELETE FROM Ingredients WHERE IngredientID = %1"_s.arg(ingredient);
    default:
        return u"DELETE FROM Recipes WHERE RecipeID = %1"_s.arg(recipe);
    }
}

QString OtherProgram::freshName()
{
    return u"Other %1"_s.arg(++m_freshNames);
}
