#include "Criterion.h"
#include "RecipeFile.h"
#include "RecordCursor.h"

#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class TestSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void staysGoodInThePlainTool();
};

// The tool folds ASCII alone: a file that it finds disorder in would be one that it damages.
void TestSchema::staysGoodInThePlainTool()
{
    const RecipeFile file;
    const auto database = Database::open(file.path());
    const std::array columns = {"RecipeName"_L1, "IngredientName"_L1, "UtensilName"_L1};
    const std::array tables = {u"Recipes"_s, u"Ingredients"_s, u"Utensils"_s};
    for (std::size_t i = 0; i < tables.size(); ++i) {
        RecordCursor cursor(database, tables[i]);
        for (const QString &name :
             {u"éclair"_s, u"ẞalz"_s, u"ÉCLAIR"_s, u"σ"_s, u"Σ"_s, u"O'Neil"_s}) {
            cursor.AddNew();
            cursor.setValue(columns[i], name);
            cursor.Update();
        }
    }

    QProcess tool;
    tool.setProcessChannelMode(QProcess::MergedChannels);
    tool.start(u"sqlite3"_s,
               {file.path(),
                u"PRAGMA integrity_check; PRAGMA application_id; PRAGMA user_version;"
                u"UPDATE Recipes SET RecipeName = upper(RecipeName) || 'x';"
                u"DELETE FROM Utensils WHERE UtensilName = 'O''NEIL'; PRAGMA integrity_check;"_s});
    QVERIFY(tool.waitForFinished());
    QCOMPARE(tool.readAll(),
             "ok\n" + QByteArray::number(applicationId) + '\n' + QByteArray::number(schemaVersion)
                 + "\nok\n");
    RecordCursor recipes(database, tables[0]);
    recipes.FindFirst(criterion(columns[0], Comparison::Equal, u"ΣX"_s));
    QVERIFY(!recipes.NoMatch());
}

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
