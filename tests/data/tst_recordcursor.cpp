#include "CursorModel.h"
#include "RecipeFile.h"
#include "Transaction.h"

#include <QTest>

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString ingredientJoin =
    u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, Ingredients.IngredientName, "
    "Ingredients.Vegetarian FROM Ingredients INNER JOIN RecipeIngredients "
    "ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s;
const QString utensilJoin =
    u"SELECT RecipeUtensils.RecipeID, Utensils.UtensilName FROM Utensils INNER JOIN RecipeUtensils "
    "ON Utensils.UtensilID = RecipeUtensils.UtensilID"_s;
const QString recipeList =
    u"SELECT Recipes.RecipeID, Recipes.RecipeName, Recipes.Description, Recipes.Serves, "
    "Count(RecipeIngredients.RecipeID) AS CountOfRecipeID FROM Recipes LEFT JOIN RecipeIngredients "
    "ON Recipes.RecipeID = RecipeIngredients.RecipeID GROUP BY Recipes.RecipeID, "
    "Recipes.RecipeType, Recipes.RecipeName, Recipes.Description, Recipes.Serves "
    "ORDER BY RecipeType, RecipeName"_s;

struct Source {
    QString text;
    QStringList tables; // the one that is written through the cursor, or those that it reads
    QString plainSelect; // the same rows, asked for in another way
    QByteArray textField;
    QByteArray keyField;
    bool isUpdatable;
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
        , m_model(*m_database, m_source.plainSelect)
    {
        for (SQLite::Database *connection : {&m_database->connection(), &m_other})
            connection->exec("PRAGMA synchronous = OFF"); // ten times as many steps in the time
    }

    // One random step; throws where cursor and model have come apart.
    void step()
    {
        switch (below(14)) {
        case 0:
            m_cursor.MoveFirst();
            m_model.take();
            m_model.moveTo(0);
            break;
        case 1:
            m_cursor.MoveLast();
            m_model.moveLast();
            break;
        case 2:
        case 3:
            check(works([&] { m_cursor.MoveNext(); }) == m_model.moveNext(), "MoveNext");
            break;
        case 4:
            check(works([&] { m_cursor.MovePrevious(); }) == m_model.movePrevious(),
                  "MovePrevious");
            break;
        case 5:
        case 6:
            find();
            break;
        case 7:
        case 8:
            if (m_source.isUpdatable)
                add();
            break;
        case 9:
            if (m_source.isUpdatable)
                oneIn(2) ? edit() : remove();
            break;
        case 10:
            m_cursor.Requery();
            m_model.requery();
            break;
        case 11:
            writeBesides();
            break;
        case 12:
            if (m_transactions.empty())
                writeInOtherProgram();
            break;
        case 13:
            oneIn(2) ? begin() : end();
            break;
        }
        if (m_model.isTaken() || oneIn(3))
            m_model.compare(m_cursor);
        else if (m_model.isOnRow())
            m_model.compareRow(m_cursor);
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
        static const QStringList names = {u"Salt"_s, u"SALT"_s, u"Salted"_s, u"O'Neil's"_s,
                                          u"50*"_s,  u"5?"_s,   u"É"_s,      u"é"_s,
                                          u"e"_s,    u"ß"_s,    u"ẞ"_s,      u"ς"_s,
                                          u"Σ"_s,    u""_s,     u"🍲"_s,      u"x"_s.repeated(300)};
        return oneOf(names);
    }

    template <typename Action>
    static bool works(Action action)
    {
        return failureOf(action).isNull();
    }

    static const Table &table(const QString &name)
    {
        return schemaTables()[static_cast<std::size_t>(tableNumber(name.toStdString()))];
    }

    // Values as they come back, for some of the fields that are not the table's own key.
    Row fields(const QString &tableName)
    {
        Row row;
        for (const Field &field : table(tableName).fields) {
            const QString fieldName = QString::fromLatin1(field.name);
            const bool isOwnKey =
                table(tableName).hasKey && row.empty() && field.type == FieldType::Key;
            if (isOwnKey || oneIn(6))
                continue;
            QVariant value = qint64{below(field.type == FieldType::YesNo ? 2 : 6)};
            if (field.type == FieldType::Text)
                value = name();
            else if (field.type == FieldType::Number && oneIn(3))
                value = 2.5;
            row.insert(fieldName, oneIn(12) ? QVariant() : value);
        }
        return row;
    }

    static void write(RecordCursor &cursor, const Row &fields)
    {
        for (auto field = fields.begin(); field != fields.end(); ++field)
            cursor.setValue(QLatin1StringView(field.key().toLatin1()), *field);
    }

    // The row of the file, or an empty one.
    Row stored(const QVariant &key)
    {
        return rowsOf(*m_database,
                      u"SELECT rowid AS \"#\", * FROM %1 WHERE rowid = %2"_s.arg(
                          m_source.tables.front(), key.toString()))
            .value(0);
    }

    QList<QList<Row>> contents()
    {
        QList<QList<Row>> all;
        for (const QString &name : m_source.tables)
            all += rowsOf(*m_database, u"SELECT rowid AS \"#\", * FROM "_s + name);
        return all;
    }

    void find()
    {
        const bool isLike = oneIn(2);
        const bool isPattern = isLike && oneIn(2);
        const Comparison comparison = isLike ? Comparison::Like : Comparison::Equal;
        QByteArray field = m_source.textField;
        QVariant value =
            isPattern ? oneOf({u"*"_s, u"s*"_s, u"*E?"_s, u"?"_s, u"5?"_s, u"O'*"_s}) : name();
        QString text = criterion(QLatin1StringView(field), comparison, value.toString());
        if (!isLike && oneIn(3)) {
            field = m_source.keyField;
            value = qint64{below(6)};
            text = criterion(QLatin1StringView(field), value.toLongLong());
        }
        const bool fromStart = oneIn(2);
        fromStart ? m_cursor.FindFirst(text) : m_cursor.FindNext(text);
        m_model.find(QString::fromLatin1(field), comparison, value, fromStart);
        for (unsigned more = below(5); more > 0; --more) {
            m_cursor.FindNext(text);
            m_model.find(QString::fromLatin1(field), comparison, value, false);
            m_model.compare(m_cursor);
        }
    }

    void noteWrite() { m_wroteInTransaction = !m_transactions.empty(); }

    void add()
    {
        const Row written = fields(m_source.tables.front());
        m_cursor.AddNew();
        write(m_cursor, written);
        if (oneIn(8)) { // looking does not drop the buffer
            m_cursor.AtEOF();
            m_model.take();
        }
        m_cursor.Update();
        noteWrite();
        const Row row = stored(qint64{m_database->connection().getLastInsertRowid()});
        for (const Field &field : table(m_source.tables.front()).fields) {
            const QString fieldName = QString::fromLatin1(field.name);
            check(row[fieldName] == written[fieldName]
                      || field.name == m_source.keyField.toStdString(),
                  "stored");
        }
        m_model.add(row);
    }

    void edit()
    {
        const Row written = fields(m_source.tables.front());
        m_model.isOnRow() ? void() : m_model.take();
        const bool expected =
            m_model.isOnRow() && (written.empty() || !stored(m_model.currentKey()).empty());
        const bool worked = works([&] {
            m_cursor.Edit();
            write(m_cursor, written);
            m_cursor.Update();
        });
        check(worked == expected, "Edit");
        if (m_model.isOnRow())
            noteWrite();
        if (!worked)
            return;
        m_model.edit(written);
        const Row row = stored(m_model.currentKey());
        for (auto field = written.begin(); field != written.end(); ++field)
            check(row[field.key()] == *field, "stored");
    }

    void remove()
    {
        m_model.isOnRow() ? void() : m_model.take();
        const bool isOnRow = m_model.isOnRow();
        const QVariant key = isOnRow ? m_model.currentKey() : QVariant();
        const bool expected = isOnRow && !stored(key).empty();
        check(works([&] { m_cursor.Delete(); }) == expected, "Delete");
        if (isOnRow) {
            m_model.take();
            noteWrite();
        }
        if (expected) {
            m_model.remove();
            check(stored(key).empty(), "deleted");
        }
    }

    void writeBesides()
    {
        const QString name = oneOf(m_source.tables);
        const int before = m_database->connection().getTotalChanges();
        RecordCursor cursor(m_database, name);
        const bool isEmpty = cursor.RecordCount() == 0;
        switch (below(4)) {
        case 0:
            m_database->Execute(oneIn(5) ? u"DELETE %1.* From %1"_s.arg(name) : statement(name));
            break;
        case 1:
            if (!isEmpty)
                cursor.Delete();
            break;
        case 2:
            cursor.MoveLast();
            isEmpty ? cursor.AddNew() : cursor.Edit();
            write(cursor, fields(name));
            cursor.Update();
            break;
        default:
            cursor.AddNew();
            write(cursor, fields(name));
            cursor.Update();
        }
        if (m_database->connection().getTotalChanges() != before)
            m_model.touch();
    }

    void writeInOtherProgram()
    {
        if (m_other.exec(statement(oneOf(m_source.tables)).toStdString()) > 0)
            m_model.touch();
    }

    QString statement(const QString &name)
    {
        if (oneIn(3))
            return u"DELETE FROM %1 WHERE rowid % 7 = %2"_s.arg(name).arg(below(7));
        QStringList values;
        const Row row = fields(name);
        for (const QVariant &value : row) {
            const bool isText = value.typeId() == QMetaType::QString;
            const QString text = value.toString().replace(u'\'', u"''"_s);
            values += !value.isValid() ? u"NULL"_s : isText ? u'\'' + text + u'\'' : text;
        }
        if (row.empty())
            return u"INSERT INTO %1 DEFAULT VALUES"_s.arg(name);
        if (oneIn(2))
            return u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(name, row.keys().join(u','),
                                                            values.join(u','));
        return u"UPDATE %1 SET %2 = %3 WHERE rowid = %4"_s.arg(name, row.firstKey(), values.front(),
                                                               QString::number(1 + below(12)));
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
        if (!commits) {
            check(contents() == found, "rolled back");
            m_wroteInTransaction ? m_model.forget() : m_model.touch();
        }
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
    void keepsTheOrderOfLinkRows_data();
    void keepsTheOrderOfLinkRows();
    void readsAfreshAfterRollback();
};

void TestRecordCursor::agreesWithModel_data()
{
    QTest::addColumn<Source>("source");
    const QString plain = u"SELECT rowid AS \"#\", * FROM "_s;
    QTest::newRow("table with a key")
        << Source{u"Utensils"_s, {u"Utensils"_s}, plain + u"Utensils ORDER BY rowid"_s,
                  "UtensilName", "UtensilID",     true};
    QTest::newRow("table without a key") << Source{u"RecipeIngredients"_s,
                                                   {u"RecipeIngredients"_s},
                                                   plain + u"RecipeIngredients ORDER BY rowid"_s,
                                                   "Quantity",
                                                   "IngredientID",
                                                   true};
    QTest::newRow("ordered") << Source{u"Select * FROM Ingredients ORDER BY IngredientName"_s,
                                       {u"Ingredients"_s},
                                       plain + u"Ingredients ORDER BY IngredientName, rowid"_s,
                                       "IngredientName",
                                       "IngredientID",
                                       true};
    QTest::newRow("join") << Source{
        ingredientJoin,
        {u"RecipeIngredients"_s, u"Ingredients"_s},
        u"SELECT rowid AS \"#\", RecipeID, Quantity,"
        "(SELECT IngredientName FROM Ingredients i WHERE i.IngredientID = l.IngredientID)"
        " AS IngredientName,"
        "(SELECT Vegetarian FROM Ingredients i WHERE i.IngredientID = l.IngredientID)"
        " AS Vegetarian FROM RecipeIngredients l"
        " WHERE IngredientID IN (SELECT IngredientID FROM Ingredients) ORDER BY rowid"_s,
        "IngredientName",
        "RecipeID",
        false};
    QTest::newRow("grouped list") << Source{
        recipeList,
        {u"Recipes"_s, u"RecipeIngredients"_s},
        u"SELECT RecipeID AS \"#\", RecipeID, RecipeName, Description, Serves,"
        "(SELECT count(*) FROM RecipeIngredients l WHERE l.RecipeID = r.RecipeID)"
        " AS CountOfRecipeID FROM Recipes r ORDER BY RecipeType, RecipeName, RecipeID"_s,
        "RecipeName",
        "RecipeID",
        false};
}

void TestRecordCursor::agreesWithModel()
{
    QFETCH(const Source, source);
    const unsigned firstSeed = std::random_device{}();
    for (unsigned seed = firstSeed; seed != firstSeed + 40; ++seed) {
        Game game(source, seed);
        for (int step = 0; step < 300; ++step) {
            try {
                game.step();
            } catch (const std::exception &error) {
                QFAIL(qPrintable(u"seed %1, step %2: %3"_s.arg(seed).arg(step).arg(
                    QString::fromUtf8(error.what()))));
            }
        }
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
    QCOMPARE(cursor.value("UtensilID"_L1), 3);
    file.write(u"UPDATE Utensils SET UtensilName = 'Cup' WHERE UtensilID = 1"_s);
    cursor.MovePrevious();
    QCOMPARE(cursor.value("UtensilName"_L1), u"Cup"_s);
    cursor.MoveLast();
    QCOMPARE(cursor.value("UtensilName"_L1), u"\uFEFFAxe"_s);
    file.write(u"DELETE FROM Utensils WHERE UtensilID = 1"_s);
    QCOMPARE(cursor.RecordCount(), 3);
    cursor.Requery();
    QCOMPARE(cursor.value("UtensilName"_L1), u"Bowl"_s);
    QCOMPARE(cursor.RecordCount(), 2);
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
    const auto holds = [](const QString &text, const QStringList &parts) {
        return std::all_of(parts.begin(), parts.end(),
                           [&](const QString &part) { return text.contains(part); });
    };
    const auto use = [&](QLatin1StringView field, const QVariant &value) {
        return failureOf([&] { cursor.setValue(field, value); });
    };

    cursor.FindFirst(u"IngredientID = 1"_s);
    QVERIFY(cursor.NoMatch() && cursor.AtBOF() && cursor.AtEOF());
    for (const auto &failure :
         {failureOf([&] { cursor.MoveNext(); }), failureOf([&] { cursor.MovePrevious(); }),
          failureOf([&] { cursor.value("ShelfLife"_L1); }), failureOf([&] { cursor.Edit(); }),
          failureOf([&] { cursor.Delete(); }), failureOf([&] { cursor.Update(); }),
          use("ShelfLife"_L1, 1)})
        QVERIFY2(failure.contains(table), qUtf8Printable(failure));
    QVERIFY(!failureOf([&] { cursor.FindFirst({}); }).isNull());
    QVERIFY(holds(failureOf([&] { cursor.FindFirst(u"Nme = 1"_s); }), {u"Nme"_s, table}));
    QVERIFY(holds(failureOf([&] { cursor.value("Nme"_L1); }), {u"Nme"_s, table}));
    QVERIFY(holds(failureOf([&] { list.AddNew(); }), {recipeList}));

    cursor.AddNew();
    QVERIFY(holds(use("Nme"_L1, 1), {u"Nme"_s, table}));
    for (const char *field : {"IngredientType", "ShelfLife", "Vegetarian"})
        QVERIFY(holds(use(QLatin1StringView(field), u"a lot"_s),
                      {QString::fromLatin1(field), u"a lot"_s}));
    cursor.MoveFirst();
    QVERIFY(!failureOf([&] { cursor.Update(); }).isNull());
    QCOMPARE(cursor.RecordCount(), 0);

    for (const QString &bad :
         {u"Nowhere"_s, u"SELECT Nme FROM Recipes"_s, u"SELEC"_s, u""_s, u"DELETE FROM Recipes"_s})
        QVERIFY2(!failureOf([&] { RecordCursor(database, bad); }).isNull(), qUtf8Printable(bad));

    // A source that is changed counts from the next requery on, and only if it is a good one.
    table = u"Nowhere"_s;
    cursor.AddNew();
    cursor.Update();
    QCOMPARE(cursor.RecordCount(), 1);
    QVERIFY(!failureOf([&] { cursor.Requery(); }).isNull());
    QCOMPARE(cursor.RecordCount(), 1);
    table = u"Utensils"_s;
    cursor.Requery();
    cursor.AddNew();
    cursor.setValue("UtensilName"_L1, u"Pan"_s);
    cursor.Update();
    cursor.MoveLast();
    QCOMPARE(cursor.value("UtensilName"_L1), u"Pan"_s);
}

void TestRecordCursor::keepsTheOrderOfLinkRows_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("catalog");
    QTest::addColumn<QString>("links");
    QTest::addColumn<QString>("key");
    QTest::newRow("ingredients") << ingredientJoin << u"Ingredients"_s << u"RecipeIngredients"_s
                                 << u"IngredientID"_s;
    QTest::newRow("utensils") << utensilJoin << u"Utensils"_s << u"RecipeUtensils"_s
                              << u"UtensilID"_s;
}

// Row numbers that were freed and used again, an index of somebody else and statistics lead the
// engine to another order, if it is left to itself.
void TestRecordCursor::keepsTheOrderOfLinkRows()
{
    QFETCH(const QString, source);
    QFETCH(const QString, catalog);
    QFETCH(const QString, links);
    QFETCH(const QString, key);
    const RecipeFile file;
    const QString numbers =
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "_s;
    file.write(
        numbers.arg(20) + u"INSERT INTO %1 (%2) SELECT i FROM n;"_s.arg(catalog, key)
        + numbers.arg(2000)
        + u"INSERT INTO %1 (RecipeID, %2) SELECT i, 20 - i % 20 FROM n;"
          "DELETE FROM %1 WHERE rowid > 1900 OR rowid % 3 = 0;"
          "INSERT INTO %1 (RecipeID, %2) SELECT i, i % 7 + 1 FROM (SELECT rowid AS i FROM %1);"
          "CREATE INDEX Extra ON %1 (%2); ANALYZE;"_s.arg(links, key));

    const auto database = Database::open(file.path());
    const auto recipes = [&](const QString &select) {
        QVariantList result;
        for (const Row &row : rowsOf(*database, select))
            result += row[u"RecipeID"_s];
        return result;
    };
    const QVariantList expected = recipes(u"SELECT RecipeID FROM %1 ORDER BY rowid"_s.arg(links));
    QVERIFY(recipes(source) != expected); // else this file proves nothing
    RecordCursor cursor(database, source);
    QVariantList found;
    for (; !cursor.AtEOF(); cursor.MoveNext())
        found += cursor.value("RecipeID"_L1);
    QCOMPARE(found, expected);
}

void TestRecordCursor::readsAfreshAfterRollback()
{
    const RecipeFile file;
    const auto database = Database::open(file.path());
    const QString table = u"Utensils"_s;
    const QString list = u"SELECT * FROM Utensils ORDER BY UtensilName"_s;
    RecordCursor writing(database, table);
    RecordCursor reading(database, list);
    const auto add = [&](const QString &name) {
        writing.AddNew();
        writing.setValue("UtensilName"_L1, name);
        writing.Update();
    };
    QCOMPARE(writing.RecordCount(), 0);
    {
        Transaction outer(*database);
        add(u"Pan"_s);
        {
            const Transaction inner(*database);
            add(u"Pot"_s);
            reading.Requery();
            QCOMPARE(reading.RecordCount(), 2);
        }
        QCOMPARE(writing.RecordCount(), 1);
        reading.Requery();
        QCOMPARE(reading.RecordCount(), 1);
    }
    reading.Requery();
    QCOMPARE(writing.RecordCount() + reading.RecordCount(), 0);
    // A cursor that is gone is not told.
    const Transaction transaction(*database);
    RecordCursor(database, table).AddNew();
    auto gone = std::make_unique<RecordCursor>(database, table);
    gone->AddNew();
    gone->Update();
    gone.reset();
}

QTEST_GUILESS_MAIN(TestRecordCursor)
#include "tst_recordcursor.moc"
