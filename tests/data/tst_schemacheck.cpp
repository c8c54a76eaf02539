#include "data/RecordCursor.h"
#include "support/FileBytes.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Makes a table again with one declaration replaced.
QString changed(const QString &table, const QString &before, const QString &after)
{
    return u"PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = replace(sql, '%2', '%3') "
           "WHERE name = '%1'; PRAGMA schema_version = 99"_s.arg(table, before, after);
}

QString replaced(const QString &table, const QString &statement)
{
    return u"DROP TABLE %1; "_s.arg(table) + statement;
}

} // namespace

// What other tools can have made of the tables.
class tst_SchemaCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refuses_data()
    {
        const QString utensils = u"CREATE TABLE Utensils (UtensilID INTEGER PRIMARY KEY, %1)"_s;
        const QString name = u"UtensilName TEXT COLLATE NOCASE"_s;
        const QString unlike = u"CREATE INDEX Mine ON Recipes "_s;
        addRows<QString, QStringList>({
            {"index of names", unlike + u"(Serves, RecipeName)"_s, {u"\"Mine\""_s, u"Recipes"_s}},
            {"index of names in lower case letters",
             unlike + u"(RecipeName COLLATE nocase)"_s,
             {u"\"Mine\""_s}},
            {"unique index of names",
             u"CREATE UNIQUE INDEX Mine ON Utensils (UtensilName)"_s,
             {u"\"Mine\""_s, u"Utensils"_s}},
            {"index of an expression", unlike + u"(RecipeName = 'Éclair')"_s, {u"\"Mine\""_s}},
            {"index of some rows",
             unlike + u"(Serves) WHERE RecipeName > 'Éclair'"_s,
             {u"\"Mine\""_s}},
            {"index of a generated field",
             u"ALTER TABLE Recipes ADD Sweet AS (RecipeName = 'Éclair'); "_s + unlike
                 + u"(Sweet)"_s,
             {u"\"Mine\""_s}},
            {"unique field",
             replaced(u"Utensils"_s, utensils.arg(name + u" UNIQUE"_s)),
             {u"UtensilName"_s, u"Utensils"_s, u"unique"_s}},
            {"primary key of texts",
             replaced(u"RecipeIngredients"_s,
                      u"CREATE TABLE RecipeIngredients (RecipeID INTEGER, IngredientID INTEGER, "
                      "Quantity TEXT COLLATE NOCASE, PRIMARY KEY (RecipeID, Quantity))"_s),
             {u"RecipeID, Quantity"_s, u"RecipeIngredients"_s, u"unique"_s}},
            {"no counter",
             changed(u"Recipes"_s, u" PRIMARY KEY AUTOINCREMENT"_s, u""_s),
             {u"RecipeID"_s, u"INTEGER PRIMARY KEY AUTOINCREMENT"_s}},
            {"primary key that is not a counter",
             replaced(u"Utensils"_s,
                      u"CREATE TABLE Utensils (UtensilID INT PRIMARY KEY, %1)"_s.arg(name)),
             {u"UtensilID"_s, u"INTEGER PRIMARY KEY AUTOINCREMENT"_s}},
            {"another comparison",
             changed(u"Recipes"_s, u"Author TEXT COLLATE NOCASE"_s, u"Author TEXT"_s),
             {u"Author"_s, u"Recipes"_s, u"TEXT COLLATE NOCASE"_s}},
            {"number type in a text field",
             changed(u"Ingredients"_s, u"IngredientName TEXT"_s, u"IngredientName PRINTED TEXT"_s),
             {u"IngredientName"_s, u"Ingredients"_s, u"TEXT COLLATE NOCASE"_s}},
            {"texts in a number field",
             changed(u"Recipes"_s, u"NUMERIC"_s, u"VARCHAR(5)"_s),
             {u"Serves"_s, u"Recipes"_s, u"NUMERIC"_s}},
            {"fractions in a field of keys",
             changed(u"RecipeUtensils"_s, u"UtensilID INTEGER"_s, u"UtensilID DOUBLE"_s),
             {u"UtensilID"_s, u"RecipeUtensils"_s, u"INTEGER"_s}},
            {"view",
             u"ALTER TABLE Utensils RENAME TO Tools; CREATE VIEW Utensils AS SELECT * FROM Tools"_s,
             {u"Utensils"_s, u"ordinary table"_s}},
            {"virtual table",
             replaced(u"Utensils"_s,
                      u"CREATE VIRTUAL TABLE Utensils USING fts5 (UtensilID, UtensilName)"_s),
             {u"Utensils"_s, u"ordinary table"_s}},
            {"no rowid",
             replaced(u"Utensils"_s, utensils.arg(name) + u" WITHOUT ROWID"_s),
             {u"Utensils"_s, u"ordinary table"_s}},
            {"another field named rowid",
             u"ALTER TABLE RecipeUtensils ADD rowid INTEGER"_s,
             {u"RecipeUtensils"_s, u"ordinary table"_s}},
            {"field missing", u"ALTER TABLE Recipes DROP Rating"_s, {u"field Rating is missing"_s}},
        });
    }

    void refuses()
    {
        const auto [statements, parts] = fetchRow<QString, QStringList>();
        for (const bool isOpenBefore : {false, true}) {
            const TestDatabase file;
            std::shared_ptr<Database> database;
            if (isOpenBefore)
                database = Database::open(file.path());
            file.write(statements);
            const QByteArray before = bytesOf(file.path());
            const QString failure = failureOf([&] {
                database = Database::open(file.path());
                database->Execute(u"DELETE FROM Recipes"_s);
            });
            for (const QString &part : parts + QStringList{file.path()})
                QVERIFY2(failure.contains(part), qUtf8Printable(failure + u" lacks "_s + part));
            QCOMPARE(bytesOf(file.path()), before);
        }
    }

    void accepts_data()
    {
        addRows<QString>({
            {"indexes in binary order",
             u"CREATE INDEX a ON Utensils (UtensilName COLLATE BINARY, UtensilID DESC); "
             "CREATE UNIQUE INDEX b ON RecipeUtensils (UtensilID)"_s},
            {"fields, tables and triggers of others",
             u"ALTER TABLE Utensils ADD Note TEXT; CREATE TABLE Shops (Name TEXT UNIQUE COLLATE "
             "NOCASE); CREATE TRIGGER t AFTER INSERT ON Utensils BEGIN INSERT INTO Shops VALUES "
             "(new.UtensilID); UPDATE Utensils SET Note = 'x' WHERE UtensilName = 'z'; END"_s},
            {"a table of others that their comparison sorts",
             u"CREATE TABLE Shops (Name TEXT UNIQUE COLLATE NOCASE);"
             "INSERT INTO Shops VALUES ('é'), ('z'), ('f'), ('e')"_s},
            {"key without AUTOINCREMENT", changed(u"Utensils"_s, u" AUTOINCREMENT"_s, u""_s)},
            {"types of other tools",
             changed(u"Utensils"_s, u"TEXT COLLATE NOCASE"_s, u"varchar(50) COLLATE nocase"_s)},
        });
    }

    void accepts()
    {
        const auto [statements] = fetchRow<QString>();
        const TestDatabase file;
        file.write(statements);
        const QString source = u"Utensils"_s;
        RecordCursor cursor(Database::open(file.path()), source);
        for (const QString &name : {u"É"_s, u"z"_s, u"é"_s}) {
            cursor.AddNew();
            cursor.setValue("UtensilName"_L1, name);
            cursor.Update();
        }
        QCOMPARE(file.stored("PRAGMA integrity_check"), u"ok"_s);
    }
};

QTEST_GUILESS_MAIN(tst_SchemaCheck)
#include "tst_schemacheck.moc"
