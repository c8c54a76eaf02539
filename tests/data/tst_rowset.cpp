#include "data/RecordCursor.h"
#include "data/RowSet.h"
#include "support/RandomSeed.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

#include <functional>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

// A text that SQLite stores in a number column, if it does not look like a number.
const std::vector<FieldValue> values = {FieldValue(),
                                        qint64{0},
                                        qint64{-1},
                                        qint64{3},
                                        qint64{32'768},
                                        qint64{-32'769},
                                        qint64{1} << 53,
                                        (qint64{1} << 53) + 1,
                                        9007199254740992.0,
                                        2.5,
                                        -2.5,
                                        -1e300,
                                        1e300,
                                        "5",
                                        "much",
                                        "Much",
                                        "",
                                        "Éa",
                                        "eb",
                                        "ea",
                                        "a\uFFFD",
                                        "a\U0001F372",
                                        "a\xE9",
                                        std::string("a\0b", 3),
                                        "a",
                                        "Sauce with much",

                                        qint64{2},
                                        qint64{32'767},
                                        "sauce with more",
                                        std::string(70, 'x') + "b",
                                        "Ⅷ",
                                        std::string(70, 'X') + "a"};

std::string text(const Cell &cell)
{
    return toVariant(cell).toByteArray().toStdString() + '/' + std::to_string(cell.index());
}

} // namespace

class tst_RowSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The rows of a set are those of the same statement with an end that leaves the sorting to the
    // database. Own changes do not make the set read all rows again; other changes do.
    void agreesWithDatabase_data()
    {
        addRows<QString>({{"by name", u"RecipeName"_s},
                          {"by type and name", u"RecipeType, RecipeName"_s},
                          {"by numbers", u"serves , Rating,RecipeType, RecipeName"_s},
                          {"by key", u"RecipeID"_s},
                          {"by a column of another tool", u"Note, Extra"_s}});
    }

    void agreesWithDatabase()
    {
        const auto [order] = fetchRow<QString>();
        const TestDatabase file;
        file.write(
            u"ALTER TABLE Recipes ADD Note; ALTER TABLE Recipes ADD Extra TEXT "
            "COLLATE NOCASE DEFAULT 'by default'; "
            "WITH n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n LIMIT 20) INSERT INTO "
            "Recipes (RecipeType, RecipeName) SELECT 3, iif(i % 2, 'saucy 1 a', 'sauce 1 b') "
            "FROM n"_s);
        const auto database = Database::open(file.path());
        database->connection().exec("PRAGMA synchronous = OFF"); // makes the test much faster
        const QString source = u"Select  * FROM recipes order by "_s + order;
        RowSet rows(*database, source);
        std::vector<std::string> fields;
        for (const SourceQuery::Column &column : rows.query().columns())
            fields.push_back(column.name);
        TableWriter writer(*database, "Recipes", fields, "RecipeID");
        std::mt19937 random(randomSeed());
        const auto below = [&random](std::size_t end) { return random() % end; };
        for (int round = 0; round < 100; ++round) {
            rows.read();
            const bool isOwn = below(8) != 0;
            if (!isOwn) {
                database->Execute(u"UPDATE Recipes SET Note = X'61', Serves = X'6162', "
                                  "RecipeName = NULL WHERE RecipeID % 5 = %1"_s.arg(below(5)));
                database->Execute(u"INSERT INTO Recipes (RecipeName, Note) VALUES (X'62', 1)"_s);
            }
            for (std::size_t writes = below(12); writes > 0; --writes) {
                FieldValues written(fields.size());
                for (std::size_t i = 1; i < fields.size(); ++i) {
                    if (below(3) != 0)
                        written[i] = values[below(values.size())];
                }
                if (below(10) == 0)
                    written[0] = qint64{1000} * (round + 1) + static_cast<qint64>(writes);
                const auto row = static_cast<qsizetype>(below(1 + rows.size()));
                const bool isRow = row < rows.size();
                const auto kind = below(4);
                if (isRow && kind == 0) {
                    writer.remove(rows.key(row));
                    rows.erase(row);
                } else if (isRow && kind == 1) {
                    written[1] = "x";
                    writer.update(rows.key(row), written);
                    rows.replace(row, written);
                } else {
                    rows.append(written, writer.insert(written));
                }
            }
            QCOMPARE(rows.refresh(source), isOwn);
            rows.read();
            RowSet expected(*database, source + u", RecipeID LIMIT -1"_s);
            expected.read();
            QCOMPARE(rows.size(), expected.size());
            for (qsizetype row = 0; row < rows.size(); ++row) {
                for (int i = 0; i < static_cast<int>(fields.size()); ++i)
                    QCOMPARE(
                        text(rows.isLongText(i) ? rows.longText(rows.key(row)) : rows.cell(row, i)),
                        text(expected.cell(row, i)));
            }
        }
        QVERIFY(rows.size() > 100);
    }

    // What the instructions of the second recipe are after something has happened to a cursor on
    // it: the value, or the failure in brackets.
    void readsLongText_data()
    {
        using Action = std::function<void(RecordCursor &, Database &, const TestDatabase &)>;
        const auto execute = [](const QString &statement) {
            return [statement](RecordCursor &, Database &database, const TestDatabase &) {
                database.Execute(statement);
            };
        };
        const auto elsewhere = [](const QString &statement) {
            return [statement](RecordCursor &, Database &, const TestDatabase &file) {
                file.write(statement);
            };
        };
        const auto update = [](RecordCursor &cursor, const QString &field) {
            cursor.Edit();
            cursor.setValue(QLatin1StringView(field.toLatin1()), u"new"_s);
            cursor.Update();
        };
        const QString change = u"UPDATE Recipes SET Instructions = 'new' WHERE RecipeID = 2"_s;
        const QString remove = u"DELETE FROM Recipes WHERE RecipeID = 2"_s;
        const QString gone = u"[This entry has been deleted by another program."_s;
        addRows<Action, QVariant>({
            {"nothing", [](auto &&...) {}, u"old"_s},
            {"own change",
             [update](auto &cursor, auto &&...) { update(cursor, u"Instructions"_s); }, u"new"_s},
            {"own change of another field",
             [=](auto &cursor, auto &database, auto &&...) {
                 database.Execute(change);
                 update(cursor, u"Author"_s);
             },
             u"old"_s},
            {"own change after another one",
             [=](auto &cursor, auto &database, auto &&...) {
                 database.Execute(change);
                 update(cursor, u"Instructions"_s);
             },
             u"new"_s},
            {"own change that is rolled back",
             [update](auto &cursor, auto &database, auto &&...) {
                 {
                     const Transaction transaction(database);
                     update(cursor, u"Instructions"_s);
                 }
                 cursor.MoveLast();
             },
             u"old"_s},
            {"change by a statement", execute(change), u"old"_s},
            {"deletion by a statement", execute(remove), u"old"_s},
            {"change by another cursor",
             [update](auto &, auto &, const TestDatabase &file) {
                 const QString source = u"Recipes"_s;
                 RecordCursor other(Database::open(file.path()), source);
                 other.MoveLast();
                 update(other, u"Instructions"_s);
                 other.Delete();
             },
             u"old"_s},
            {"change and requery",
             [change](auto &cursor, auto &database, auto &&...) {
                 database.Execute(change);
                 cursor.Requery();
                 cursor.MoveLast();
             },
             u"new"_s},
            {"change by another program", elsewhere(change), u"new"_s},
            {"deletion by another program", elsewhere(remove), gone},
            {"null", elsewhere(u"UPDATE Recipes SET Instructions = NULL"_s), QVariant()},
            {"empty text", elsewhere(u"UPDATE Recipes SET Instructions = ''"_s), u""_s},
            {"blob", elsewhere(u"UPDATE Recipes SET Instructions = X'00FF'"_s),
             QByteArray("\0\xFF", 2)},
            {"search",
             [](auto &cursor, auto &&...) {
                 cursor.MoveFirst();
                 cursor.FindNext(u"Instructions = 'OLD'"_s);
             },
             u"old"_s},
            {"file replaced",
             [change](auto &, auto &database, const TestDatabase &file) {
                 const TestDatabase newer;
                 QFile::resize(file.path(), 0);
                 QFile::remove(file.path());
                 QFile::copy(newer.path(), file.path());
                 Database::reopen(file.path());
                 database.Execute(change);
             },
             u"[The recipe database was replaced. Press F5"_s},
        });
    }

    void readsLongText()
    {
        using Action = std::function<void(RecordCursor &, Database &, const TestDatabase &)>;
        const auto [action, expected] = fetchRow<Action, QVariant>();
        for (const QString &source : {u"Recipes"_s, u"SELECT * FROM Recipes ORDER BY Author"_s}) {
            const TestDatabase file;
            file.write(u"INSERT INTO Recipes (RecipeName, Instructions) "
                       "VALUES ('a', 'first'), ('b', 'old')"_s);
            const auto database = Database::open(file.path());
            RecordCursor cursor(database, source);
            cursor.MoveLast();
            QCOMPARE(cursor.rows().cell(1, cursor.rows().columnNumber("Instructions"_L1)), Cell());
            action(cursor, *database, file);
            QVariant value;
            const QString failure = failureOf([&] { value = cursor.value("Instructions"_L1); });
            if (failure.isNull())
                QCOMPARE(value, expected);
            else
                QVERIFY2((u'[' + failure).startsWith(expected.toString()), qPrintable(failure));
            QCOMPARE(value.typeId(), failure.isNull() ? expected.typeId() : 0);
        }
    }
};

QTEST_GUILESS_MAIN(tst_RowSet)
#include "tst_rowset.moc"
