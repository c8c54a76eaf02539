#include "ActionStatement.h"

#include <QTest>

class TestActionStatement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropsTheColumnListOfADeleteAndNothingElse();
};

void TestActionStatement::dropsTheColumnListOfADeleteAndNothingElse()
{
    for (const auto &[statement, expected] : {
             std::pair("DELETE RecipeUtensils.* From RecipeUtensils "
                       "WHERE (((RecipeUtensils.RecipeID)=-7))",
                       "DELETE From RecipeUtensils WHERE (((RecipeUtensils.RecipeID)=-7))"),
             std::pair(" \n delete\tT.*\r\n from T", "DELETE\r\n from T"),
             std::pair("DELETE T.* From T WHERE N='DELETE T.* From T'",
                       "DELETE From T WHERE N='DELETE T.* From T'"),
         })
        QCOMPARE(translatedStatement(statement), std::string(expected));
    for (const char *statement :
         {"", "DELETE ", " DELETE FROM T WHERE N='T.* From'", "DELETE 'T.* From' T",
          "DELETES T.* From T", "UPDATE T SET N='DELETE T.* From T'", "SELECT T.* FROM T"})
        QCOMPARE(translatedStatement(statement), std::string(statement));
}

QTEST_GUILESS_MAIN(TestActionStatement)
#include "tst_actionstatement.moc"
