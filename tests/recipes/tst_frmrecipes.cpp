#include "Kitchen.h"
#include "RecipeTable.h"
#include "frmRecipe.h"
#include "frmRecipes.h"

#include <QHeaderView>

using namespace Qt::Literals::StringLiterals;

namespace {

struct List {
    explicit List(const QByteArray &rows)
        : kitchen(rows)
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
        auto *recipe = kitchen.frame.find<frmRecipe>();
        return recipe && kitchen.frame.activeChild() == recipe ? recipe : nullptr;
    }

    Kitchen kitchen;
    frmRecipes &form = kitchen.open<frmRecipes>();
    RecipeTable &table = control<RecipeTable>(form, u"lvwRecipes"_s);
};

} // namespace

class tst_frmRecipes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cellsAndOrders()
    {
        const List list("INSERT INTO Recipes (RecipeID, RecipeName, Description, RecipeType,"
                        " Serves) VALUES (1, 'soup', 'two\r\nlines', 0, 4.5),"
                        " (2, 'Éclair', NULL, 12, NULL), (3, 'Zwieback', '', 0, 12),"
                        " (4, 'eel', 'Two lines', 9, 4.5);"
                        "INSERT INTO RecipeIngredients SELECT 3, 1, '' FROM"
                        " json_each('[1,2,3,4,5,6,7,8,9]');"
                        "INSERT INTO RecipeIngredients SELECT 1, 1, '' FROM"
                        " json_each('[1,2,3,4,5,6,7,8,9,10]')");
        // The cursor has them by type: soup, Zwieback, eel, Éclair. Equal texts stay like that.
        const std::pair<QString, QString> expected[] = {
            {u"Éclair|eel|soup|Zwieback"_s, u"Éclair|eel|soup|Zwieback"_s},
            {u"Zwieback|Éclair|soup|eel"_s, u"||two lines|Two lines"_s},
            {u"eel|Éclair|soup|Zwieback"_s, u"0|0|10|9"_s},
            {u"Éclair|Zwieback|soup|eel"_s, u"|12|4.5|4.5"_s}};
        for (int number = 0; number < 4; ++number) {
            if (number > 0) { // the second click turns nothing round
                list.clickHeader(number);
                list.clickHeader(number);
            }
            QCOMPARE(list.column(0), expected[number].first);
            QCOMPARE(list.column(number), expected[number].second);
            QCOMPARE(list.table.header()->sortIndicatorSection(), number);
            QCOMPARE(list.table.header()->sortIndicatorOrder(), Qt::AscendingOrder);
            QCOMPARE(list.selected(), u"Éclair"_s); // the row that was selected at first
        }
        QTest::keyClick(&list.table, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(list.column(0), expected[1].first);
    }

    void comingBack()
    {
        List list("INSERT INTO Recipes (RecipeName, Serves) VALUES ('a', 2), ('b', 1)");
        list.clickHeader(3);
        list.table.setCurrentIndex(list.table.model()->index(1, 0));
        for (const auto &[change, order] :
             {std::pair("", u"b|a"_s),
              {"INSERT INTO Recipes (RecipeName, Serves) VALUES ('c', 0)", u"c|b|a"_s},
              {"UPDATE Recipes SET Serves = 9 WHERE RecipeName = 'c'", u"b|a|c"_s}}) {
            press(list.form, u"cmdView"_s);
            QVERIFY(list.opened());
            list.kitchen.sql(change);
            press(*list.opened(), u"cmdDone"_s);
            QCOMPARE(list.kitchen.frame.activeChild(), &list.form);
            QCOMPARE(list.column(0), order);
            QCOMPARE(list.selected(), order.first(1));
        }
    }

    void titles()
    {
        const QStringList titles{u"Tom's \"best\""_s,
                                 u"a' OR 'a'='a"_s,
                                 u"[*] [*][*]"_s,
                                 u"100%_*?#[a-z]"_s,
                                 u"<b>bold</b> & \\n"_s,
                                 u"Twice"_s,
                                 u"Twice"_s,
                                 u"tWICE"_s,
                                 u"\U0001F370 e\u0301"_s,
                                 u"\U0001F370 \u00e9"_s,
                                 u""_s,
                                 QString(3000, u'x')};
        QByteArray rows;
        for (const QString &title : titles) {
            rows += "INSERT INTO Recipes (RecipeName) VALUES ('"
                + QString(title).replace(u'\'', u"''"_s).toUtf8() + "');";
        }
        List list(rows);
        QSet<qint64> keys;
        for (int row = 0; row < titles.size(); ++row) {
            const QModelIndex index = list.table.model()->index(row, 0);
            list.table.setCurrentIndex(index);
            const QString title = index.data().toString();
            press(list.form, u"cmdView"_s);
            QVERIFY2(list.opened(), qPrintable(title));
            QCOMPARE(list.opened()->title(), title);
            QCOMPARE(titles[static_cast<int>(list.opened()->CurrentRecipeID) - 1], title);
            keys += list.opened()->CurrentRecipeID;
            press(*list.opened(), u"cmdDone"_s);
        }
        QCOMPARE(keys.size(), titles.size());
    }

    void openingAndClosing_data()
    {
        QTest::addColumn<QString>("outcome");
        QTest::newRow("Enter") << u"Recipe b"_s;
        QTest::newRow("double") << u"Recipe b"_s;
        QTest::newRow("Esc") << u"closed"_s;
        QTest::newRow("Enter, none selected") << u"list"_s;
        QTest::newRow("double, below") << u"list"_s;
        QTest::newRow("Enter, empty") << u"list"_s;
        QTest::newRow("double, empty") << u"list"_s;
    }
    void openingAndClosing()
    {
        const QString action = QString::fromLatin1(QTest::currentDataTag());
        const bool filled = !action.endsWith("empty"_L1);
        List list(filled ? "INSERT INTO Recipes (RecipeName) VALUES ('Recipe b'), ('aa'), ('Rice')"
                         : "");
        RecipeTable &table = list.table;
        QCOMPARE(list.selected(), filled ? u"aa"_s : u"none"_s);
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, {250, 5}); // in another column
        QTest::keyClicks(&table, u"re"_s);
        QCOMPARE(list.selected(), filled ? u"Recipe b"_s : u"none"_s);
        if (action.startsWith("double"_L1)) {
            const QPoint row = table.visualRect(table.currentIndex()).center();
            const QPoint place = action.endsWith("below"_L1) ? QPoint(20, 200) : row;
            QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(table.viewport(), Qt::LeftButton, {}, place);
        } else {
            if (action.endsWith("selected"_L1))
                table.clearSelection();
            QCOMPARE(control<QPushButton>(list.form, u"cmdView"_s).isEnabled(),
                     list.selected() != "none"_L1);
            QTest::keyClick(&table, action == "Esc"_L1 ? Qt::Key_Escape : Qt::Key_Return);
        }
        QCoreApplication::processEvents();
        const QString other = list.kitchen.frame.find<frmRecipes>() ? u"list"_s : u"closed"_s;
        QTEST(list.opened() ? list.opened()->title() : other, "outcome");
    }
};

QTEST_MAIN(tst_frmRecipes)
#include "tst_frmrecipes.moc"
