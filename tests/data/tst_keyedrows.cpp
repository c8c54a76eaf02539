#include "data/Criterion.h"
#include "data/DataSource.h"
#include "support/FileBytes.h"
#include "support/RandomSeed.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString join =
    inLinkOrder(u"SELECT IngredientName, l.RecipeID, Quantity FROM Ingredients INNER JOIN "
                "RecipeIngredients l ON Ingredients.IngredientID = l.IngredientID"_s,
                "l"_L1);
const QString links = u"RecipeIngredients"_s;
const QString recipes = u"SELECT * FROM Recipes ORDER BY RecipeName"_s;
const QString keys = u"SELECT RecipeID FROM Recipes"_s;

QString linesOf(qint64 recipe)
{
    return criterion("RecipeID"_L1, recipe);
}

// A file with lines of the recipes 1 and 2 and none of 3, in which another tool's index makes the
// engine begin a join with the catalog. Two lines of recipe 1 are the same.
class LinkedFile
{
public:
    explicit LinkedFile(const QString &source)
    {
        m_file.write(
            u"INSERT INTO Recipes (RecipeID, RecipeName, Instructions) VALUES (1, 'c', 'x'), "
            "(2, 'b', 'y'), (3, 'a', 'z'); "
            "INSERT INTO Ingredients (IngredientID, IngredientName) "
            "VALUES (1, 'Salt'), (2, 'Egg'); INSERT INTO RecipeIngredients VALUES "
            "(1, 2, 'a'), (2, 2, 'b'), (1, 1, 'c'), (1, 2, 'a'), (NULL, 1, 'd');"_s
            + QString::fromLatin1(joinsBeginWithCatalog));
        m_source.DatabaseName = m_file.path();
        m_source.RecordSource = source;
        database().connection().exec("PRAGMA synchronous = OFF"); // makes the test faster
    }

    const TestDatabase &file() const { return m_file; }
    Database &database() { return m_source.Database(); }
    RecordCursor &cursor() { return m_source.Recordset(); }
    DataSources &sources() { return m_sources; }

    // The quantities of a recipe's lines.
    QString quantities(qint64 recipe)
    {
        QString result;
        const QString criteria = linesOf(recipe);
        for (cursor().FindFirst(criteria); !cursor().NoMatch(); cursor().FindNext(criteria))
            result += cursor().value("Quantity"_L1).toString();
        return result;
    }

private:
    const TestDatabase m_file;
    DataSources m_sources;
    DataSource m_source{m_sources};
};

// Returns what it reads; a failure counts as such, too.
using Operation = std::function<QVariant(LinkedFile &)>;

Operation act(const std::function<void(RecordCursor &)> &action)
{
    return [action](LinkedFile &file) {
        action(file.cursor());
        return QVariant();
    };
}

Operation execute(const QString &statement)
{
    return [statement](LinkedFile &file) {
        file.database().Execute(statement);
        return QVariant();
    };
}

Operation rolledBack(const Operation &operation)
{
    return [operation](LinkedFile &file) {
        const Transaction transaction(file.database());
        return operation(file);
    };
}

void add(RecordCursor &cursor)
{
    cursor.AddNew();
    cursor.setValue("RecipeID"_L1, 2);
    cursor.setValue("Quantity"_L1, u"n"_s);
    cursor.Update();
}

const Operation addLine = execute(u"INSERT INTO RecipeIngredients VALUES (2, 1, 'e')"_s);

QList<Operation> operations()
{
    QList<Operation> all{
        act([](auto &cursor) { cursor.MoveFirst(); }),
        act([](auto &cursor) { cursor.MoveNext(); }),
        act([](auto &cursor) { cursor.MovePrevious(); }),
        act([](auto &cursor) { cursor.MoveLast(); }),
        act([](auto &cursor) { cursor.AddNew(); }),
        act([](auto &cursor) { cursor.Edit(); }),
        act([](auto &cursor) { cursor.setValue("Quantity"_L1, u"n"_s); }),
        act([](auto &cursor) { cursor.Update(); }),
        act([](auto &cursor) { cursor.Delete(); }),
        [](LinkedFile &file) { return file.cursor().AtBOF(); },
        [](LinkedFile &file) { return file.cursor().AtEOF(); },
        [](LinkedFile &file) { return file.cursor().RecordCount(); },
        addLine,
        execute(u"UPDATE Ingredients SET IngredientName = IngredientName || 'x'"_s),
        execute(u"DELETE FROM RecipeIngredients WHERE rowid > 7"_s),
        execute(u"REPLACE INTO RecipeIngredients (rowid, RecipeID, IngredientID, Quantity) "
                "VALUES (1, 1, 2, 'a'), (2, 2, 2, 'b'), (3, 1, 1, 'c'), (4, 1, 2, 'a')"_s),
        execute(u"INSERT OR IGNORE INTO Recipes (RecipeID) VALUES (1), (2), (3)"_s),
        execute(u"DELETE FROM Recipes WHERE RecipeID > 3"_s),
        execute(u"UPDATE Recipes SET Instructions = RecipeName || Instructions"_s),
        rolledBack(execute(u"DELETE FROM RecipeIngredients"_s)),
    };
    for (const auto field : {"RecipeID"_L1, "Quantity"_L1, "IngredientName"_L1, "Instructions"_L1})
        all += [field](LinkedFile &file) { return file.cursor().value(field); };
    for (const QString &criteria : {linesOf(0), linesOf(1), linesOf(2), linesOf(3),
                                    u"RecipeID = '1'"_s, u"Quantity = 'a'"_s, u"Nothing = 1"_s}) {
        const auto findFirst = act([criteria](auto &cursor) { cursor.FindFirst(criteria); });
        const auto findNext = act([criteria](auto &cursor) { cursor.FindNext(criteria); });
        all += {findFirst, findNext, findFirst, findNext};
    }
    return all;
}

// What the operation returns or throws, and whether the last search found nothing.
QString outcomeOf(const Operation &operation, LinkedFile &file)
{
    QVariant result;
    const QString failure = failureOf([&] { result = operation(file); });
    return u"%1 %2 %3 %4"_s.arg(QString::fromLatin1(result.typeName()), result.toString(), failure,
                                file.cursor().NoMatch() ? u"no match"_s : u"match"_s);
}

} // namespace

class tst_KeyedRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithAllRows_data()
    {
        addRows<QString>({{"join", join},
                          {"table of links", links},
                          {"keys of a table", keys},
                          {"recipes", recipes}});
    }

    // Random operations on two cursors of two equal files. After each requery, one of them reads
    // all rows, and the other one begins with a search by key.
    void agreesWithAllRows()
    {
        const auto [source] = fetchRow<QString>();
        LinkedFile searched(source);
        LinkedFile read(source);
        std::mt19937 random(randomSeed());
        const QList<Operation> all = operations();
        const Operation begin[] = {act([](auto &cursor) { cursor.Requery(); }),
                                   rolledBack(act(add))};
        for (int step = 0; step < 4000; ++step) {
            const bool begins = step == 0 || random() % 8 == 0;
            const Operation &operation =
                begins ? begin[random() % 2] : all[static_cast<qsizetype>(random()) % all.size()];
            const QString outcome = outcomeOf(operation, searched);
            const QString expected = outcomeOf(operation, read);
            QVERIFY2(outcome == expected,
                     qPrintable(u"step %1: %2, not %3"_s.arg(step).arg(outcome, expected)));
            if (begins) {
                const QString criteria = linesOf(static_cast<qint64>(random() % 4));
                read.cursor().RecordCount();
                for (RecordCursor *cursor : {&searched.cursor(), &read.cursor()}) {
                    cursor->FindFirst(criteria);
                    for (int times = 0; !cursor->NoMatch() && times < step % 3; ++times)
                        cursor->FindNext(criteria);
                }
            }
        }
    }

    void showsOthersChangesOnly_data()
    {
        const auto add = [](LinkedFile &file) {
            ::add(file.cursor());
            return QVariant();
        };
        const auto suspend = [](LinkedFile &file) {
            file.sources().suspend();
            return addLine(file);
        };
        const auto endSuspension = [](LinkedFile &file) {
            file.sources().suspend();
            file.sources().requery();
            file.cursor().FindFirst(linesOf(1));
            return addLine(file);
        };
        const auto find = [](const QString &criteria) {
            return act([criteria](auto &cursor) { cursor.FindFirst(criteria); });
        };
        const auto replaceFile = [](LinkedFile &file) {
            const QString path = file.file().path();
            const QByteArray bytes = bytesOf(path);
            QFile::remove(path);
            setBytes(path, bytes);
            Database::reopen(path);
            return QVariant();
        };
        const auto replaceTable = [](LinkedFile &file) {
            file.file().write(u"DROP TABLE RecipeIngredients; CREATE TABLE RecipeIngredients "
                              "(Quantity TEXT COLLATE NOCASE, IngredientID INTEGER, RecipeID "
                              "INTEGER); INSERT INTO RecipeIngredients VALUES ('r', 1, 2)"_s);
            return QVariant();
        };
        addRows<QString, Operation, QString>({
            {"nothing", join, act([](auto &) {}), u"bo"_s},
            {"search without a match", join, find(linesOf(3)), u"bo"_s},
            {"reading a row", join,
             [](LinkedFile &file) { return file.cursor().value("Quantity"_L1); }, u"bo"_s},
            {"change of another table", join, execute(u"DELETE FROM Utensils"_s), u"bo"_s},
            {"change", join, addLine, u"b"_s},
            {"change after a search without a match", join,
             [](LinkedFile &file) {
                 file.cursor().Requery();
                 file.cursor().FindFirst(linesOf(3));
                 return addLine(file);
             },
             u"b"_s},
            {"change of the catalog", join, execute(u"DELETE FROM Ingredients"_s), u"b"_s},
            {"change that is rolled back", join, rolledBack(addLine), u"b"_s},
            {"suspended", join, suspend, u"beo"_s},
            {"no longer suspended", join, endSuspension, u"b"_s},
            {"operation on all rows", join, act([](auto &cursor) { cursor.RecordCount(); }),
             u"b"_s},
            {"search by another field", join, find(u"Quantity = 'x'"_s), u"b"_s},
            {"row added by itself", links, add, u"bon"_s},
            {"file that is replaced", join, replaceFile, u"bo"_s},
            {"table that is replaced", links, replaceTable, u"ro"_s},
        });
    }

    // A cursor that has found the lines of one recipe, an operation, and then another program adds
    // the line "o" to recipe 2: which of its lines the cursor shows.
    void showsOthersChangesOnly()
    {
        const auto [source, operation, lines] = fetchRow<QString, Operation, QString>();
        LinkedFile file(source);
        QCOMPARE(file.quantities(1), u"aca"_s);
        operation(file);
        file.file().write(u"INSERT INTO RecipeIngredients (RecipeID, IngredientID, Quantity) "
                          "VALUES (2, 1, 'o')"_s);
        QCOMPARE(file.quantities(2), lines);
    }

    void keepsCurrentRow_data()
    {
        addRows<QString, QString>({
            {"changes elsewhere", u"DELETE FROM RecipeIngredients WHERE rowid < 4"_s, u"a"_s},
            {"deleted", u"DELETE FROM RecipeIngredients WHERE rowid = 4"_s, u"no row"_s},
            {"field added", u"ALTER TABLE RecipeIngredients ADD COLUMN Note TEXT"_s, u"a"_s},
        });
    }

    // The cursor is on the last line of recipe 1 when another program writes and the other rows are
    // read. It stays on that line or, if the line is no longer the same, is on none.
    void keepsCurrentRow()
    {
        const auto [statement, quantity] = fetchRow<QString, QString>();
        LinkedFile file(links);
        file.quantities(1);
        file.file().write(statement);
        file.cursor().FindFirst(linesOf(1)); // its rows stay as they were read
        file.quantities(1);
        file.cursor().RecordCount();
        QString shown = u"no row"_s;
        failureOf([&] { shown = file.cursor().value("Quantity"_L1).toString(); });
        QCOMPARE(shown, quantity);
        file.cursor().MoveNext();
        QVERIFY(!file.cursor().value("IngredientID"_L1).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_KeyedRows)
#include "tst_keyedrows.moc"
