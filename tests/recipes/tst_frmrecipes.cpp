#include "recipes/RecipeTable.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/WindowFixture.h"

#include <QHeaderView>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ListFixture : WindowFixture {
    explicit ListFixture(const QByteArray &rows)
        : WindowFixture(rows)
    {
    }

    QString column(int number) const
    {
        QStringList texts;
        for (int row = 0; row < table.model()->rowCount(); ++row)
            texts += table.model()->index(row, number).data().toString();
        return texts.join(u'|');
    }
    QString selected() const
    {
        const QModelIndexList rows = table.selectionModel()->selectedRows();
        return rows.size() == 1 ? rows.constFirst().data().toString() : u"none"_s;
    }
    void clickHeader(int column) const
    {
        const QHeaderView *header = table.header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    frmRecipe *opened()
    {
        QCoreApplication::processEvents();
        auto *recipe = frame.find<frmRecipe>();
        return recipe && frame.activeChild() == recipe ? recipe : nullptr;
    }

    frmRecipes &form = open<frmRecipes>();
    RecipeTable &table = control<RecipeTable>(form, u"lvwRecipes"_s);
};

} // namespace

class tst_frmRecipes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cellsAndOrders()
    {
        const ListFixture list("INSERT INTO Recipes (RecipeID, RecipeName, Description, RecipeType,"
                               " Serves) VALUES (1, 'soup', 'two\r\nlines', 0, 4.5),"
                               " (2, 'Éclair', NULL, 12, NULL), (3, 'Zwieback', '', 0, 12),"
                               " (4, 'eel', 'Two lines', 9, 4.5);"
                               "INSERT INTO RecipeIngredients SELECT 3, 1, '' FROM"
                               " json_each('[1,2,3,4,5,6,7,8,9]');"
                               "INSERT INTO RecipeIngredients SELECT 1, 1, '' FROM"
                               " json_each('[1,2,3,4,5,6,7,8,9,10]')");
        // The cursor's order, by type, is soup, Zwieback, eel, Éclair; equal texts keep it.
        const std::pair<QString, QString> expected[] = {
            {u"Éclair|eel|soup|Zwieback"_s, u"Éclair|eel|soup|Zwieback"_s},
            {u"Zwieback|Éclair|soup|eel"_s, u"||two lines|Two lines"_s},
            {u"eel|Éclair|soup|Zwieback"_s, u"0|0|10|9"_s},
            {u"Éclair|Zwieback|soup|eel"_s, u"|12|4.5|4.5"_s}};
        for (int number = 0; number < 4; ++number) {
            if (number > 0) { // a second click does not reverse the order
                list.clickHeader(number);
                list.clickHeader(number);
            }
            QCOMPARE(list.column(0), expected[number].first);
            QCOMPARE(list.column(number), expected[number].second);
            QCOMPARE(list.table.header()->sortIndicatorSection(), number);
            QCOMPARE(list.table.header()->sortIndicatorOrder(), Qt::AscendingOrder);
            QCOMPARE(list.selected(), u"Éclair"_s); // the row selected at first stays selected
        }
        QTest::keyClick(&list.table, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(list.column(0), expected[1].first);
    }

    void comingBack()
    {
        ListFixture list("INSERT INTO Recipes (RecipeName, Serves) VALUES ('a', 2), ('b', 1)");
        list.clickHeader(3);
        list.table.setCurrentIndex(list.table.model()->index(1, 0));
        for (const auto &[change, order] :
             {std::pair("", u"b|a"_s),
              {"INSERT INTO Recipes (RecipeName, Serves) VALUES ('c', 0)", u"c|b|a"_s},
              {"UPDATE Recipes SET Serves = 9 WHERE RecipeName = 'c'", u"b|a|c"_s}}) {
            press(list.form, u"cmdView"_s);
            QVERIFY(list.opened());
            list.sql(change);
            press(*list.opened(), u"cmdDone"_s);
            QCOMPARE(list.frame.activeChild(), &list.form);
            QCOMPARE(list.column(0), order);
            QCOMPARE(list.selected(), order.first(1));
        }
    }

    void sameTitles()
    {
        ListFixture list("INSERT INTO Recipes (RecipeName) VALUES ('Twice'), ('Twice')");
        for (const int row : {0, 1}) {
            list.table.setCurrentIndex(list.table.model()->index(row, 0));
            press(list.form, u"cmdView"_s);
            QCOMPARE(list.opened()->recipeId(), row + 1);
            press(*list.opened(), u"cmdDone"_s);
        }
    }

    void openingAndClosing()
    {
        ListFixture empty("");
        QTest::keyClick(&empty.table, Qt::Key_Return);
        QVERIFY(!empty.opened());

        ListFixture list("INSERT INTO Recipes (RecipeName) VALUES ('Recipe b'), ('aa'), ('Rice')");
        RecipeTable &table = list.table;
        table.clearSelection();
        QVERIFY(!control<QPushButton>(list.form, u"cmdView"_s).isEnabled());
        QTest::keyClick(&table, Qt::Key_Return);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, {250, 5}); // in another column
        QTest::keyClicks(&table, u"re"_s);
        QCOMPARE(list.selected(), u"Recipe b"_s);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, {20, 200}); // below the rows
        QVERIFY(!list.opened());
        const QPoint row = table.visualRect(table.currentIndex()).center();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, row);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, row);
        QCOMPARE(list.opened()->title(), u"Recipe b"_s);
        press(*list.opened(), u"cmdDone"_s);
        QTest::keyClick(&table, Qt::Key_Escape);
        QVERIFY(!list.frame.find<frmRecipes>());
    }
};

QTEST_MAIN(tst_frmRecipes)
#include "tst_frmrecipes.moc"
