#include "recipes/RecipeTable.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/WindowFixture.h"

#include <QHeaderView>
#include <QMdiSubWindow>

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
            QCOMPARE(list.opened()->CurrentRecipeID, row + 1);
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

    void columnWidths_data()
    {
        QTest::addColumn<int>("dragged"); // column, or -1 for none
        QTest::addColumn<QList<int>>("sizes");
        const QList<int> inSteps{801, 802, 803, 804, 1000, 997, 994,
                                 991, 500, 700, 699, 698,  697, 900};
        QTest::newRow("in steps") << -1 << inSteps;
        QTest::newRow("the user's width of the first") << 0 << inSteps;
        QTest::newRow("the user's width of the second") << 1 << inSteps;
    }
    // The columns depend on the last width alone.
    void columnWidths()
    {
        QFETCH(int, dragged);
        QFETCH(QList<int>, sizes);
        ListFixture list("");
        const QHeaderView &header = *list.table.header();
        const auto resize = [&](int width) { list.form.parentWidget()->resize(width, 500); };
        const auto widths = [&] {
            return QList{header.sectionSize(0), header.sectionSize(1), header.sectionSize(2)};
        };
        const QList<int> narrow = widths();
        resize(900);
        QVERIFY(widths().at(0) > narrow.at(0) && widths().at(1) > narrow.at(1));
        if (dragged >= 0) {
            const QPoint edge(header.sectionViewportPosition(dragged + 1) - 1, 10);
            QTest::mousePress(header.viewport(), Qt::LeftButton, {}, edge);
            QTest::mouseMove(header.viewport(), edge - QPoint(50, 0));
            QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, edge - QPoint(50, 0));
        }
        const QList<int> before = widths();
        for (const int size : sizes) {
            resize(size);
            if (dragged >= 0)
                QCOMPARE(widths().at(dragged), before.at(dragged));
        }
        QCOMPARE(widths(), before);
    }
};

QTEST_MAIN(tst_frmRecipes)
#include "tst_frmrecipes.moc"
