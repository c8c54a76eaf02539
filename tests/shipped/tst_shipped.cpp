#include "DatabasePath.h"
#include "FileBytes.h"
#include "IngredientLine.h"
#include "RecipeTypes.h"
#include "SrfDecoder.h"
#include "SrfParser.h"
#include "StrictDoorway.h"
#include "frmImportRecipe.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class TestShipped : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesTheRecipeFileOnce();
    void saysWhereATableIsWrong();
    void recipesUseTheCatalogs();

private:
    QString inFolder(const QString &name) const { return m_folder.filePath(name); }
    QString make(const QString &name, const QString &ingredients = m_data + "ingredients.txt"_L1);

    static inline const QString m_data = QStringLiteral(DATA);
    const QTemporaryDir m_folder;
};

// What the tool says, without the file's name in front.
QString TestShipped::make(const QString &name, const QString &ingredients)
{
    QProcess tool;
    tool.start(QStringLiteral(MAKEDATABASE),
               {inFolder(name), ingredients, m_data + "utensils.txt"_L1});
    if (!tool.waitForFinished())
        return tool.errorString();
    return QString::fromUtf8(tool.readAllStandardError().trimmed())
        .remove("makedatabase: "_L1 + inFolder(name) + ": "_L1);
}

void TestShipped::makesTheRecipeFileOnce()
{
    setBytes(inFolder(u"mine.rbk"_s), "mine");
    QCOMPARE(make(u"mine.rbk"_s), QString());
    QCOMPARE(bytesOf(inFolder(u"mine.rbk"_s)), "mine");
    QCOMPARE(make(u"data.rbk"_s), QString());
}

void TestShipped::saysWhereATableIsWrong()
{
    const std::pair<QByteArray, QString> table[] = {
        {"Salt|Seasoning|999", u"3 fields instead of 4"_s},
        {"|Seasoning|999|True", u"the name is empty"_s},
        {"Salt (fine)|Seasoning|999|True", u"holds a character"_s},
        {"Salt of the very, very deep sea|Seasoning|999|True", u"longer than 25"_s},
        {"apple|Fruit|30|True", u"apple stands here twice"_s},
        {"Ale|Misc|30|True", u"Ale belongs in front of Apple"_s},
        {"Salt|Spice|999|True", u"the type is none of Misc, Fruit,"_s},
        {"Salt|Seasoning|1000|True", u"the shelf life"_s},
        {"Salt|Seasoning|999|perhaps", u"Vegetarian"_s},
        {"Cr\xE8me|Dairy|9|True", u"UTF-8"_s},
    };
    const QString file = inFolder(u"table.txt"_s);
    for (const auto &[line, message] : table) {
        setBytes(file, "# fruit\nApple | Fruit | 30 | True\n" + line + '\n');
        const QString said = make(u"bad.rbk"_s, file);
        QVERIFY2(said.startsWith(file + ":3: "_L1) && said.contains(message), qPrintable(said));
        QVERIFY(QDir(m_folder.path()).entryList({u"bad*"_s}).isEmpty());
    }
}

// Every entry says of its ingredient what the catalog says, in the same words.
void TestShipped::recipesUseTheCatalogs()
{
    DatabasePath = inFolder(u"data.rbk"_s);
    SQLite::Database database(DatabasePath.toStdString());
    const auto texts = [&database](const char *query) {
        QSet<QString> result;
        for (SQLite::Statement statement(database, query); statement.executeStep();)
            result += QString::fromStdString(statement.getColumn(0).getString());
        return result;
    };
    const QSet<QString> ingredients =
        texts("SELECT IngredientName || '|' || IngredientType || '|' || ShelfLife || '|' || "
              "CASE Vegetarian WHEN 1 THEN 'True' ELSE 'False' END || '||' FROM Ingredients");
    const QSet<QString> utensils = texts("SELECT UtensilName FROM Utensils");

    StrictDoorway doorway;
    frmImportRecipe importer(doorway);
    importer.Form_Load();
    importer.openDataSources();
    const QDir recipes(m_data + "recipes"_L1);
    for (const QString &name : recipes.entryList({u"*.srf"_s})) {
        const QString path = recipes.filePath(name);
        QCOMPARE(importer.ImportSRFFile(path), frmImportRecipe::Outcome::Imported);
        const auto recipe = std::get<SrfRecipe>(parseSrf(decodeSrf(bytesOf(path))));
        for (const auto &[ingredient, quantity, entry, line] : recipe.ingredients) {
            QVERIFY2(ingredients.contains(entry.chopped(quantity.size())), qPrintable(entry));
            QCOMPARE(quantityText(quantity, {}, {}), quantity);
        }
        for (const SrfUtensil &utensil : recipe.utensils)
            QVERIFY2(utensils.contains(utensil.name), qPrintable(utensil.name));
    }
    QCOMPARE(texts("SELECT RecipeType FROM Recipes").size(), recipeTypes().size());
}

QTEST_GUILESS_MAIN(TestShipped)
#include "tst_shipped.moc"
