#include "RulesFile.h"
#include "data/Database.h"
#include "oldfiles/RecipeTables.h"
#include "platform/UserVisibleError.h"
#include "support/FileBytes.h"
#include "support/FileSizeLimit.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"
#include "takeover/CatalogKeys.h"
#include "takeover/Takeover.h"
#include "takeover/TakeoverNotes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString oldFile = rulesFile();
const QString damagedFile = QStringLiteral(DAMAGED_FILE);

// Cancels at one of the calls.
class CancellingProgress final : public Progress
{
public:
    explicit CancellingProgress(int calls)
        : m_calls(calls)
    {
    }

    bool update(qsizetype, qsizetype, const QString &) override { return m_calls-- > 0; }

private:
    int m_calls;
};

QString cell(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? u"1"_s : u"0"_s;
    return value.isNull() ? u"null"_s : value.toVariant().toString();
}

// Returns the rows that a file is said to hold, with the fields of the schema: "3|Soup|null".
QStringList expectedRows(const QJsonObject &tables, const Table &table)
{
    const QJsonObject expected = tables[QLatin1StringView(table.name)].toObject();
    const QVariantList columns = expected["columns"_L1].toArray().toVariantList();
    QStringList rows;
    for (const QJsonValueConstRef row : expected["rows"_L1].toArray()) {
        QStringList cells;
        for (const Field &field : table.fields)
            cells += cell(row[columns.indexOf(QString(QLatin1StringView(field.name)))]);
        rows += cells.join(u'|');
    }
    return rows;
}

QStringList storedRows(const QString &path, const Table &table)
{
    const SQLite::Database database(path.toStdString());
    SQLite::Statement statement(database,
                                "SELECT * FROM " + std::string(table.name) + " ORDER BY rowid");
    QStringList rows;
    while (statement.executeStep()) {
        QStringList cells;
        for (int i = 0; i < statement.getColumnCount(); ++i)
            cells += statement.getColumn(i).isNull()
                ? u"null"_s
                : QString::fromStdString(statement.getColumn(i).getString());
        rows += cells.join(u'|');
    }
    return rows;
}

} // namespace

class tst_Takeover : public QObject
{
    Q_OBJECT

    const TestDatabase m_new; // its file is replaced
    const QTemporaryDir m_folder;
    TakeoverReport m_report;

    QString inFolder(const QString &name) const { return m_folder.filePath(name); }

    // Returns what the takeover of a changed file says that is lost, and all notes.
    QString told(const QByteArray &bytes) const
    {
        setBytes(inFolder(u"old.rbk"_s), bytes);
        QFile::remove(inFolder(u"new.rbk"_s));
        SilentProgress progress;
        const TakeoverReport report =
            Takeover(inFolder(u"old.rbk"_s)).writeTo(inFolder(u"new.rbk"_s), progress).value();
        return (report.losses() + report.notes).join(u'\n');
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QFile::remove(m_new.path()));
        const QByteArray before = bytesOf(oldFile);
        SilentProgress progress;
        Takeover takeover(oldFile);
        QCOMPARE(takeover.recipeCount(), 16);
        m_report = takeover.writeTo(m_new.path(), progress).value();
        QVERIFY(m_report.isComplete());
        QCOMPARE(m_report.summary(),
                 u"Recipes: 16, Ingredients: 4, Utensils: 2, Ingredients in recipes: "
                 "10, Utensils in recipes: 3"_s);
        QVERIFY(bytesOf(oldFile) == before);
        QVERIFY(Database::countRecipesIfSound(m_new.path()) == 16);
    }

    void readsTheTablesOfTheSchema()
    {
        for (std::size_t i = 0; i < tableCount; ++i) {
            const auto &wanted = oldfiles::recipeTables()[i];
            QVERIFY(wanted.name == schemaTables()[i].name);
            QVERIFY(std::equal(wanted.columns.begin(), wanted.columns.end(),
                               schemaTables()[i].fields.begin(), schemaTables()[i].fields.end(),
                               [](const auto &a, const auto &b) { return a.name == b.name; }));
        }
    }

    void followsTheRules_data()
    {
        // What is in the new file, and what is told of it.
        addRows<QByteArray, QString, QString>({
            {"texts",
             "SELECT hex(Instructions) FROM Recipes WHERE RecipeID = 7",
             QString::fromLatin1(
                 QByteArray("one\r\ntwo\nthree\rnull\0end \xE2\x82\xAC \xF0\x9F\x8D\xB2", 32)
                     .toHex()
                     .toUpper()),
             {}},
            {"long text",
             "SELECT Instructions = replace(hex(zeroblob(250)), '0', 'Stir well. ') FROM Recipes "
             "WHERE RecipeID = 12",
             u"1"_s,
             {}},
            {"null and empty texts",
             "SELECT ifnull(Description, 'null'), Instructions = '' FROM Recipes WHERE RecipeID = "
             "9",
             u"null|1"_s,
             {}},
            {"single", "SELECT Serves FROM Recipes WHERE RecipeID = 7", u"0.1"_s, {}},
            {"whole numbers at their bounds",
             "SELECT RecipeType, Rating FROM Recipes WHERE RecipeID = 9",
             u"-32768|32767"_s,
             {}},
            {"numbers that do not fit",
             "SELECT RecipeType, Rating FROM Recipes WHERE RecipeID = 12", u"null|null"_s,
             u"Recipes: the RecipeType of \"Numbers\" was 40000, which does not fit. It is empty "
             "now.\nRecipes: the Rating of \"Numbers\" was 2.5, which"_s},
            {"infinite number", "SELECT Serves FROM Recipes WHERE RecipeID IN (9, 12)",
             u"null, null"_s,
             u"Recipes: the Serves of \"Numbers\" was not a number, which does not fit. It is "
             "empty now.\nRecipes: the Serves of \"Infinite\" was infinite,"_s},
            {"money and bytes",
             "SELECT IngredientType, ShelfLife FROM Ingredients ORDER BY IngredientID",
             u"255|1.5, 1|3, 1|3, null|null"_s,
             {}},
            {"yes and no",
             "SELECT Vegetarian FROM Ingredients ORDER BY IngredientID",
             u"1, null, 1, 0"_s,
             {}},
            {"no key", "SELECT RecipeID FROM Recipes WHERE RecipeName = 'No key'", u"13"_s,
             u"Recipes: \"No key\" had no RecipeID. It has the RecipeID 13 now."_s},
            {"key 0", "SELECT RecipeID FROM Recipes WHERE RecipeName = 'Zero'", u"14"_s,
             u"Recipes: \"Zero\" had the RecipeID 0. It has the RecipeID 14 now, also in"_s},
            {"key after the counter",
             "SELECT IngredientID FROM Ingredients WHERE IngredientName = 'Pepper'", u"51"_s,
             u"Ingredients: \"Pepper\" had the IngredientID -3. It has the IngredientID 51 now"_s},
            {"doubled key", "SELECT RecipeID FROM Recipes WHERE RecipeName LIKE 'Seven%'",
             u"7, 16"_s,
             u"Recipes: \"Seven again\" had the same RecipeID as another row, 7. It has the "
             "RecipeID 16 now. What refers to 7 means the other row."_s},
            {"largest key", "SELECT RecipeID FROM Recipes WHERE RecipeName = 'The last'", u"17"_s,
             u"Recipes: \"The last\" had the RecipeID 2147483647. It has the RecipeID 17 now"_s},
            {"keys that do not fit", "SELECT RecipeID FROM Recipes WHERE RecipeName LIKE '%a key'",
             u"18, 20"_s,
             u"Recipes: \"Half a key\" had the RecipeID 2.5. It has the RecipeID 18 now, also in "
             "the rows that refer to it.\nRecipes: \"Too large a key\" had the RecipeID "
             "4000000000. "
             "It"_s},
            {"next keys", "SELECT * FROM sqlite_sequence ORDER BY name",
             u"Ingredients|51, Recipes|20, Utensils|3"_s,
             u"Utensils: the last UtensilID is said to be 4294967295, which leaves none for"_s},
            {"links, also those that lead nowhere",
             "SELECT Quantity, RecipeID, IngredientID FROM RecipeIngredients",
             u"of minus five|15|51, of the last|17|2, of seven|7|2, dangling|888|999, "
             "no recipe|null|2, no ingredient|7|null, half|7|null, of zero|14|0, "
             "of too large a key|20|2, deleted recipe|19|2"_s,
             u"RecipeIngredients: the IngredientID of row 7, of the recipe \"Seven\", was 2.5, "
             "which does not fit. It is empty now."_s},
            {"order of the links", "SELECT UtensilID FROM RecipeUtensils", u"3, 1, 3"_s, {}},
            {"links without a key",
             {},
             {},
             u"RecipeIngredients: in one row, the RecipeID is empty.\n"
             "RecipeIngredients: in 2 rows, the IngredientID is empty."_s},
            {"null and empty titles",
             "SELECT ifnull(RecipeName, 'null') FROM Recipes WHERE RecipeID IN (10, 11)",
             u"null, "_s,
             u"Recipes: the row with the RecipeID 10 has no name.\n"
             "Recipes: the row with the RecipeID 11 has no name."_s},
            {"doubled title", "SELECT count(*) FROM Recipes WHERE RecipeName = 'Twice'", u"2"_s,
             u"Recipes: 2 rows have the name \"Twice\"."_s},
            {"titles in other letter case",
             {},
             {},
             u"Recipes: 2 rows have names that differ only in letter case, such as \"KÄSE\" and "
             "\"käse\"."_s},
            {"more columns",
             {},
             {},
             u"Recipes: the column Source was not taken over, because Pantrywise has none"_s},
            {"more tables",
             {},
             {},
             u"The table Shopping list was not taken over, because Pantrywise has none"_s},
        });
    }
    void followsTheRules()
    {
        const auto [query, expected, note] = fetchRow<QByteArray, QString, QString>();
        if (!query.isEmpty())
            QCOMPARE(m_new.stored(query), expected);
        const QString notes = m_report.notes.join(u'\n');
        QVERIFY2(notes.contains(note), qPrintable(notes));
    }

    void takesOverEveryRow_data()
    {
        addRows<QString, QString>({
            {"Jet 3", u"jet3.rbk"_s, u"western.expected.json"_s},
            {"Jet 4", u"jet4.rbk"_s, u"unicode.expected.json"_s},
            {"ACE", u"ace.rbk"_s, u"unicode.expected.json"_s},
        });
    }
    void takesOverEveryRow()
    {
        const auto [file, expected] = fetchRow<QString, QString>();
        const QString folder = QStringLiteral(OLD_FILES);
        const QJsonObject tables = QJsonDocument::fromJson(bytesOf(folder + expected)).object();
        SilentProgress progress;
        const auto report = Takeover(folder + file).writeTo(inFolder(file), progress).value();
        QVERIFY(report.isComplete());
        for (const Table &table : schemaTables()) {
            QStringList stored = storedRows(inFolder(file), table);
            QStringList wanted = expectedRows(tables, table);
            QVERIFY(!stored.isEmpty());
            if (table.hasKey) { // stored in the order of the keys
                stored.sort();
                wanted.sort();
            }
            QCOMPARE(stored, wanted);
        }
    }

    void tellsOfDamage_data()
    {
        const QByteArray bytes = bytesOf(oldFile);
        addRows<QByteArray, QString>({
            {"fewer rows", withStatedRows(bytes, 0, 19), u"Recipes: 16 of 19 can be read.\n"_s},
            {"fewer links", withStatedRows(bytes, 4, 1'003),
             u"RecipeUtensils: 3 of 1,003 can be read.\n"_s},
            {"more rows", withStatedRows(bytes, 1, 2), u"Recipes: the RecipeType of"_s},
            {"unclean end", withStatedRows(bytes, 1, 0),
             u"Ingredients: the old file says that it has no rows, as it may after the program "
             "was not ended properly. 4 were found and taken over.\n"_s},
            {"damaged page", withDamagedPage(bytes, 2),
             u"Utensils: 0 of 2 can be read.\nPage 21, which belongs to the table Utensils, cannot be read.\n"_s},
            {"damaged page after an unclean end", withDamagedPage(withStatedRows(bytes, 2, 0), 2),
             u"Utensils: 0 can be read. Damaged pages: 1, damaged rows: 0.\nPage 21, "_s},
            {"damaged row after an unclean end", withStatedRows(bytesOf(damagedFile), 0, 0),
             u"Recipes: 3 can be read. Damaged pages: 0, damaged rows: 1.\nRow 1 on page "_s},
        });
    }
    void tellsOfDamage()
    {
        const auto [bytes, expected] = fetchRow<QByteArray, QString>();
        const QString text = told(bytes);
        QVERIFY2(text.startsWith(expected), qPrintable(text));
        QVERIFY(bytesOf(inFolder(u"old.rbk"_s)) == bytes);
    }

    void leavesNothingIfCancelled_data()
    {
        const QByteArray bytes = bytesOf(oldFile);
        addRows<QByteArray>({{"whole file", bytes}, {"no recipe", withDamagedPage(bytes, 0)}});
    }
    // Each page is a chance to cancel, also if no row of it can be read.
    void leavesNothingIfCancelled()
    {
        const auto [bytes] = fetchRow<QByteArray>();
        setBytes(inFolder(u"old.rbk"_s), bytes);
        Takeover takeover(inFolder(u"old.rbk"_s));
        const QString file = inFolder(u"cancelled.rbk"_s);
        int calls = 0;
        for (;; ++calls) {
            CancellingProgress progress(calls);
            if (takeover.writeTo(file, progress))
                break;
            QVERIFY(!QFileInfo::exists(file));
        }
        QVERIFY(QFile::remove(file));
        constexpr int pages = 2; // of each table, at least
        QVERIFY2(calls > 2 * pages * static_cast<int>(tableCount),
                 qPrintable(QString::number(calls)));
    }

    void countsTheRecipes_data()
    {
        const QByteArray bytes = bytesOf(oldFile);
        addRows<QByteArray, int>({{"more stated", withStatedRows(bytes, 0, 19), 19},
                                  {"fewer stated", withStatedRows(bytes, 0, 0), 16},
                                  {"unreadable", withDamagedPage(bytes, 0), 16}});
    }
    void countsTheRecipes()
    {
        const auto [bytes, expected] = fetchRow<QByteArray, int>();
        setBytes(inFolder(u"old.rbk"_s), bytes);
        QCOMPARE(Takeover(inFolder(u"old.rbk"_s)).recipeCount(), expected);
    }

    void leavesNothingOnAFullDisk()
    {
        Takeover takeover(oldFile);
        SilentProgress progress;
        const QString file = inFolder(u"full.rbk"_s);
        for (const rlim_t size : {0, 4096, 20'000}) {
            const FileSizeLimit limit(size);
            QString failure;
            try {
                takeover.writeTo(file, progress);
            } catch (const platform::UserVisibleError &error) {
                failure = error.text();
            }
            QVERIFY2(failure.startsWith("The new recipe file could not be written"_L1),
                     qPrintable(failure));
            QVERIFY(!QFileInfo::exists(file));
        }
    }

    void replacesNoFile()
    {
        Takeover takeover(oldFile);
        SilentProgress progress;
        setBytes(inFolder(u"mine.rbk"_s), "mine");
        QVERIFY_EXCEPTION_THROWN(takeover.writeTo(inFolder(u"mine.rbk"_s), progress),
                                 platform::UserVisibleError);
        QCOMPARE(bytesOf(inFolder(u"mine.rbk"_s)), "mine");
    }

    void namesThousandsOfCases()
    {
        QString sentence(100, u'x');
        TakeoverNotes notes;
        const auto add = [&](const QString &table, int count) {
            for (int i = 0; i < count; ++i)
                notes.add(table, NoteKind::Key, [&] { return sentence; });
        };
        add(u"Recipes"_s, 3'000);
        QCOMPARE(notes.sentences().size(), 3'000);
        add(u"Recipes"_s, 100'000);
        add(u"Utensils"_s, 60);
        const QString text = notes.sentences().join(u'\n');
        QVERIFY(text.size() < 600'000);
        QVERIFY(text.contains(u"\nRecipes: there are 9"_s));
        QVERIFY(text.endsWith(u"\nUtensils: there are 10 more such cases."_s));
    }

    void givesKeysThatAreFree_data()
    {
        constexpr qint32 last = CatalogKeys::largestKey;
        using Keys = QList<std::optional<double>>;
        // The counter, the old keys, those of links and the new ones.
        addRows<qint32, Keys, Keys, QList<qint32>>({
            {"kept", 0, {5, 2, last - 1}, {}, {5, 2, last - 1}},
            {"after the largest", 3, {5, {}, 2, {}}, {}, {5, 6, 2, 7}},
            {"after the counter", 9, {5, {}}, {}, {5, 10}},
            {"none left after the largest",
             0,
             {2, last - 1, {}, 1, {}},
             {},
             {2, last - 1, 3, 1, 4}},
            {"none left after the counter", last - 2, {2, {}, {}}, {}, {2, 1, 3}},
            {"doubled", 0, {-4, 1, -4, 1, 0}, {}, {2, 1, 3, 4, 5}},
            {"too large", 0, {5e9, 1, 5e9, qQNaN(), qQNaN()}, {5e9}, {2, 1, 3, 4, 5}},
            {"link to a deleted row", 0, {last - 1, 0}, {1, 0, {}}, {last - 1, 2}},
            {"link beyond the counter", 7, {5, 0}, {8, 8, 5}, {5, 9}},
        });
    }
    void givesKeysThatAreFree()
    {
        using Keys = QList<std::optional<double>>;
        const auto [counter, old, links, expected] = fetchRow<qint32, Keys, Keys, QList<qint32>>();
        const auto value = [](std::optional<double> key) {
            if (!key)
                return oldfiles::Value();
            return *key == std::floor(*key) ? oldfiles::Value(static_cast<qint64>(*key))
                                            : oldfiles::Value(*key);
        };
        CatalogKeys keys;
        for (const auto &key : old)
            keys.add(value(key));
        QCOMPARE(keys.sort(), old != Keys(expected.begin(), expected.end()));
        for (const auto &key : links)
            keys.reserve(value(key));
        keys.assign(counter);
        QList<qint32> given;
        for (const auto &key : old)
            given += keys.take(value(key)).key;
        QCOMPARE(given, expected);
    }
};

QTEST_GUILESS_MAIN(tst_Takeover)
#include "tst_takeover.moc"
