#include "ActionStatement.h"

#include <QTest>

class TestActionStatement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void translates_data();
    void translates();
};

void TestActionStatement::translates_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const char *statement, const char *expected) {
        QTest::newRow(name) << QByteArray(statement) << QByteArray(expected);
    };
    const auto unchanged = [](const char *statement) {
        QTest::newRow(statement) << QByteArray(statement) << QByteArray(statement);
    };
    row("ingredients",
        "DELETE RecipeIngredients.* From RecipeIngredients "
        "WHERE (((RecipeIngredients.RecipeID)=7))",
        "DELETE From RecipeIngredients WHERE (((RecipeIngredients.RecipeID)=7))");
    row("utensils",
        "DELETE RecipeUtensils.* From RecipeUtensils WHERE (((RecipeUtensils.RecipeID)=-7))",
        "DELETE From RecipeUtensils WHERE (((RecipeUtensils.RecipeID)=-7))");
    row("any case and blanks", " \n delete\tT.*\r\n from T", "DELETE\r\n from T");
    row("quotes behind it", "DELETE T.* From T WHERE N='DELETE T.* From T'",
        "DELETE From T WHERE N='DELETE T.* From T'");
    unchanged("");
    unchanged("DELETE");
    unchanged("DELETE ");
    unchanged(" DELETE FROM T WHERE N='T.* From'");
    unchanged("DELETE FROM 'T.*'");
    unchanged("DELETE 'a b.* From T");
    unchanged("DELETE \"T.*\" From T");
    unchanged("DELETES T.* From T");
    unchanged("UPDATE T SET N='DELETE T.* From T'");
    unchanged("SELECT T.* FROM T");
}

void TestActionStatement::translates()
{
    QFETCH(const QByteArray, statement);
    QFETCH(const QByteArray, expected);
    QCOMPARE(QByteArray::fromStdString(translatedStatement(statement.toStdString())), expected);
}

QTEST_GUILESS_MAIN(TestActionStatement)
#include "tst_actionstatement.moc"
