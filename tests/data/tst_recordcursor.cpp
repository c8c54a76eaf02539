#include "data/Criterion.h"
#include "data/CursorModel.h"
#include "data/TextComparison.h"
#include "support/RandomSeed.h"
#include "support/RecipeFile.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString ingredientJoin = inLinkOrder(
    u"SELECT RecipeIngredients.RecipeID, Quantity, IngredientName, Vegetarian FROM Ingredients "
    "INNER JOIN RecipeIngredients "
    "ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s,
    "RecipeIngredients"_L1);
const QString recipeList =
    u"SELECT Recipes.RecipeID, RecipeName, Serves, Count(RecipeIngredients.RecipeID) AS Count FROM "
    "Recipes LEFT JOIN RecipeIngredients ON Recipes.RecipeID = RecipeIngredients.RecipeID "
    "GROUP BY Recipes.RecipeID, RecipeType, RecipeName, Serves ORDER BY RecipeType, RecipeName"_s;

using Operation = std::function<void(RecordCursor &, const std::shared_ptr<Database> &)>;
using Change = std::function<void(RecordCursor &, Database &, const RecipeFile &)>;

struct Source {
    QString text;
    QStringList tables; // the one that the cursor can write, or those that it only reads
    QString plainSelect; // selects the same rows in another way
    QString textField;
    QString keyField;
};

// Random operations on a cursor and on its model, with writes that bypass the cursor: in the same
// program, in another one and in transactions that are rolled back.
class RandomWalk
{
public:
    RandomWalk(const Source &source, unsigned seed)
        : m_source(source)
        , m_random(seed)
        , m_database(opened(m_file))
        , m_other(m_file.other())
        , m_cursor(m_database, m_source.text)
    {
        for (SQLite::Database *connection : {&m_database->connection(), &m_other})
            connection->exec("PRAGMA synchronous = OFF"); // makes the test ten times as fast
        m_model.compare(m_cursor);
    }

    // As seen by a program whose NOCASE folds only ASCII.
    bool isSound() { return m_other.execAndGet("PRAGMA integrity_check").getString() == "ok"; }

    // One random step; throws if cursor and model differ.
    void step()
    {
        const bool isUpdatable = m_source.tables.size() == 1;
        const unsigned kind = below(12);
        if (kind < 5) {
            kind < 3 ? move() : find();
        } else if (kind < 8 && isUpdatable) {
            kind < 7 ? add() : oneIn(2) ? edit() : remove();
        } else if (kind < 10) {
            m_cursor.Requery();
            readModel();
            // The next operation may find rows that have not been read.
            isUpdatable && !m_model.isEmpty() && oneIn(2) ? add() : oneIn(2) ? move() : find();
        } else if (kind == 10) {
            writeElsewhere();
        } else {
            oneIn(2) ? begin() : end();
        }
        m_model.compare(m_cursor);
    }

private:
    // With this index and these statistics, SQLite reads a join in another order unless it is asked
    // for the order of the links.
    static std::shared_ptr<Database> opened(const RecipeFile &file)
    {
        file.write(u"CREATE INDEX Extra ON RecipeIngredients (IngredientID); ANALYZE;"
                   "INSERT INTO sqlite_stat1 VALUES ('RecipeIngredients', 'Extra', '9000 450'), "
                   "('Ingredients', NULL, '20')"_s);
        return Database::open(file.path());
    }

    unsigned below(unsigned end) { return static_cast<unsigned>(m_random() % end); }
    bool oneIn(unsigned count) { return below(count) == 0; }
    QString oneOf(const QStringList &texts)
    {
        return texts[static_cast<int>(below(static_cast<unsigned>(texts.size())))];
    }

    QString name()
    {
        return oneOf({u"Salt"_s, u"SALT"_s, u"Salted"_s, u"' OR N=''"_s, u"5?"_s, u"É"_s, u"é"_s,
                      u"ß"_s, u"ẞ"_s, u"ς"_s, u"Σ"_s, u""_s, u"🍲"_s, u"x"_s.repeated(300)});
    }

    static bool works(const std::function<void()> &action) { return failureOf(action).isNull(); }

    void readModel() { m_model.setRows(rowsOf(*m_database, m_source.plainSelect)); }

    // Values, as they will be read, for at least one of the fields except the table's key.
    Row fields(const QString &tableName)
    {
        const Table &table =
            schemaTables()[static_cast<std::size_t>(tableNumber(tableName.toStdString()))];
        Row row;
        for (const Field &field : table.fields) {
            if ((table.hasKey && &field == &*table.fields.begin()) || (!row.empty() && oneIn(6)))
                continue;
            QVariant value = qint64{below(field.type == FieldType::YesNo ? 2 : 6)};
            if (field.type == FieldType::Text)
                value = name();
            else if (field.type == FieldType::Number && oneIn(3))
                value = 2.5;
            row.insert(QString::fromLatin1(field.name), oneIn(12) ? QVariant() : value);
        }
        return row;
    }

    static void write(RecordCursor &cursor, const Row &fields)
    {
        for (auto field = fields.begin(); field != fields.end(); ++field)
            cursor.setValue(QLatin1StringView(field.key().toLatin1()), *field);
    }

    // The row as it is in the file; empty if there is none.
    Row stored(const QVariant &number)
    {
        return rowsOf(*m_database,
                      u"SELECT rowid AS \"#\", * FROM %1 WHERE rowid = %2"_s.arg(
                          m_source.tables.front(), number.toString()))
            .value(0);
    }

    QList<Row> contents()
    {
        return rowsOf(*m_database, u"SELECT rowid AS \"#\", * FROM "_s + m_source.tables.front());
    }

    void move()
    {
        switch (below(5)) {
        case 0:
            m_cursor.MoveFirst();
            m_model.moveTo(0);
            break;
        case 1:
            m_cursor.MoveLast();
            m_model.moveLast();
            break;
        case 2:
            check(works([&] { m_cursor.MovePrevious(); }) == m_model.movePrevious(), "Previous");
            break;
        default:
            check(works([&] { m_cursor.MoveNext(); }) == m_model.moveNext(), "MoveNext");
        }
    }

    void find()
    {
        const bool isKey = oneIn(4);
        const auto comparison = isKey || oneIn(2) ? Comparison::Equal : Comparison::Like;
        const qint64 key = below(6);
        const QString text =
            comparison == Comparison::Like ? oneOf({u"s*"_s, u"*E?"_s, u"5?"_s, name()}) : name();
        const QString field = isKey ? m_source.keyField : m_source.textField;
        const QByteArray column = field.toLatin1();
        const QString criteria = isKey ? criterion(QLatin1StringView(column), key)
                                       : criterion(QLatin1StringView(column), comparison, text);
        const auto matches = [&](const Row &row) {
            if (isKey || row[field].typeId() != QMetaType::QString)
                return isKey && row[field] == QVariant(key);
            const std::string cell = row[field].toString().toStdString();
            return comparison == Comparison::Equal ? textsEqual(cell, text.toStdString())
                                                   : textMatches(cell, text.toStdString());
        };
        for (unsigned times = 1 + below(5); times > 0; --times) {
            const bool fromStart = oneIn(3);
            fromStart ? m_cursor.FindFirst(criteria) : m_cursor.FindNext(criteria);
            m_model.find(fromStart, matches);
            m_model.compare(m_cursor);
        }
    }

    void add()
    {
        const Row written = fields(m_source.tables.front());
        m_cursor.AddNew();
        write(m_cursor, written);
        m_cursor.Update();
        m_wroteInTransaction = !m_transactions.empty();
        const Row row = stored(qint64{m_database->connection().getLastInsertRowid()});
        for (auto field = row.begin(); field != row.end(); ++field)
            check(*field == written[field.key()] || field.key() == u'#'
                      || field.key() == m_source.keyField,
                  "stored");
        m_model.add(row);
    }

    bool isInFile() { return m_model.isOnRow() && !stored(m_model.current()[u"#"_s]).empty(); }

    void edit()
    {
        const Row written = fields(m_source.tables.front());
        const bool expected = isInFile();
        const bool worked = works([&] {
            m_cursor.Edit();
            write(m_cursor, written);
            m_cursor.Update();
        });
        check(worked == expected, "Edit");
        m_wroteInTransaction |= m_model.isOnRow() && !m_transactions.empty();
        if (!worked)
            return;
        m_model.current().insert(written);
        const Row row = stored(m_model.current()[u"#"_s]);
        for (auto field = written.begin(); field != written.end(); ++field)
            check(row[field.key()] == *field, "stored");
    }

    void remove()
    {
        const bool expected = isInFile();
        check(works([&] { m_cursor.Delete(); }) == expected, "Delete");
        m_wroteInTransaction |= m_model.isOnRow() && !m_transactions.empty();
        check(!isInFile(), "deleted");
        if (expected)
            m_model.remove();
    }

    void writeElsewhere()
    {
        const QString table = oneOf(m_source.tables);
        if (m_transactions.empty() && oneIn(2)) {
            m_other.exec(statement(table).toStdString());
        } else {
            m_database->Execute(statement(table));
        }
    }

    QString statement(const QString &table)
    {
        if (oneIn(3))
            return u"DELETE FROM "_s + table
                + (oneIn(5) ? QString() : u" WHERE rowid % 7 = %1"_s.arg(below(7)));
        const Row row = fields(table);
        QStringList values;
        for (const QVariant &value : row)
            values += value.isValid() ? u'\'' + value.toString().replace(u'\'', u"''"_s) + u'\''
                                      : u"NULL"_s;
        if (oneIn(2))
            return u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(table, row.keys().join(u','),
                                                            values.join(u','));
        return u"UPDATE %1 SET %2 = %3 WHERE rowid = %4"_s.arg(
            table, row.firstKey(), values.front(), QString::number(1 + below(12)));
    }

    void begin()
    {
        if (m_transactions.size() == 3)
            return;
        m_transactions.push_back(std::make_unique<Transaction>(*m_database));
        m_contentsBefore.append(contents());
    }

    void end()
    {
        if (m_transactions.empty())
            return;
        const bool commits = oneIn(2);
        if (commits)
            m_transactions.back()->commit();
        m_transactions.pop_back();
        const QList<Row> found = m_contentsBefore.takeLast();
        check(commits || contents() == found, "rolled back");
        if (!commits && m_wroteInTransaction)
            readModel();
        if (m_transactions.empty())
            m_wroteInTransaction = false;
    }

    const Source m_source;
    std::mt19937 m_random;
    RecipeFile m_file;
    std::shared_ptr<Database> m_database;
    SQLite::Database m_other;
    RecordCursor m_cursor;
    CursorModel m_model;
    std::vector<std::unique_ptr<Transaction>> m_transactions;
    QList<QList<Row>> m_contentsBefore; // of the table, for each open transaction
    bool m_wroteInTransaction = false;
};

} // namespace

class tst_RecordCursor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithModel_data()
    {
        QTest::addColumn<Source>("source");
        const QString plain = u"SELECT rowid AS \"#\", * FROM %1 ORDER BY %2 rowid"_s;
        const QString utensils = u"Utensils"_s;
        const QString links = u"RecipeIngredients"_s;
        const QString ingredients = u"Ingredients"_s;
        QTest::newRow("table with a key") << Source{
            utensils, {utensils}, plain.arg(utensils, u""_s), u"UtensilName"_s, u"UtensilID"_s};
        QTest::newRow("table without a key")
            << Source{links, {links}, plain.arg(links, u""_s), u"Quantity"_s, u"IngredientID"_s};
        QTest::newRow("ordered table")
            << Source{u"Select * FROM Ingredients ORDER BY IngredientName"_s,
                      {ingredients},
                      plain.arg(ingredients, u"IngredientName COLLATE NOCASE,"_s),
                      u"IngredientName"_s,
                      u"IngredientID"_s};
        QTest::newRow("join") << Source{
            ingredientJoin,
            {links, ingredients},
            u"SELECT l.rowid AS \"#\", RecipeID, Quantity, IngredientName, Vegetarian FROM "
            "RecipeIngredients l JOIN Ingredients USING (IngredientID) ORDER BY +l.rowid"_s,
            u"IngredientName"_s,
            u"RecipeID"_s};
        QTest::newRow("grouped rows") << Source{
            recipeList,
            {links, u"Recipes"_s},
            u"SELECT RecipeID AS \"#\", RecipeID, RecipeName, Serves, (SELECT count(*) FROM "
            "RecipeIngredients l WHERE l.RecipeID = r.RecipeID) AS Count "
            "FROM Recipes r ORDER BY RecipeType, RecipeName COLLATE NOCASE, RecipeID"_s,
            u"RecipeName"_s,
            u"RecipeID"_s};
    }

    void agreesWithModel()
    {
        QFETCH(Source, source);
        const unsigned firstSeed = randomSeed();
        for (unsigned seed = firstSeed; seed < firstSeed + 15; ++seed) {
            RandomWalk walk(source, seed);
            for (int step = 0; step < 300; ++step) {
                try {
                    walk.step();
                } catch (const std::exception &error) {
                    QFAIL(qPrintable(
                        u"PANTRYWISE_TEST_SEED=%1, step %2: %3"_s.arg(seed).arg(step).arg(
                            QString::fromUtf8(error.what()))));
                }
            }
            QVERIFY2(walk.isSound(), qPrintable(u"PANTRYWISE_TEST_SEED=%1"_s.arg(seed)));
        }
    }

    void readsAgainOnlyAfterChanges_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<Change>("change");
        QTest::addColumn<bool>("readsAgain");
        const QString table = u"Utensils"_s;
        const QString ordered = u"SELECT * FROM Utensils ORDER BY UtensilName"_s;
        const Change add = [](RecordCursor &cursor, Database &, const RecipeFile &) {
            cursor.AddNew();
            cursor.setValue("UtensilName"_L1, u"Pot"_s);
            cursor.Update();
        };
        const auto execute = [](const QString &statement) -> Change {
            return [statement](RecordCursor &, Database &database, const RecipeFile &) {
                database.Execute(statement);
            };
        };
        const auto roll = [](const Change &change) -> Change {
            return [change](RecordCursor &cursor, Database &database, const RecipeFile &file) {
                const Transaction transaction(database);
                change(cursor, database, file);
            };
        };
        const Change nothing = [](RecordCursor &, Database &, const RecipeFile &) {};
        const Change otherProgram = [](RecordCursor &, Database &, const RecipeFile &file) {
            file.write(u"INSERT INTO Recipes DEFAULT VALUES"_s);
        };
        const Change remove = [](RecordCursor &cursor, Database &, const RecipeFile &) {
            cursor.MoveFirst();
            cursor.Delete();
        };
        QTest::newRow("no change") << table << nothing << false;
        QTest::newRow("row added to a table") << table << add << false;
        QTest::newRow("row added to ordered rows") << ordered << add << true;
        QTest::newRow("row deleted") << table << remove << true;
        QTest::newRow("statement on the table")
            << table << execute(u"DELETE FROM Utensils"_s) << true;
        QTest::newRow("statement on another table")
            << table << execute(u"INSERT INTO Recipes DEFAULT VALUES"_s) << false;
        QTest::newRow("rollback of a row added") << table << roll(add) << true;
        QTest::newRow("rollback of a statement")
            << table << roll(execute(u"DELETE FROM Utensils"_s)) << true;
        QTest::newRow("another program") << table << otherProgram << true;
    }

    void readsAgainOnlyAfterChanges()
    {
        QFETCH(QString, source);
        QFETCH(Change, change);
        QFETCH(bool, readsAgain);
        const RecipeFile file;
        file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pan')"_s);
        const auto database = Database::open(file.path());
        RecordCursor cursor(database, source);
        QCOMPARE(cursor.rows().generation(), 1);
        change(cursor, *database, file);
        cursor.Requery();
        QCOMPARE(cursor.rows().generation(), readsAgain ? 2 : 1);
    }

    // Another program replaces the table by one with its fields in another order and one field
    // more. What it does before the first operation that needs a row is seen.
    void seesOtherTables()
    {
        const RecipeFile file;
        const QString source = u"Utensils"_s;
        RecordCursor cursor(Database::open(file.path()), source);
        file.write(u"DROP TABLE Utensils; CREATE TABLE Utensils (Note INTEGER, UtensilName TEXT "
                   "COLLATE NOCASE, UtensilID INTEGER PRIMARY KEY); "
                   "INSERT INTO Utensils VALUES (1, 'Pan', 7)"_s);
        cursor.Edit();
        cursor.setValue("UtensilName"_L1, u"\uFEFFPot"_s);
        cursor.Update();
        QCOMPARE(cursor.value("UtensilName"_L1), QVariant(u"\uFEFFPot"_s));
        QCOMPARE(cursor.value("Note"_L1), QVariant(qint64{1}));
        QCOMPARE(file.stored("SELECT Note, UtensilID FROM Utensils"), u"1|7"_s);
    }

    void failsWithText_data()
    {
        QTest::addColumn<Operation>("operation");
        QTest::addColumn<QStringList>("parts");
        const auto row = [](const char *name, const Operation &operation,
                            const QStringList &parts) {
            QTest::newRow(name) << operation << parts;
        };
        const QString table = u"Ingredients"_s;
        row("value without a current row",
            [](auto &cursor, auto &) { cursor.value("ShelfLife"_L1); }, {table});
        row("Update without a buffer", [](auto &cursor, auto &) { cursor.Update(); }, {table});
        row("Update after a move",
            [](auto &cursor, auto &) {
                cursor.AddNew();
                cursor.MoveFirst();
                cursor.Update();
            },
            {table});
        row("setValue without a buffer",
            [](auto &cursor, auto &) { cursor.setValue("ShelfLife"_L1, 1); },
            {u"ShelfLife"_s, table});
        row("text in a number field",
            [](auto &cursor, auto &) {
                cursor.AddNew();
                cursor.setValue("ShelfLife"_L1, u"a lot"_s);
            },
            {u"ShelfLife"_s, u"a lot"_s});
        row("criterion with an unknown field",
            [](auto &cursor, auto &) { cursor.FindFirst(u"Nme = 1"_s); }, {u"Nme"_s, table});
        row("AddNew in grouped rows",
            [](auto &, auto &database) { RecordCursor(database, recipeList).AddNew(); },
            {recipeList});
        for (const QString &source : {u"Nowhere"_s, u"DELETE FROM Recipes"_s})
            row(qPrintable(u"source: "_s + source),
                [source](auto &, auto &database) { RecordCursor(database, source); }, {source});
    }

    void failsWithText()
    {
        QFETCH(Operation, operation);
        QFETCH(QStringList, parts);
        const RecipeFile file;
        const auto database = Database::open(file.path());
        const QString table = u"Ingredients"_s;
        RecordCursor cursor(database, table);
        const QString failure = failureOf([&] { operation(cursor, database); });
        for (const QString &part : parts)
            QVERIFY2(failure.contains(part), qUtf8Printable(failure + u" lacks "_s + part));
    }

    void rejectsCriterion_data()
    {
        QTest::addColumn<QString>("criterion");
        QTest::newRow("empty") << u""_s;
        for (const QString &bad :
             {u"N"_s, u"N ="_s, u"N 'a'"_s, u"N == 'a'"_s, u"NLIKE 'a'"_s, u"N LIKE 5"_s, u"N='a"_s,
              u"N='a'b'"_s, u"N='a''"_s, u"N=\"a\""_s, u"N=5x"_s, u"N=-"_s, u"N=5.0"_s,
              u"N=99999999999999999999"_s, u"T.N=5"_s, u"N=5 AND N=6"_s})
            QTest::newRow(qPrintable(bad)) << bad;
    }

    void rejectsCriterion()
    {
        QFETCH(QString, criterion);
        const RecipeFile file;
        const QString table = u"Ingredients"_s;
        RecordCursor cursor(Database::open(file.path()), table);
        QVERIFY(failureOf([&] { cursor.FindFirst(criterion); }).endsWith(u": "_s + criterion));
    }

    // A new source is used from the next requery on, and only if the database accepts it.
    void changesSource()
    {
        const RecipeFile file;
        QString source = u"Ingredients"_s;
        RecordCursor cursor(Database::open(file.path()), source);
        source = u"Nowhere"_s;
        cursor.AddNew();
        cursor.Update();
        QVERIFY(!failureOf([&] { cursor.Requery(); }).isNull());
        QCOMPARE(cursor.RecordCount(), 1);
        source = u"Utensils"_s;
        cursor.Requery();
        QCOMPARE(cursor.RecordCount(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_RecordCursor)
#include "tst_recordcursor.moc"
