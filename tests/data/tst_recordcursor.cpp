#include "Criterion.h"
#include "CursorModel.h"
#include "RecipeFile.h"
#include "TextComparison.h"
#include "Transaction.h"

#include <QTest>

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString ingredientJoin =
    u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, Ingredients.IngredientName, "
    "Ingredients.Vegetarian FROM Ingredients INNER JOIN RecipeIngredients "
    "ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s;
const QString recipeList =
    u"SELECT Recipes.RecipeID, Recipes.RecipeName, Recipes.Description, Recipes.Serves, "
    "Count(RecipeIngredients.RecipeID) AS CountOfRecipeID FROM Recipes LEFT JOIN RecipeIngredients "
    "ON Recipes.RecipeID = RecipeIngredients.RecipeID GROUP BY Recipes.RecipeID, "
    "Recipes.RecipeType, Recipes.RecipeName, Recipes.Description, Recipes.Serves "
    "ORDER BY RecipeType, RecipeName"_s;

struct Source {
    QString text;
    QStringList tables; // one that is written through the cursor too, or those that it reads
    QString plainSelect; // the same rows, asked for in another way
    QString textField;
    QString keyField;
};

// Plays the cursor, its model, a second cursor and another program against each other.
class Game
{
public:
    Game(const Source &source, unsigned seed)
        : m_source(source)
        , m_random(seed)
        , m_database(Database::open(m_file.path()))
        , m_other(m_file.other())
        , m_cursor(m_database, m_source.text)
    {
        for (SQLite::Database *connection : {&m_database->connection(), &m_other})
            connection->exec("PRAGMA synchronous = OFF"); // ten times as many steps in the time
        m_model.compare(m_cursor);
    }

    // With the other program's eyes, which folds ASCII alone.
    bool isSound() { return m_other.execAndGet("PRAGMA integrity_check").getString() == "ok"; }

    // One random step; throws where cursor and model have come apart.
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
            takeRows();
            // What comes next meets rows that have not been read.
            isUpdatable && !m_model.isEmpty() && oneIn(2) ? add() : oneIn(2) ? move() : find();
        } else if (kind == 10) {
            writeBesides();
        } else {
            oneIn(2) ? begin() : end();
        }
        m_model.compare(m_cursor);
    }

private:
    unsigned below(unsigned end) { return static_cast<unsigned>(m_random() % end); }
    bool oneIn(unsigned count) { return below(count) == 0; }
    QString oneOf(const QStringList &texts)
    {
        return texts[static_cast<int>(below(static_cast<unsigned>(texts.size())))];
    }

    QString name()
    {
        return oneOf({u"Salt"_s, u"SALT"_s, u"Salted"_s, u"O'Neil's"_s, u"5?"_s, u"É"_s, u"é"_s,
                      u"ß"_s, u"ẞ"_s, u"ς"_s, u"Σ"_s, u""_s, u"🍲"_s, u"x"_s.repeated(300)});
    }

    template <typename Action>
    static bool works(Action action)
    {
        return failureOf(action).isNull();
    }

    void takeRows() { m_model.take(rowsOf(*m_database, m_source.plainSelect)); }

    // Values as they come back, for some of the fields, at least one, that are not the table's own
    // key.
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

    // The row of the file, or an empty one.
    Row stored(const QVariant &number)
    {
        return rowsOf(*m_database,
                      u"SELECT rowid AS \"#\", * FROM %1 WHERE rowid = %2"_s.arg(
                          m_source.tables.front(), number.toString()))
            .value(0);
    }

    QList<QList<Row>> contents()
    {
        QList<QList<Row>> all;
        for (const QString &table : m_source.tables)
            all += rowsOf(*m_database, u"SELECT rowid AS \"#\", * FROM "_s + table);
        return all;
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
        if (oneIn(8))
            m_cursor.AtEOF(); // looking does not drop the buffer
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

    void writeBesides()
    {
        const QString table = oneOf(m_source.tables);
        if (m_transactions.empty() && oneIn(2)) {
            m_other.exec(statement(table).toStdString());
        } else if (oneIn(2)) {
            m_database->Execute(statement(table));
        } else {
            RecordCursor cursor(m_database, table);
            cursor.AddNew();
            write(cursor, fields(table));
            cursor.Update();
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
        m_found.append(contents());
    }

    void end()
    {
        if (m_transactions.empty())
            return;
        const bool commits = oneIn(2);
        if (commits)
            m_transactions.back()->commit();
        m_transactions.pop_back();
        const QList<QList<Row>> found = m_found.takeLast();
        check(commits || contents() == found, "rolled back");
        if (!commits && m_wroteInTransaction)
            takeRows();
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
    QList<QList<QList<Row>>> m_found; // what each of them found in the file
    bool m_wroteInTransaction = false;
};

} // namespace

class TestRecordCursor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithModel_data();
    void agreesWithModel();
    void readsLate();
    void seesOtherTables();
    void complains();
    void keepsTheOrderOfLinkRows();
};

void TestRecordCursor::agreesWithModel_data()
{
    QTest::addColumn<Source>("source");
    const QString plain = u"SELECT rowid AS \"#\", * FROM %1 ORDER BY %2 rowid"_s;
    const QString links = u"RecipeIngredients"_s;
    Source source{u"Utensils"_s, {u"Utensils"_s}, {}, u"UtensilName"_s, u"UtensilID"_s};
    source.plainSelect = plain.arg(source.text, QString());
    QTest::newRow("table with a key") << source;

    source = {links, {links}, plain.arg(links, QString()), u"Quantity"_s, u"IngredientID"_s};
    QTest::newRow("table without a key") << source;

    source = {u"Select * FROM Ingredients ORDER BY IngredientName"_s,
              {u"Ingredients"_s},
              plain.arg(u"Ingredients"_s, u"IngredientName COLLATE NOCASE,"_s),
              u"IngredientName"_s,
              u"IngredientID"_s};
    QTest::newRow("ordered") << source;

    source = {ingredientJoin, {links, u"Ingredients"_s}, {}, u"IngredientName"_s, u"RecipeID"_s};
    source.plainSelect =
        u"SELECT l.rowid AS \"#\", RecipeID, Quantity, IngredientName, Vegetarian FROM "
        "RecipeIngredients l JOIN Ingredients USING (IngredientID) ORDER BY +l.rowid"_s;
    QTest::newRow("join") << source;

    source = {recipeList, {links, u"Recipes"_s}, {}, u"RecipeName"_s, u"RecipeID"_s};
    source.plainSelect =
        u"SELECT RecipeID AS \"#\", RecipeID, RecipeName, Description, Serves,"
        "(SELECT count(*) FROM RecipeIngredients l WHERE l.RecipeID = r.RecipeID) AS "
        "CountOfRecipeID FROM Recipes r ORDER BY RecipeType, RecipeName COLLATE NOCASE, RecipeID"_s;
    QTest::newRow("grouped list") << source;
}

void TestRecordCursor::agreesWithModel()
{
    QFETCH(const Source, source);
    const unsigned firstSeed = std::random_device{}();
    for (unsigned seed = firstSeed; seed != firstSeed + 15; ++seed) {
        Game game(source, seed);
        for (int step = 0; step < 300; ++step) {
            try {
                game.step();
            } catch (const std::exception &error) {
                QFAIL(qPrintable(u"seed %1, step %2: %3"_s.arg(seed).arg(step).arg(
                    QString::fromUtf8(error.what()))));
            }
        }
        QVERIFY(game.isSound());
    }
}

// A cursor that is opened, requeried and only adds asks nothing of the file but its tables.
void TestRecordCursor::readsLate()
{
    const RecipeFile file;
    file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Pan')"_s);
    const QString source = u"SELECT * FROM Utensils ORDER BY UtensilName"_s;
    RecordCursor cursor(Database::open(file.path()), source);
    file.write(u"INSERT INTO Utensils (UtensilName) VALUES ('Bowl')"_s);
    QCOMPARE(cursor.value("UtensilName"_L1), u"Bowl"_s);

    file.write(u"UPDATE Utensils SET UtensilName = 'Fork' WHERE UtensilID = 1"_s);
    cursor.Requery();
    cursor.AddNew();
    cursor.setValue("UtensilName"_L1, u"\uFEFFAxe"_s);
    cursor.Update();
    cursor.MoveLast();
    QCOMPARE(cursor.value("UtensilName"_L1), u"\uFEFFAxe"_s);
    file.write(u"UPDATE Utensils SET UtensilName = 'Cup' WHERE UtensilID = 1"_s);
    cursor.MovePrevious();
    QCOMPARE(cursor.value("UtensilName"_L1), u"Cup"_s);
}

// Another program makes the table anew, with its fields in another order and one more.
void TestRecordCursor::seesOtherTables()
{
    const RecipeFile file;
    const QString source = u"Utensils"_s;
    const std::shared_ptr<Database> database = Database::open(file.path());
    RecordCursor cursor(database, source);
    for (const int note : {1, 2}) {
        file.write(u"DROP TABLE Utensils; CREATE TABLE Utensils (Note INTEGER, UtensilName TEXT "
                   "COLLATE NOCASE, UtensilID INTEGER PRIMARY KEY); "
                   "INSERT INTO Utensils VALUES (%1, 'Pan', 7)"_s.arg(note));
        cursor.Requery();
        QCOMPARE(cursor.value("Note"_L1), QVariant(qint64{note}));
        QCOMPARE(cursor.value("UtensilName"_L1), QVariant(u"Pan"_s));
        cursor.Edit();
        cursor.setValue("UtensilName"_L1, u"Pot"_s);
        cursor.Update();
        QCOMPARE(cursor.value("UtensilName"_L1), QVariant(u"Pot"_s));
        QCOMPARE(cursor.value("UtensilID"_L1), QVariant(qint64{7}));
    }
}

void TestRecordCursor::complains()
{
    const RecipeFile file;
    const auto database = Database::open(file.path());
    QString table = u"Ingredients"_s;
    RecordCursor cursor(database, table);
    RecordCursor list(database, recipeList);
    const QString withoutKey = u"SELECT RecipeName FROM Recipes"_s;
    const auto set = [&](QLatin1StringView field) { cursor.setValue(field, u"a lot"_s); };
    const std::pair<std::function<void()>, QStringList> failing[] = {
        {[&] { cursor.MoveNext(); }, {table}},
        {[&] { cursor.MovePrevious(); }, {table}},
        {[&] { cursor.value("ShelfLife"_L1); }, {table}},
        {[&] { cursor.Edit(); }, {table}},
        {[&] { cursor.Delete(); }, {table}},
        {[&] { cursor.Update(); }, {table}},
        {[&] { set("ShelfLife"_L1); }, {u"ShelfLife"_s, table}},
        {[&] { cursor.FindFirst(u"Nme = 1"_s); }, {u"Nme"_s, table}},
        {[&] { cursor.value("Nme"_L1); }, {u"Nme"_s, table}},
        {[&] { list.AddNew(); }, {recipeList}},
        {[&] { RecordCursor(database, withoutKey).AddNew(); }, {withoutKey}},
        {[&] { cursor.AddNew(), set("Nme"_L1); }, {u"Nme"_s, table}},
        {[&] { set("ShelfLife"_L1); }, {u"ShelfLife"_s, u"a lot"_s}},
        {[&] { cursor.MoveFirst(), cursor.Update(); }, {table}}, // the buffer is gone
    };
    for (const auto &[action, parts] : failing) {
        const QString failure = failureOf(action);
        for (const QString &part : parts)
            QVERIFY2(failure.contains(part), qUtf8Printable(failure + u" lacks "_s + part));
    }
    for (const QString &bad :
         {u"Nowhere"_s, u"SELECT Nme FROM Recipes"_s, u"SELEC"_s, u""_s, u"DELETE FROM Recipes"_s})
        QVERIFY2(!failureOf([&] { RecordCursor(database, bad); }).isNull(), qUtf8Printable(bad));

    // A source that is changed counts from the next requery on, and only if it is a good one.
    table = u"Nowhere"_s;
    cursor.AddNew();
    cursor.Update();
    QVERIFY(!failureOf([&] { cursor.Requery(); }).isNull());
    QCOMPARE(cursor.RecordCount(), 1);
    table = u"Utensils"_s;
    cursor.Requery();
    QCOMPARE(cursor.RecordCount(), 0);
}

// Row numbers that were freed and used again, an index of somebody else and statistics lead the
// engine to another order, if it is left to itself.
void TestRecordCursor::keepsTheOrderOfLinkRows()
{
    const RecipeFile file;
    const QString numbers =
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
        "INSERT INTO "_s;
    file.write(numbers.arg(20) + u"Ingredients (IngredientID) SELECT i FROM n;"_s
               + numbers.arg(2000)
               + u"RecipeIngredients (RecipeID, IngredientID) SELECT i, 20 - i % 20 FROM n;"
                 "DELETE FROM RecipeIngredients WHERE rowid > 1900 OR rowid % 3 = 0;"
                 "INSERT INTO RecipeIngredients (RecipeID, IngredientID) "
                 "SELECT i, i % 7 + 1 FROM (SELECT rowid AS i FROM RecipeIngredients);"
                 "CREATE INDEX Extra ON RecipeIngredients (IngredientID); ANALYZE;"_s);

    const auto database = Database::open(file.path());
    const auto recipes = [&](const QString &select) {
        QVariantList result;
        for (const Row &row : rowsOf(*database, select))
            result += row[u"RecipeID"_s];
        return result;
    };
    const QVariantList expected =
        recipes(u"SELECT RecipeID FROM RecipeIngredients ORDER BY rowid"_s);
    QVERIFY(recipes(ingredientJoin) != expected); // else this file proves nothing
    RecordCursor cursor(database, ingredientJoin);
    QVariantList found;
    for (; !cursor.AtEOF(); cursor.MoveNext())
        found += cursor.value("RecipeID"_L1);
    QCOMPARE(found, expected);
}

QTEST_GUILESS_MAIN(TestRecordCursor)
#include "tst_recordcursor.moc"
