#include "data/Criterion.h"
#include "data/RecordCursor.h"
#include "data/TextComparison.h"
#include "support/FileBytes.h"
#include "support/RandomSeed.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

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

// The values of a row by field name; "#" is its rowid.
using Row = QVariantMap;

// Reads rows with plain SQL on the program's connection, so that changes in an open transaction
// show.
QList<Row> rowsOf(Database &database, const QString &select)
{
    QList<Row> rows;
    SQLite::Statement statement(database.connection(), select.toStdString());
    while (statement.executeStep()) {
        Row row;
        for (int i = 0; i < statement.getColumnCount(); ++i) {
            const SQLite::Column column = statement.getColumn(i);
            QVariant &value = row[QString::fromLatin1(column.getName())];
            if (column.isInteger())
                value = qint64{column.getInt64()};
            else if (column.isFloat())
                value = column.getDouble();
            else if (column.isText())
                value = QString::fromStdString(column.getString());
        }
        rows.append(row);
    }
    return rows;
}

void check(bool holds, const char *what)
{
    if (!holds)
        throw std::runtime_error(what);
}

struct Source {
    QString text;
    QStringList tables; // the one that the cursor can write, or those that it only reads
    QString plainSelect; // selects the same rows in another way
    QString textField;
    QString keyField;
};

// Random operations on a cursor and on a list of rows with a position, with writes that bypass the
// cursor: in the same program, in another one and in transactions that are rolled back.
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
        compare();
    }

    // As seen by a program whose NOCASE folds only ASCII.
    bool isSound() { return m_other.execAndGet("PRAGMA integrity_check").getString() == "ok"; }

    // One random step; throws if the cursor differs from the list.
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
            readRows();
            // The next operation may find rows that have not been read.
            isUpdatable && !m_rows.empty() && oneIn(2) ? add() : oneIn(2) ? move() : find();
        } else if (kind == 10) {
            writeElsewhere();
        } else {
            oneIn(2) ? begin() : end();
        }
        compare();
    }

private:
    static std::shared_ptr<Database> opened(const TestDatabase &file)
    {
        file.write(QString::fromLatin1(joinsBeginWithCatalog));
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

    bool isOnRow() const { return m_at % 2 == 1; }
    Row &current() { return m_rows[m_at / 2]; }
    qsizetype nextRow() const
    {
        return m_at == before ? 0 : m_at == after ? m_rows.size() : (m_at + 1) / 2;
    }
    void moveTo(qsizetype row)
    {
        m_at = m_rows.empty() || row >= m_rows.size() ? after : row < 0 ? before : 2 * row + 1;
    }

    void readRows()
    {
        m_rows = rowsOf(*m_database, m_source.plainSelect);
        moveTo(0);
    }

    void compare()
    {
        check(m_cursor.AtBOF() == (m_rows.empty() || m_at == before), "BOF");
        check(m_cursor.AtEOF() == (m_rows.empty() || m_at == after), "EOF");
        check(m_cursor.RecordCount() == m_rows.size(), "RecordCount");
        check(m_cursor.NoMatch() == m_noMatch, "NoMatch");
        const Row row = isOnRow() ? current() : Row();
        for (auto field = row.begin(); field != row.end(); ++field) {
            if (field.key() == u'#')
                continue;
            const QVariant value = m_cursor.value(QLatin1StringView(field.key().toLatin1()));
            check(value == *field && value.typeId() == field->typeId(), "value");
        }
    }

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

    void update(const Row &fields)
    {
        for (auto field = fields.begin(); field != fields.end(); ++field)
            m_cursor.setValue(QLatin1StringView(field.key().toLatin1()), *field);
        m_cursor.Update();
    }

    // The rows of the table as they are in the file.
    QList<Row> contents(const QString &condition = u"true"_s)
    {
        return rowsOf(
            *m_database,
            u"SELECT rowid AS \"#\", * FROM %1 WHERE %2"_s.arg(m_source.tables.front(), condition));
    }
    Row stored(qint64 rowid) { return contents(u"rowid = %1"_s.arg(rowid)).value(0); }
    bool readsLongTexts() const { return m_source.textField == "Instructions"_L1; }
    bool isInFile() { return isOnRow() && !stored(current()[u"#"_s].toLongLong()).empty(); }

    void move()
    {
        const unsigned kind = below(5);
        if (kind == 0) {
            m_cursor.MoveFirst();
            moveTo(0);
        } else if (kind == 1) {
            m_cursor.MoveLast();
            moveTo(m_rows.size() - 1);
        } else if (kind == 2) {
            const bool moves = !m_rows.empty() && m_at != before;
            check(works([&] { m_cursor.MovePrevious(); }) == moves, "MovePrevious");
            if (moves)
                moveTo((m_at == after ? m_rows.size() : m_at / 2) - 1);
        } else {
            const bool moves = !m_rows.empty() && m_at != after;
            check(works([&] { m_cursor.MoveNext(); }) == moves, "MoveNext");
            if (moves)
                moveTo(nextRow());
        }
    }

    void find()
    {
        const bool isKey = oneIn(4);
        const auto comparison = isKey || oneIn(2) ? Comparison::Equal : Comparison::Like;
        const qint64 key = qint64{below(7)} - 1;
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
        for (unsigned times = 1 + below(8); times > 0; --times) {
            const bool fromStart = oneIn(3);
            fromStart ? m_cursor.FindFirst(criteria) : m_cursor.FindNext(criteria);
            const auto from = m_rows.begin() + (fromStart ? 0 : nextRow());
            const auto found = std::find_if(from, m_rows.end(), matches);
            m_noMatch = found == m_rows.end();
            if (!m_noMatch)
                moveTo(found - m_rows.begin());
            compare();
        }
    }

    void add()
    {
        const Row written = fields(m_source.tables.front());
        m_cursor.AddNew();
        update(written);
        m_wroteInTransaction = !m_transactions.empty();
        const Row row = stored(m_database->connection().getLastInsertRowid());
        for (auto field = row.begin(); field != row.end(); ++field)
            check(*field == written[field.key()] || field.key() == u'#'
                      || field.key() == m_source.keyField,
                  "stored");
        m_rows.append(row);
    }

    void edit()
    {
        const Row written = fields(m_source.tables.front());
        const bool expected = isInFile();
        const bool worked = works([&] {
            m_cursor.Edit();
            update(written);
        });
        check(worked == expected, "Edit");
        m_wroteInTransaction |= isOnRow() && !m_transactions.empty();
        if (worked) {
            current().insert(written);
            const Row row = stored(current()[u"#"_s].toLongLong());
            for (auto field = written.begin(); field != written.end(); ++field)
                check(row[field.key()] == *field, "stored");
        }
    }

    void remove()
    {
        const bool expected = isInFile();
        check(works([&] { m_cursor.Delete(); }) == expected, "Delete");
        m_wroteInTransaction |= isOnRow() && !m_transactions.empty();
        check(!isInFile(), "deleted");
        if (expected)
            m_rows.removeAt(m_at-- / 2);
    }

    void writeElsewhere()
    {
        const QString text = statement(oneOf(m_source.tables));
        // What another program writes into a long text shows before the next requery.
        if (m_transactions.empty() && !readsLongTexts() && oneIn(2))
            m_other.exec(text.toStdString());
        else
            m_database->Execute(text);
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
        const QString names = row.keys().join(u',');
        return oneIn(2) ? u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(table, names, values.join(u','))
                        : u"UPDATE %1 SET (%2) = (%3) WHERE rowid = %4"_s.arg(
                            table, names, values.join(u','), QString::number(1 + below(12)));
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
        if (!commits && readsLongTexts())
            m_cursor.Requery(); // it may hold rows that have been rolled back
        if (!commits && (m_wroteInTransaction || readsLongTexts()))
            readRows();
        if (m_transactions.empty())
            m_wroteInTransaction = false;
    }

    const Source m_source;
    std::mt19937 m_random;
    TestDatabase m_file;
    std::shared_ptr<Database> m_database;
    SQLite::Database m_other;
    RecordCursor m_cursor;
    QList<Row> m_rows; // what the cursor must show
    static constexpr qsizetype before = -2;
    static constexpr qsizetype after = 1 << 20;
    qsizetype m_at = after; // 2n + 1 is on row n, 2n before it if the row there was deleted
    bool m_noMatch = false;
    std::vector<std::unique_ptr<Transaction>> m_transactions;
    QList<QList<Row>> m_contentsBefore; // of the table, for each open transaction
    bool m_wroteInTransaction = false;
};

void perform(RecordCursor &cursor, const QString &operation)
{
    if (operation == "AddNew"_L1)
        cursor.AddNew();
    else if (operation == "Update"_L1)
        cursor.Update();
    else if (operation == "MoveFirst"_L1)
        cursor.MoveFirst();
    else if (operation == "MoveLast"_L1)
        cursor.MoveLast();
    else if (operation == "Edit"_L1)
        cursor.Edit();
    else if (operation == "Delete"_L1)
        cursor.Delete();
    else if (operation == "RecordCount"_L1)
        cursor.RecordCount();
    else if (operation == "value"_L1)
        cursor.value("ShelfLife"_L1);
    else if (operation == "setValue"_L1)
        cursor.setValue("ShelfLife"_L1, u"much"_s);
    else
        cursor.FindFirst(operation);
}

// Performs the operations. One that has none of these names is a criterion to find.
void perform(RecordCursor &cursor, const QStringList &operations)
{
    for (const QString &operation : operations)
        perform(cursor, operation);
}

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
        const QString recipes = u"Recipes"_s;
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
        QTest::newRow("long texts")
            << Source{u"SELECT * FROM Recipes ORDER BY RecipeType, RecipeName"_s,
                      {recipes},
                      plain.arg(recipes, u"RecipeType, RecipeName COLLATE NOCASE,"_s),
                      u"Instructions"_s,
                      u"RecipeID"_s};
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

    // RowStore stores an integer in as many bytes as it needs, and the length of a text in one byte
    // or in four.
    void readsAnyValue_data()
    {
        QTest::addColumn<QVariant>("value");
        for (const qint64 edge : {qint64{1} << 7, qint64{1} << 15, qint64{1} << 31}) {
            for (const qint64 value : {-edge - 1, -edge, edge - 1, edge})
                QTest::addRow("%lld", value) << QVariant(value);
        }
        for (const int length : {0, 1, 255, 256, 65536, 100'000}) {
            QTest::addRow("text of %d bytes", length) << QVariant(QString(length, u'x'));
            QTest::addRow("blob of %d bytes", length) << QVariant(QByteArray(length, '\xff'));
        }
        QTest::newRow("null") << QVariant();
        QTest::newRow("fraction") << QVariant(-0.1);
    }

    void readsAnyValue()
    {
        QFETCH(QVariant, value);
        const TestDatabase file;
        const QByteArray bytes = value.toByteArray();
        const QByteArray literal = !value.isValid()   ? "NULL"
            : value.typeId() == QMetaType::QString    ? '\'' + bytes + '\''
            : value.typeId() == QMetaType::QByteArray ? "X'" + bytes.toHex() + '\''
                                                      : bytes;
        file.write(u"INSERT INTO Ingredients VALUES (7, 'a', 3, %1, 1)"_s.arg(
            QString::fromLatin1(literal)));
        const QString source = u"Ingredients"_s;
        RecordCursor cursor(Database::open(file.path()), source);
        for (const QString &name : {u"a"_s, u"b"_s}) {
            QCOMPARE(cursor.value("IngredientName"_L1), QVariant(name));
            QCOMPARE(cursor.value("ShelfLife"_L1), value);
            QCOMPARE(cursor.value("ShelfLife"_L1).typeId(), value.typeId());
            QCOMPARE(cursor.value("Vegetarian"_L1), QVariant(qint64{1}));
            cursor.Edit();
            cursor.setValue("IngredientName"_L1, u"b"_s);
            cursor.Update();
        }
    }

    // The random walk sees whether a requery reads again after all other changes.
    void readsAgainOnlyAfterChanges()
    {
        const TestDatabase file;
        const auto database = Database::open(file.path());
        const QString source = u"Utensils"_s;
        RecordCursor cursor(database, source);
        QCOMPARE(cursor.RecordCount(), 0);
        cursor.AddNew();
        cursor.Update();
        database->Execute(u"INSERT INTO Recipes DEFAULT VALUES"_s);
        cursor.Requery();
        QCOMPARE(cursor.RecordCount(), 1);
        QCOMPARE(cursor.rows().generation(), 1);
    }

    // Another program replaces the table by one with its fields in another order and one field
    // more. What it does before the first operation that needs a row is seen.
    void seesOtherTables()
    {
        const TestDatabase file;
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

    // A cursor is brought into a state. Then another program makes the table again, with its fields
    // in another order, one more and one less. What cannot be done any more fails as often as it is
    // tried, and changes nothing; the cursor sees the new table after a requery.
    void refusesOtherFields_data()
    {
        const QStringList adding{u"AddNew"_s};
        const QStringList added{u"AddNew"_s, u"Update"_s};
        const QStringList onAdded = added + QStringList{u"MoveLast"_s};
        const QStringList editing = onAdded + QStringList{u"Edit"_s};
        const QStringList read{u"MoveFirst"_s};
        const QStringList readAndAdding{u"MoveFirst"_s, u"AddNew"_s};
        const QStringList readAndEditing{u"MoveFirst"_s, u"Edit"_s};
        // The state and the operation that fails.
        QList<std::tuple<QByteArray, QStringList, QString>> rows;
        const auto add = [&rows](const QStringList &state, const QStringList &operations) {
            for (const QString &operation : operations)
                rows.append({(state.join(u' ') + u", "_s + operation).toUtf8(), state, operation});
        };
        const QStringList reading{u"RecordCount"_s, u"MoveFirst"_s, u"ShelfLife = 5"_s};
        add(adding, reading + QStringList{u"value"_s, u"Update"_s});
        add(added, reading + QStringList{u"value"_s});
        add(onAdded, reading + QStringList{u"Delete"_s});
        add(editing, reading + QStringList{u"Update"_s});
        add(read, {u"Delete"_s});
        add(readAndAdding, {u"Update"_s});
        add(readAndEditing, {u"Update"_s});
        addRows(rows);
    }

    void refusesOtherFields()
    {
        const auto [state, operation] = fetchRow<QStringList, QString>();
        const TestDatabase file;
        file.write(u"INSERT INTO Ingredients (ShelfLife) VALUES (1), (2)"_s);
        const QString source = u"Ingredients"_s;
        RecordCursor cursor(Database::open(file.path()), source);
        perform(cursor, state);
        if (state.endsWith(u"Edit"_s) || operation == "Update"_L1)
            cursor.setValue("ShelfLife"_L1, 7);
        file.write(u"DROP TABLE Ingredients; CREATE TABLE Ingredients (Vegetarian INTEGER, "
                   "IngredientType INTEGER, Note TEXT, ShelfLife NUMERIC, Price INTEGER, "
                   "IngredientName TEXT COLLATE NOCASE, IngredientID INTEGER PRIMARY KEY, Shop "
                   "INTEGER); INSERT INTO Ingredients VALUES (1, 2, 'n', 5, 6, 'a', 8, 9)"_s);
        for (int i = 0; i < 2; ++i) {
            const QString failure =
                failureOf([&, &operation = operation] { perform(cursor, operation); });
            QVERIFY2(failure.contains(u"Another program has changed the tables"_s)
                         || (i == 1 && failure.startsWith(u"No row is being"_s)),
                     qUtf8Printable(failure));
        }
        QCOMPARE(file.stored("SELECT * FROM Ingredients"), u"1|2|n|5|6|a|8|9"_s);
        cursor.Requery();
        cursor.Edit();
        cursor.setValue("Note"_L1, u"new"_s);
        cursor.Update();
        cursor.AddNew();
        cursor.setValue("Shop"_L1, u"x"_s);
        cursor.Update();
        QCOMPARE(file.stored("SELECT * FROM Ingredients"),
                 u"1|2|new|5|6|a|8|9, null|null|null|null|null|null|9|x"_s);
        QCOMPARE(cursor.RecordCount(), 2);
    }

    // A page of the table is damaged for some time, and each operation that needs all rows fails.
    void failsAsLongAsRowsCannotBeRead()
    {
        const TestDatabase file;
        file.write(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 100) "
                   "INSERT INTO Utensils (UtensilName) SELECT hex(zeroblob(500)) FROM n"_s);
        const int at = 4096
            * (file.stored("SELECT pageno - 1 FROM dbstat WHERE name = 'Utensils' "
                           "ORDER BY path LIMIT 1 OFFSET 5")
                   .toInt());
        const QByteArray sound = bytesOf(file.path()).mid(at, 4096);
        const auto setPage = [&file, at](const QByteArray &page) {
            setBytes(file.path(), bytesOf(file.path()).replace(at, page.size(), page));
            file.write(u"INSERT INTO Recipes DEFAULT VALUES"_s); // outdates the cached pages
        };

        const QString source = u"Utensils"_s;
        RecordCursor cursor(Database::open(file.path()), source);
        QCOMPARE(cursor.RecordCount(), 100);
        RecordCursor onAdded(Database::open(file.path()), source);
        perform(onAdded, {u"AddNew"_s, u"Update"_s, u"AddNew"_s, u"Update"_s, u"MoveLast"_s});
        setPage(QByteArray(4096, 'U'));
        cursor.Requery();
        for (int times = 0; times < 2; ++times) {
            for (const QString &operation : {u"RecordCount"_s, u"MoveFirst"_s, u"MoveLast"_s,
                                             u"value"_s, u"Edit"_s, u"UtensilID = 5"_s})
                QVERIFY(failureOf([&] { perform(cursor, operation); }).contains(u"is damaged"_s));
            QVERIFY(failureOf([&] { onAdded.AtBOF(); }).contains(u"is damaged"_s));
            QCOMPARE(onAdded.value("UtensilID"_L1), QVariant(qint64{102}));
        }
        setPage(sound);
        QCOMPARE(cursor.RecordCount(), 102);
        QCOMPARE(onAdded.RecordCount(), 102);
        QCOMPARE(onAdded.value("UtensilID"_L1), QVariant(qint64{102}));
    }

    void failsWithText_data()
    {
        const QString table = u"Ingredients"_s;
        // The source, the operations, and what the text must contain.
        QList<std::tuple<QByteArray, QString, QStringList, QStringList>> rows{
            {"value without a current row", table, {u"value"_s}, {table}},
            {"Update without a buffer", table, {u"Update"_s}, {table}},
            {"Update after a move", table, {u"AddNew"_s, u"MoveFirst"_s, u"Update"_s}, {table}},
            {"setValue without a buffer", table, {u"setValue"_s}, {u"ShelfLife"_s, table}},
            {"text in a number field",
             table,
             {u"AddNew"_s, u"setValue"_s},
             {u"ShelfLife"_s, u"much"_s}},
            {"criterion with an unknown field", table, {u"Nme = 1"_s}, {u"Nme"_s, table}},
            {"AddNew in grouped rows", recipeList, {u"AddNew"_s}, {recipeList}},
            {"source that does not exist", u"Nowhere"_s, {}, {u"Nowhere"_s}},
            {"source that writes", u"DELETE FROM Recipes"_s, {}, {u"DELETE FROM Recipes"_s}},
        };
        for (const QString &bad :
             {u""_s, u"N"_s, u"N ="_s, u"N 'a'"_s, u"N == 'a'"_s, u"NLIKE 'a'"_s, u"N LIKE 5"_s,
              u"N='a"_s, u"N='a'b'"_s, u"N='a''"_s, u"N=\"a\""_s, u"N=5x"_s, u"N=-"_s, u"N=5.0"_s,
              u"N=99999999999999999999"_s, u"T.N=5"_s, u"N=5 AND N=6"_s})
            rows.append({"criterion: " + bad.toUtf8(), table, {bad}, {u": "_s + bad}});
        addRows(rows);
    }

    void failsWithText()
    {
        const auto [source, operations, parts] = fetchRow<QString, QStringList, QStringList>();
        const TestDatabase file;
        const auto database = Database::open(file.path());
        const QString failure = failureOf([&, &source = source, &operations = operations] {
            RecordCursor cursor(database, source);
            perform(cursor, operations);
        });
        for (const QString &part : parts)
            QVERIFY2(failure.contains(part), qUtf8Printable(failure + u" lacks "_s + part));
    }

    // A new source is used from the next requery on, and only if the database accepts it.
    void changesSource()
    {
        const TestDatabase file;
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
