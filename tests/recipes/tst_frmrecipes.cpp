#include "ListFixture.h"
#include "catalogs/frmIngredient.h"

#include <QHeaderView>
#include <QScrollBar>

using namespace Qt::Literals::StringLiterals;

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

    void toolTip()
    {
        const ListFixture list("INSERT INTO Recipes (Description) VALUES ('" + QByteArray(1001, '<')
                               + "')");
        QCOMPARE(list.table.model()->index(0, 1).data(Qt::ToolTipRole).toString(),
                 u"<qt>"_s + u"&lt;"_s.repeated(1000) + u"…</qt>"_s);
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
            QCOMPARE(list.form.focusWidget()->objectName(), u"cmdView"_s);
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
        ListFixture list("INSERT INTO Recipes (RecipeName) VALUES ('Recipe b'), ('aa'), ('Rice')");
        RecipeTable &table = list.table;
        table.clearSelection();
        QVERIFY(!list.canView());
        QTest::keyClick(&table, Qt::Key_Return);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, {250, 5}); // in another column
        QTest::keyClicks(&table, u"re"_s);
        QCOMPARE(list.selected(), u"Recipe b"_s);
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, {20, 200}); // below the rows
        QVERIFY(!list.opened());
        const QPoint row = table.visualRect(table.currentIndex()).center();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, row);
        QTest::mouseDClick(table.viewport(), Qt::RightButton, {}, row);
        QVERIFY(!list.opened());
        QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, row);
        QCOMPARE(list.opened()->title(), u"Recipe b"_s);
        press(*list.opened(), u"cmdDone"_s);
        QTest::keyClick(&table, Qt::Key_Escape);
        QVERIFY(!list.frame.find<frmRecipes>());
    }

    void opensForTheFirstRecipe_data()
    {
        QTest::addColumn<std::function<void(ListFixture &)>>("open");
        const auto row = [](const char *name, const std::function<void(ListFixture &)> &open) {
            QTest::newRow(name) << open;
        };
        row("View", [](ListFixture &list) { press(list.form, u"cmdView"_s); });
        row("Enter", [](ListFixture &list) { QTest::keyClick(&list.table, Qt::Key_Return); });
        row("double click", [](ListFixture &list) { list.doubleClick({200, 100}); });
    }
    void opensForTheFirstRecipe()
    {
        QFETCH(const std::function<void(ListFixture &)>, open);
        ListFixture list("");
        QVERIFY(list.table.placeholderText().startsWith("No recipes yet."_L1));
        open(list);
        QVERIFY(list.opened());
        QCOMPARE(list.opened()->recipeId(), 0);
    }

    void doubleClickInTheListBehind_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("change"); // by another program
        QTest::addColumn<QString>("pointedAt");
        QTest::addColumn<bool>("opens");
        const QString name = u"Recipe 056"_s;
        const auto row = [&](const char *label, const QByteArray &sql, bool isOpened) {
            QTest::newRow(label) << 100 << sql << name << isOpened;
        };
        row("same rows", "", true);
        row("a row before", "INSERT INTO Recipes (RecipeName) VALUES ('A')", true);
        row("rows before gone", "DELETE FROM Recipes WHERE RecipeID < 20", true);
        row("a row between", "INSERT INTO Recipes (RecipeName) VALUES ('Recipe 050b')", true);
        row("rows at the top gone", "DELETE FROM Recipes WHERE RecipeID IN (46, 47, 48)", true);
        row("that row gone", "DELETE FROM Recipes WHERE RecipeID = 56", false);
        QTest::newRow("cannot be scrolled")
            << 3 << QByteArray("INSERT INTO Recipes (RecipeName) VALUES ('A')") << u"Recipe 002"_s
            << false;
    }
    // It opens the recipe under the mouse or none.
    void doubleClickInTheListBehind()
    {
        QFETCH(int, count);
        QFETCH(QByteArray, change);
        QFETCH(QString, pointedAt);
        QFETCH(bool, opens);
        ListFixture list("WITH RECURSIVE n(i) AS (SELECT 1 UNION SELECT i + 1 FROM n WHERE i < "
                         + QByteArray::number(count)
                         + ") INSERT INTO Recipes (RecipeName)"
                           " SELECT printf('Recipe %03d', i) FROM n");
        list.resize(1500, 800);
        list.form.parentWidget()->resize(400, 500);
        list.table.verticalScrollBar()->setValue(45);
        list.table.horizontalScrollBar()->setValue(70);
        list.open<frmRecipe>().parentWidget()->move(700, 0);

        list.sql(change);
        list.doubleClick(list.middleOf(pointedAt));
        QCOMPARE(list.opened() != nullptr, opens);
        if (!opens)
            return;
        QCOMPARE(list.opened()->title(), pointedAt);
        press(*list.opened(), u"cmdDone"_s);
        QCOMPARE(list.selected(), list.table.model()->index(0, 0).data().toString());
        QCOMPARE(list.table.horizontalScrollBar()->value(), 70);
        if (change.isEmpty())
            QCOMPARE(list.table.verticalScrollBar()->value(), 45);
        list.sql("INSERT INTO Recipes (RecipeName) VALUES ('0')");
        list.open<frmRecipes>();
        QCOMPARE(list.selected(), u"0"_s);
        QCOMPARE(list.table.verticalScrollBar()->value(), 0);
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

    // A list that cannot be read says so, and the rows follow what was clicked in that time.
    void failedRead()
    {
        ListFixture list("INSERT INTO Recipes (RecipeName, Serves) VALUES ('a', 2), ('b', 1)");
        QVERIFY(list.canView());
        control<QPushButton>(list.form, u"cmdView"_s).setFocus();
        SQLite::Database other = list.file.other();
        other.exec("BEGIN EXCLUSIVE");
        list.interaction.expect(WindowFixture::failure(
            u"Recipes"_s,
            u"The recipe database %1 is in use by another program. Wait until that program is done, or end it, and try again."_s
                .arg(list.file.path())));
        list.open<frmRecipes>(); // reads again, since it is active
        QVERIFY(list.table.placeholderText().startsWith("The recipes could not be read."_L1));
        QVERIFY(!list.canView());
        QVERIFY(list.table.hasFocus()); // not Close, which the next Enter would press
        list.doubleClick({200, 100});
        QVERIFY(!list.opened());
        list.clickHeader(3);
        other.exec("COMMIT");
        list.open<frmRecipes>();
        QCOMPARE(list.column(0), u"b|a"_s);
        QCOMPARE(list.selected(), u"b"_s);
        QVERIFY(list.canView());
    }

    // Ingredients keeps the activation, so that the list waits behind it.
    void notReadYet()
    {
        WindowFixture main("INSERT INTO Recipes (RecipeName) VALUES ('a')");
        main.open<frmIngredient>();
        const auto &list = main.open<frmRecipes>();
        const auto &table = control<RecipeTable>(list, u"lvwRecipes"_s);
        QCOMPARE(main.frame.activeChild(), main.frame.find<frmIngredient>());
        QCOMPARE(table.placeholderText(), QString());
        QVERIFY(!control<QPushButton>(list, u"cmdView"_s).isEnabled());
    }
};

QTEST_MAIN(tst_frmRecipes)
#include "tst_frmrecipes.moc"
