#include "oldfiles/RecipeFile.h"
#include "support/FileBytes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <array>
#include <memory>
#include <random>

using namespace Qt::Literals::StringLiterals;
using oldfiles::Error;
using oldfiles::RecipeFile;
using oldfiles::RowReader;
using oldfiles::Value;

namespace {

enum Table : std::size_t { Recipes, Ingredients, Utensils, RecipeIngredients, RecipeUtensils };

std::filesystem::path nativePath(const QString &path)
{
    return path.toStdString();
}

// A null character shows as U+2400, so that QCOMPARE prints what follows.
QString shown(const Value &value)
{
    if (const auto *const integer = std::get_if<qint64>(&value))
        return QString::number(*integer);
    if (const auto *const number = std::get_if<double>(&value))
        return QString::number(*number, 'g', QLocale::FloatingPointShortest);
    if (const auto *const isYes = std::get_if<bool>(&value))
        return *isYes ? u"yes"_s : u"no"_s;
    if (const auto *const text = std::get_if<std::string_view>(&value))
        return u'"'
            + QString::fromUtf8(text->data(), static_cast<qsizetype>(text->size()))
                  .replace(QChar::Null, QChar(0x2400))
            + u'"';
    return u"null"_s;
}

QString shown(std::span<const Value> row)
{
    QStringList values;
    for (const Value &value : row)
        values += shown(value);
    return values.join(u' ');
}

QStringList rowsOf(RowReader &reader)
{
    QStringList rows;
    while (reader.next())
        rows += shown(reader.values());
    return rows;
}

QStringList rowsOf(const RecipeFile &file, std::size_t table)
{
    RowReader reader = file.rows(table);
    return rowsOf(reader);
}

// The rows of a table, what could not be read, or the error that opening the file ends with.
QString contents(const QString &path, std::size_t table)
{
    try {
        const RecipeFile file(nativePath(path));
        RowReader reader = file.rows(table);
        QString result = rowsOf(reader).join(u"; ");
        if (reader.unreadableRows() + reader.unreadablePages() > 0)
            result += u" (%1 rows, %2 pages: %3)"_s.arg(reader.unreadableRows())
                          .arg(reader.unreadablePages())
                          .arg(reader.firstProblem());
        return result;
    } catch (const Error &error) {
        return error.text();
    }
}

QString shown(const QJsonValue &value, oldfiles::ValueKind kind)
{
    if (value.isNull())
        return u"null"_s;
    switch (kind) {
    case oldfiles::ValueKind::Number:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case oldfiles::ValueKind::YesNo:
        return value.toBool() ? u"yes"_s : u"no"_s;
    case oldfiles::ValueKind::Text:
        break;
    }
    return u'"' + value.toString() + u'"';
}

// The rows that a file must have, with the columns of the layout.
QStringList expectedRows(const QJsonObject &table, const oldfiles::TableLayout &layout)
{
    const QStringList columns = table["columns"_L1].toVariant().toStringList();
    QStringList rows;
    for (const auto &row : table["rows"_L1].toArray()) {
        QStringList values;
        for (const oldfiles::Column &column : layout.columns)
            values += shown(row.toArray().at(columns.indexOf(oldfiles::toText(column.name))),
                            column.kind);
        rows += values.join(u' ');
    }
    return rows;
}

QString unreadable(int rows, const QString &row, const QString &table)
{
    return u" (%1 rows, 0 pages: Row %2, which belongs to the table %3, cannot be read.)"_s
        .arg(rows)
        .arg(row, table);
}

QString letters(qsizetype count)
{
    return u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_s.repeated(200).first(count);
}

void addCase(std::initializer_list<const char *> files, Table table, const QString &expected)
{
    for (const char *const file : files) {
        const std::string_view name = oldfiles::recipeTables()[table].name;
        QTest::addRow("%s %s", file, name.data())
            << QString::fromLatin1(file) << std::size_t(table) << expected;
    }
}

const QString soup = u"3 \"Soup\" \"\" null 1 \"Stir.\r\nServe.\" null 2"_s;
const QString bread = u"7 \"Bread\" \"\" null 1 \"Stir.\r\nServe.\" null 4.5"_s;

void addErrors()
{
    const auto add = [](std::initializer_list<const char *> files, const QString &expected) {
        addCase(files, Recipes, expected);
    };
    add({"missing-column.jet3", "missing-column.jet4"},
        u"The column ShelfLife is missing from the table Ingredients."_s);
    add({"missing-table.jet3", "missing-table.jet4"},
        u"The table RecipeUtensils is missing from the file."_s);
    add({"linked-table.jet4", "linked-by-odbc.jet4"},
        u"The table Utensils is linked: its rows are in another file."_s);
    add({"encrypted.jet3", "encrypted.jet4"},
        u"The file is encrypted. Its encryption must be removed with the program that made the "
        "file."_s);
    add({"text-for-number.jet4", "date-for-number.jet4"},
        u"The column Serves of the table Recipes does not hold numbers."_s);
    add({"yes-no-for-number.jet4"},
        u"The column Rating of the table Recipes does not hold numbers."_s);
    add({"picture-for-text.jet4"},
        u"The column Description of the table Recipes does not hold texts."_s);
    add({"number-for-text.jet4"}, u"The column Author of the table Recipes does not hold texts."_s);
    add({"money-for-yes-no.jet4"},
        u"The column Vegetarian of the table Ingredients holds neither yes and no nor whole "
        "numbers."_s);
    add({"calculated-column.ace"},
        u"The column Serves of the table Recipes is calculated. Its values cannot be read."_s);
    add({"unknown-code-page.jet3", "unknown-code-page-of-column.jet3"},
        u"The texts of the table Recipes are in code page 4711, which this system cannot convert. "
        "Some systems have further code pages in a package of their own, glibc-gconv-extra or "
        "libc-gconv-modules-extra: install it and try again."_s);
    add({"later-version.jet4"},
        u"The file is in a later version of the Access format (7), which is not known here."_s);
}

void addValues()
{
    addCase({"plain.jet3", "plain.jet4", "plain.ace", "other-case.jet4", "other-order.jet3",
             "other-order.jet4", "variable-numbers.jet3", "variable-numbers.jet4", "key-alone.jet4",
             "password.jet3", "password.jet4", "map-with-long-texts.jet3",
             "map-with-long-texts.jet4", "other-signature.jet4", "seasoned.jet3", "seasoned.jet4",
             "map-on-pages.jet3", "map-on-pages.jet4", "map-on-pages.ace"},
            Recipes, soup + u"; "_s + bread);
    addCase({"seasoned.jet3", "seasoned.jet4", "other-order.jet3", "other-order.jet4"},
            RecipeIngredients, u"3 6 \"1 lb\"; 3 5 null; 7 99 \"\""_s);
    addCase({"other-types.jet3", "other-types.jet4"}, Recipes,
            u"3 \"Soup\" \"short\" \"\" 255 \"\" 2.25 4.2; "
            "3000000000 \"Bread\" \"\" \"\" 0 \"\" -1 0.1; "
            "7.5 \"Cake\" \"\" \"\" 0 \"\" 900000000000000.5 nan"_s);
    addCase({"other-types.jet3", "other-types.jet4"}, Ingredients,
            u"5 \"Leek\" 2 14 yes; 6 \"Ham\" 4 1 no; 7 \"Egg\" 4 1 null"_s);
    addCase({"decimals.jet4", "decimals.ace"}, Ingredients,
            u"4611686018427387904 \"Leek\" 12 14.5 yes; -6 \"Ham\" -3 -0.007 no; "
            "7 \"Egg\" 9223372036854775807 1e+25 no; 8 \"Oil\" null 1 no; 9 \"Salt\" 0 0 no"_s);
    addCase({"fixed-text.jet3", "fixed-text.jet4"}, Utensils, u"2 \"Pot \"; 3 null"_s);
    addCase({"added-column.jet3", "added-column.jet4"}, Recipes,
            u"3 \"Soup\" \"old\" null null null null null; "_s + bread);
    addCase({"added-column.jet3", "added-column.jet4"}, Ingredients,
            u"5 \"Leek\" null null no; 6 \"Ham\" 4 null no"_s);
    addCase({"long-definition.jet3", "long-definition.jet4"}, Utensils, u"2 \"Pot\"; 3 \"Pan\""_s);
    addCase({"second-part-of-map.jet3", "second-part-of-map.jet4"}, RecipeUtensils, u"3 2"_s);
    addCase({"moved-and-deleted.jet3", "moved-and-deleted.jet4"}, Utensils,
            u"1 \"one\"; 2 \"two\"; 4 \"four\"; 5 \"five\"; 6 \"six\""_s);

    QStringList longRows;
    constexpr std::array<std::pair<int, int>, 6> sizes{
        {{255, 255}, {0, 207}, {0, 213}, {600, 700}, {212, 0}, {213, 0}}};
    for (const auto &[name, author] : sizes)
        longRows += u"%1 \"%2\" \"b\" \"%3\" 1 \"d\" 5 2"_s.arg(longRows.size() + 1)
                        .arg(QString(name, u'a'), QString(author, u'c'));
    addCase({"long-rows.jet3"}, Recipes, longRows.join(u"; "_s));
}

void addTexts()
{
    addCase({"western.jet3"}, Utensils, u"1 \"Käse–Reibe €\"; 2 \"\u0081 \u009d \u2400\""_s);
    addCase({"unused-code-page.jet3"}, Utensils, u"1 \"Käse\""_s);
    addCase({"cyrillic.jet3", "code-page-of-column.jet3"}, Utensils, u"1 \"Кастрюля\""_s);
    addCase({"vietnamese.jet3"}, Utensils, u"1 \"chào\"; 2 \"a\u0300\""_s);
    addCase({"dos.jet3"}, Utensils, u"1 \"Töpfe ½\""_s);
    addCase({"japanese.jet3"}, Utensils, u"1 \"鍋 pot ﾅﾍﾞ\"; 2 \"\uFFFD\"; 3 \"鍋\uFFFD x\""_s);
    addCase({"compressed.jet4"}, Utensils,
            u"1 \"Pot\"; 2 \"Käse\"; 3 \"Топор x\"; 4 \"ab→cd\"; 5 \"\""_s);
    addCase({"letters.jet4"}, Utensils,
            u"1 \"🍲 pot\"; 2 \"a\u2400b\"; 3 \"a\uFFFD\"; 4 \"\uFFFDa\"; 5 \"\uFFFD🍲\"; "
            "6 \"ab🍲c\"; 9 \"ﾅ\""_s
                + unreadable(2, u"6 on page 17"_s, u"Utensils"_s));

    QStringList longTexts;
    for (const auto &[key, text] : {std::pair(1, letters(20)),
                                    {2, letters(900)},
                                    {3, letters(4800)},
                                    {4, QString()},
                                    {5, letters(5000)},
                                    {10, letters(60)},
                                    {12, u"after them"_s}})
        longTexts += u"%1 \"\" null null 1 \"%2\" null 2"_s.arg(key).arg(text);
    addCase({"long-texts.jet3", "long-texts.jet4"}, Recipes,
            longTexts.join(u"; "_s) + unreadable(6, u"5 on page 20"_s, u"Recipes"_s));
}

void addDamagedRows()
{
    const QString pages = u" (0 rows, %1 pages: Page 17, which belongs to the table %2, cannot be "
                          "read.)"_s;
    addCase({"map-with-other-pages.jet3", "map-with-other-pages.jet4"}, Recipes,
            soup + u"; "_s + bread + pages.arg(u"1"_s, u"Recipes"_s));
    addCase({"other-owner.jet3", "other-owner.jet4"}, Utensils,
            pages.arg(u"2"_s, u"Utensils"_s)); // the second one has no rows
    addCase({"index-node.jet3", "index-node.jet4", "usage-map.jet3", "usage-map.jet4"}, Utensils,
            pages.arg(u"1"_s, u"Utensils"_s));
    addCase({"endless-text.jet3"}, Recipes,
            bread + unreadable(1, u"0 on page 8268"_s, u"Recipes"_s));
    addCase({"endless-text.jet4"}, Recipes,
            bread + unreadable(1, u"0 on page 4128"_s, u"Recipes"_s));
    addCase({"too-many-rows.jet3", "too-many-rows.jet4"}, Utensils,
            u"2 \"Pot\""_s + pages.arg(u"1"_s, u"Utensils"_s));
    addCase({"damaged-rows.jet3", "damaged-rows.jet4"}, Utensils,
            u"1 \"one\"; 6 \"six\""_s + unreadable(4, u"1 on page 17"_s, u"Utensils"_s));
    addCase({"overlapping-rows.jet3"}, Utensils,
            u"1 \"one\"; 4 \"four\""_s + unreadable(2, u"1 on page 17"_s, u"Utensils"_s));
    addCase({"moved-elsewhere.jet4"}, Utensils,
            u"1 \"one\"; 7 \"seven\""_s + unreadable(5, u"1 on page 17"_s, u"Utensils"_s));
}

} // namespace

class tst_OldFiles : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void keptFiles_data()
    {
        QTest::addColumn<QString>("expected");
        QTest::newRow("jet3") << u"western"_s;
        QTest::newRow("jet4") << u"unicode"_s;
        QTest::newRow("ace") << u"unicode"_s;
    }

    void keptFiles()
    {
        QFETCH(const QString, expected);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const QByteArray json = bytesOf(QLatin1StringView(FILES) + expected + u".expected.json"_s);
        const QJsonObject tables = QJsonDocument::fromJson(json).object();
        const RecipeFile file(nativePath(QLatin1StringView(FILES) + name + u".rbk"_s));
        for (std::size_t i = 0; i < file.tableCount(); ++i) {
            const oldfiles::TableLayout &layout = oldfiles::recipeTables()[i];
            const QStringList rows =
                expectedRows(tables[oldfiles::toText(layout.name)].toObject(), layout);
            QVERIFY(!rows.isEmpty());
            QCOMPARE(rowsOf(file, i), rows);
            QCOMPARE(file.storedRows(i), rows.size());
            QCOMPARE(file.statedRows(i), static_cast<quint32>(rows.size()));
        }
        QCOMPARE(file.lastCounter(Recipes), 32U);
        QCOMPARE(file.otherTables(), QStringList{u"ShoppingList"_s});
        QCOMPARE(file.otherColumns(Recipes), QStringList{u"Source"_s});
    }

    void cases_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<std::size_t>("table");
        QTest::addColumn<QString>("expected");
        addErrors();
        addValues();
        addTexts();
        addDamagedRows();
    }

    void cases()
    {
        QFETCH(const QString, file);
        QFETCH(const std::size_t, table);
        QFETCH(const QString, expected);
        QCOMPARE(contents(QLatin1StringView(CASES) + file, table), expected);
    }

    void whatIsNotRead()
    {
        const RecipeFile file(casePath(u"more-than-ours.jet4"_s));
        QCOMPARE(file.otherTables(), QStringList{u"Shopping"_s});
        QCOMPARE(file.otherColumns(Utensils), (QStringList{u"Picture"_s, u"Bought"_s}));
        QCOMPARE(file.otherColumns(Recipes), QStringList());
        QCOMPARE(rowsOf(file, Utensils), QStringList{u"2 \"Pot\""_s});
    }

    void counts()
    {
        const RecipeFile file(casePath(u"other-counts.jet4"_s));
        QCOMPARE(file.statedRows(Recipes), 5U);
        QCOMPARE(file.lastCounter(Recipes), 40U);
        QCOMPARE(file.storedRows(Recipes), 2);
        QCOMPARE(file.statedRows(Ingredients), 0U);
        QCOMPARE(file.storedRows(Ingredients), 2);
    }

    void damagedCatalog()
    {
        const RecipeFile file(casePath(u"damaged-catalog.jet4"_s));
        QCOMPARE(file.catalogProblem(),
                 u"Row 7 on page 8, which belongs to the table MSysObjects, cannot be read."_s);
        QCOMPARE(RecipeFile(casePath(u"plain.jet4"_s)).catalogProblem(), QString());
    }

    void onlyTheColumnsAskedFor()
    {
        const RecipeFile file(casePath(u"long-texts.jet4"_s));
        constexpr std::array<std::size_t, 1> key{0};
        RowReader reader = file.rows(Recipes, key);
        QCOMPARE(rowsOf(reader).size(), 13); // damaged texts are not looked at
    }

    // The callback is asked before each page, also before those without a row that can be read.
    void stopping()
    {
        const RecipeFile file(casePath(u"long-rows.jet3"_s));
        int calls = 0;
        const auto isFirst = [&calls] { return ++calls == 1; };
        const qint64 rows = file.storedRows(Recipes, isFirst);
        QVERIFY(rows > 0 && rows < file.storedRows(Recipes));
        QCOMPARE(calls, 2);

        RowReader reader = file.rows(Recipes);
        reader.setPageCallback([] { return false; });
        QVERIFY(!reader.next());
        QVERIFY(reader.isStopped());
        QVERIFY(!reader.next());
    }

    // One bit can change two rows at most: both that it separates. Others are lost only if the
    // reader says so.
    void flippedBits_data()
    {
        QTest::addColumn<QString>("file");
        for (const char *const file : {"plain.jet3", "long-texts.jet3", "long-texts.jet4",
                                       "moved-and-deleted.jet4", "map-on-pages.jet4"})
            QTest::newRow(file) << QString::fromLatin1(file);
    }

    void flippedBits()
    {
        QFETCH(const QString, file);
        const auto copy = copyOf(file);
        const QByteArray bytes = copy->readAll();
        const Tables original = tablesOf(*copy);
        QVERIFY(!original.isEmpty());
        constexpr std::size_t headBits = std::size_t{8} * 8; // the kind and the owner of a page
        const std::size_t pageBits = file.endsWith(u"jet3") ? 8 * 2048 : 8 * 4096;
        std::mt19937 random(18); // NOLINT(cert-msc51-cpp): the same bits each time
        for (int i = 0; i < 3000; ++i) {
            auto bit = random() % static_cast<std::size_t>(8 * bytes.size());
            if (i % 4 == 0)
                bit -= bit % pageBits - bit % headBits;
            const auto position = static_cast<qsizetype>(bit / 8);
            setByte(*copy, position, static_cast<char>(bytes[position] ^ 1 << bit % 8));
            const Tables read = tablesOf(*copy);
            setByte(*copy, position, bytes[position]);
            const Place place = placeOf(bytes, position, file.endsWith(u"jet3"));
            if (place == Place::Elsewhere || (read.isEmpty() && place == Place::Lists))
                continue;
            QCOMPARE(read.size(), original.size());
            for (qsizetype table = 0; table < read.size(); ++table) {
                const ReadTable &now = read[table];
                const ReadTable &before = original[table];
                const bool isTold = now.unreadableRows > before.unreadableRows
                    || now.unreadablePages > 0
                    || (now.rows.size() < now.stated && place != Place::HeadOfRows);
                const QString failure = u"bit %1, table %2"_s.arg(bit).arg(table);
                QVERIFY2(countOthers(now.rows, before.rows) <= 2, qPrintable(failure));
                QVERIFY2(isTold || now.rows.size() >= before.rows.size(), qPrintable(failure));
                QVERIFY2(isTold || countOthers(before.rows, now.rows) <= 2, qPrintable(failure));
            }
        }
    }

    // What can be read of a file that is cut is as it was, and the reader says that there was more.
    void truncations()
    {
        for (const QString &file : {u"plain.jet3"_s, u"long-texts.jet4"_s}) {
            const auto copy = copyOf(file);
            const Tables original = tablesOf(*copy);
            QVERIFY(!original.isEmpty());
            int readable = 0;
            for (qint64 size = copy->size() - 1; size >= 0; size -= 509) {
                copy->resize(size);
                const Tables read = tablesOf(*copy);
                readable += read.isEmpty() ? 0 : 1;
                for (qsizetype table = 0; table < read.size(); ++table) {
                    const ReadTable &now = read[table];
                    QCOMPARE(countOthers(now.rows, original[table].rows), 0);
                    QVERIFY(now.unreadablePages + now.unreadableRows > 0
                            || now.rows.size() == original[table].rows.size());
                }
            }
            QVERIFY(readable > 10); // no less than the pages after the catalog
        }
    }

    void notAFile()
    {
        QCOMPARE(contents(m_folder.path(), Recipes), u"This is not a file in the Access format."_s);
        const QString shortFile = m_folder.filePath(u"short"_s);
        setBytes(shortFile, bytesOf(QLatin1StringView(CASES) + u"plain.jet3"_s).first(13));
        QCOMPARE(contents(shortFile, Recipes), u"The file is damaged: it ends too early."_s);
        QVERIFY(contents(m_folder.filePath(u"none"_s), Recipes)
                    .startsWith(u"The file cannot be opened: "));
    }

private:
    struct ReadTable {
        QStringList rows;
        qint64 unreadableRows;
        qint64 unreadablePages;
        qint64 stated;
    };
    using Tables = QList<ReadTable>;

    static std::filesystem::path casePath(const QString &name)
    {
        return nativePath(QLatin1StringView(CASES) + name);
    }

    // A file that each test damages in place: writing all of it each time would wait for the disk.
    std::unique_ptr<QFile> copyOf(const QString &name)
    {
        const QString path = m_folder.filePath(u"copy"_s);
        setBytes(path, bytesOf(QLatin1StringView(CASES) + name));
        auto file = std::make_unique<QFile>(path);
        file->open(QIODevice::ReadWrite | QIODevice::Unbuffered);
        return file;
    }

    static void setByte(QFile &file, qint64 position, char byte)
    {
        QVERIFY(file.seek(position) && file.putChar(byte));
    }

    // What the byte belongs to: the rows of a table or of long texts with their places, the owner
    // and kind of their page, the list of tables or a list of pages, or what has no rows.
    enum class Place { Rows, HeadOfRows, Lists, Elsewhere };

    static Place placeOf(const QByteArray &bytes, qsizetype position, bool isJet3)
    {
        const qsizetype offset = position % (isJet3 ? 2048 : 4096);
        const qsizetype start = position - offset;
        const QByteArray owner = bytes.mid(start + 4, 4);
        if (bytes[start] != 1)
            return Place::Elsewhere;
        if (owner == QByteArray(4, '\0') || owner == QByteArray("\2\0\0\0", 4))
            return Place::Lists;
        return offset < 8 ? Place::HeadOfRows : Place::Rows;
    }

    // Returns all rows that can be read; none if the file cannot.
    static Tables tablesOf(const QFile &copy)
    {
        Tables tables;
        try {
            const RecipeFile file(nativePath(copy.fileName()));
            for (std::size_t i = 0; i < file.tableCount(); ++i)
                tables += read(file, i);
        } catch (const Error &) {
            tables.clear();
        }
        return tables;
    }

    static ReadTable read(const RecipeFile &file, std::size_t table)
    {
        RowReader reader = file.rows(table);
        const QStringList rows = rowsOf(reader);
        return {rows, reader.unreadableRows(), reader.unreadablePages(), file.statedRows(table)};
    }

    static qsizetype countOthers(const QStringList &rows, const QStringList &original)
    {
        return std::ranges::count_if(rows,
                                     [&](const QString &row) { return !original.contains(row); });
    }
};

QTEST_GUILESS_MAIN(tst_OldFiles)
#include "tst_oldfiles.moc"
