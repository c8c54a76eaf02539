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
    const QStringList names = {u"éclair"_s, u"ẞalz"_s, u"ÉCLAIR"_s, u"eclair"_s,
                               u"σ"_s,      u"Σ"_s,    u"O'Neil"_s, u"나물"_s};
    const RecipeFile file;
    const auto database = Database::open(file.path());
    for (const Table &table : schemaTables()) {
        const QString name =
            QString::fromLatin1(table.name.data(), static_cast<qsizetype>(table.name.size()));
        RecordCursor cursor(database, name);
        for (const QString &text : names) {
            cursor.AddNew();
            for (const Field &field : table.fields) {
                const QLatin1StringView column(field.name.data(),
                                               static_cast<qsizetype>(field.name.size()));
                if (field.type != FieldType::Key)
                    cursor.setValue(column, field.type == FieldType::Text ? QVariant(text) : 1);
                else if (!table.hasKey)
                    cursor.setValue(column, 1);
            }
            cursor.Update();
        }
    }

    QProcess tool;
    tool.start(u"sqlite3"_s,
               {file.path(),
                u"PRAGMA integrity_check; PRAGMA application_id; PRAGMA user_version;"
                u"UPDATE Recipes SET RecipeName = upper(RecipeName) || 'x' WHERE Rating = 1;"
                u"DELETE FROM Utensils WHERE UtensilName = 'O''NEIL'; PRAGMA integrity_check;"
                u"SELECT IngredientName FROM Ingredients ORDER BY IngredientID;"_s});
    QVERIFY(tool.waitForFinished());
    QCOMPARE(QString::fromUtf8(tool.readAllStandardError()), QString());
    const QStringList lines =
        QString::fromUtf8(tool.readAllStandardOutput()).trimmed().split(u'\n');
    QCOMPARE(lines,
             QStringList(
                 {u"ok"_s, QString::number(applicationId), QString::number(schemaVersion), u"ok"_s})
                 + names);

    const QString source = u"Recipes"_s;
    RecordCursor recipes(database, source);
    recipes.FindFirst(criterion("RecipeName"_L1, Comparison::Equal, u"ΣX"_s));
    QVERIFY(!recipes.NoMatch());
}

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
