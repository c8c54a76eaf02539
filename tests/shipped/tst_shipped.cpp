#include "composition/ComposedRecipe.h"
#include "data/DatabasePath.h"
#include "data/TypesAndRatings.h"
#include "import/frmImportRecipe.h"
#include "import/srf/SrfFile.h"
#include "import/srf/SrfParser.h"
#include "platform/Paths.h"
#include "platform/Utf8.h"
#include "support/FileBytes.h"
#include "support/MockInteraction.h"
#include "support/Rows.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class tst_Shipped : public QObject
{
    Q_OBJECT

    // Runs the tool and returns what it writes to its standard error.
    QString make(const QString &file, const QString &ingredients = m_data + "ingredients.txt"_L1)
    {
        QProcess tool;
        tool.start(QStringLiteral(MAKEDATABASE), {file, ingredients, m_data + "utensils.txt"_L1});
        return tool.waitForFinished() ? QString::fromUtf8(tool.readAllStandardError())
                                      : tool.errorString();
    }

    static QSet<QString> texts(const char *query)
    {
        SQLite::Database database(DatabasePath.toStdString());
        QSet<QString> result;
        for (SQLite::Statement statement(database, query); statement.executeStep();)
            result += QString::fromStdString(statement.getColumn(0).getString());
        return result;
    }

    static inline const QString m_data = QStringLiteral(DATA);
    const QTemporaryDir m_folder;

private Q_SLOTS:
    void makesTheRecipeFileOnce()
    {
        const QString file = m_folder.filePath(u"mine.rbk"_s);
        setBytes(file, "mine");
        QCOMPARE(make(file), QString());
        QCOMPARE(bytesOf(file), "mine");
    }

    void badLines_data()
    {
        addRows<QByteArray, QString>({
            {"missing field", "Salt|Seasoning|999", u"3 fields instead of 4"_s},
            {"parenthesis", "Salt (fine)|Seasoning|999|True", u"contains a character"_s},
            {"name in other case", "apple|Fruit|30|True", u"apple is listed twice"_s},
            {"out of order", "Ale|Misc|30|True", u"Ale must come before Apple"_s},
            {"unknown type", "Salt|Spice|999|True", u"the type must be one of Misc, Fruit,"_s},
            {"long shelf life", "Salt|Seasoning|1000|True", u"the shelf life"_s},
            {"vegetarian", "Salt|Seasoning|999|perhaps", u"Vegetarian"_s},
        });
    }

    void badLines()
    {
        const auto [line, message] = fetchRow<QByteArray, QString>();
        const QString table = m_folder.filePath(u"table.txt"_s);
        setBytes(table, "# fruit\nApple | Fruit | 30 | True\n" + line + '\n');
        const QString output = make(m_folder.filePath(u"bad.rbk"_s), table);
        QVERIFY2(output.contains(table + ":3: "_L1) && output.contains(message),
                 qPrintable(output));
        QVERIFY(QDir(m_folder.path()).entryList({u"bad*"_s}).isEmpty());
    }

    // The fields of every ingredient are those in the catalog, letter for letter.
    void recipesUseTheCatalogs()
    {
        DatabasePath = m_folder.filePath(u"data.rbk"_s);
        QCOMPARE(make(DatabasePath), QString());
        const QSet<QString> ingredients =
            texts("SELECT printf('%s|%d|%d|%s||', IngredientName, IngredientType, ShelfLife, "
                  "iif(Vegetarian, 'True', 'False')) FROM Ingredients");
        const QSet<QString> utensils = texts("SELECT UtensilName FROM Utensils");
        MockInteraction interaction;
        frmImportRecipe importer(interaction);
        importer.Form_Load();
        const QDir recipes(m_data + "recipes"_L1);
        for (const QString &name : recipes.entryList({u"*.srf"_s})) {
            const QString path = recipes.filePath(name);
            QCOMPARE(importer.ImportSRFFile(platform::nativePath(path)),
                     frmImportRecipe::Outcome::Imported);
            const auto recipe = std::get<SrfRecipe>(parseSrf(decodeSrf(bytesOf(path))));
            for (const auto &[ingredient, quantity, entry, line] : recipe.ingredients) {
                const QString amount = platform::decodeUtf8(quantity);
                const QString known = platform::decodeUtf8(entry).chopped(amount.size());
                QVERIFY2(ingredients.contains(known), qPrintable(known));
                QCOMPARE(quantityText(amount, {}, {}), amount);
            }
            for (const SrfUtensil &each : recipe.utensils) {
                const QString utensil = platform::decodeUtf8(each.name);
                QVERIFY2(utensils.contains(utensil), qPrintable(utensil));
            }
        }
        QCOMPARE(texts("SELECT RecipeType FROM Recipes").size(), recipeTypes().size());
    }
};

QTEST_GUILESS_MAIN(tst_Shipped)
#include "tst_shipped.moc"
