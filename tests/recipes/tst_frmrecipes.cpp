#include "Kitchen.h"
#include "RecipeTable.h"
#include "frmRecipe.h"
#include "frmRecipes.h"

#include <QHeaderView>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_frmRecipes : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Kitchen> m_kitchen;

    frmRecipes &list() { return m_kitchen->show<frmRecipes>(); }
    static RecipeTable &table(const frmRecipes &form)
    {
        return *control<RecipeTable>(form, "lvwRecipes");
    }
    static QStringList column(const frmRecipes &form, int number)
    {
        QStringList texts;
        const QAbstractItemModel *model = table(form).model();
        for (int row = 0; row < model->rowCount(); ++row)
            texts += model->index(row, number).data().toString();
        return texts;
    }
    static QString selected(const frmRecipes &form)
    {
        const QModelIndexList rows = table(form).selectionModel()->selectedRows();
        return rows.size() == 1 ? rows.constFirst().data().toString() : u"none"_s;
    }
    static void clickHeader(const frmRecipes &form, int column)
    {
        const QHeaderView *header = table(form).header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    frmRecipe *opened()
    {
        m_kitchen->settle();
        auto *recipe = m_kitchen->frame.find<frmRecipe>();
        return recipe && m_kitchen->frame.activeChild() == recipe ? recipe : nullptr;
    }

private Q_SLOTS:
    void init() { m_kitchen = std::make_unique<Kitchen>(); }

    void cellsAndOrders()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeID, RecipeName, Description, RecipeType, Serves)"
                       " VALUES (1, 'soup', 'two\r\nlines', 0, 4.5), (2, 'Éclair', NULL, 12, NULL),"
                       " (3, 'Zwieback', '', 0, 12), (4, 'eel', 'Two lines', 9, 4.5);"
                       "INSERT INTO RecipeIngredients SELECT 3, 1, '' FROM"
                       " json_each('[1,2,3,4,5,6,7,8,9]');"
                       "INSERT INTO RecipeIngredients SELECT 1, 1, '' FROM"
                       " json_each('[1,2,3,4,5,6,7,8,9,10]')");
        const frmRecipes &form = list();
        // The cursor has them by type: soup, Zwieback, eel, Éclair. Equal texts stay like that.
        const QList<QList<QStringList>> expected{
            {{u"Éclair"_s, u"eel"_s, u"soup"_s, u"Zwieback"_s}},
            {{u"Zwieback"_s, u"Éclair"_s, u"soup"_s, u"eel"_s},
             {u""_s, u""_s, u"two lines"_s, u"Two lines"_s}},
            {{u"eel"_s, u"Éclair"_s, u"soup"_s, u"Zwieback"_s}, {u"0"_s, u"0"_s, u"10"_s, u"9"_s}},
            {{u"Éclair"_s, u"Zwieback"_s, u"soup"_s, u"eel"_s},
             {u""_s, u"12"_s, u"4.5"_s, u"4.5"_s}}};
        for (int number = 0; number < 4; ++number) {
            if (number > 0) { // the second click turns nothing round
                clickHeader(form, number);
                clickHeader(form, number);
                QCOMPARE(column(form, number), expected[number][1]);
            }
            QCOMPARE(column(form, 0), expected[number][0]);
            QCOMPARE(table(form).header()->sortIndicatorSection(), number);
            QCOMPARE(table(form).header()->sortIndicatorOrder(), Qt::AscendingOrder);
            QCOMPARE(selected(form), u"Éclair"_s); // the row that was selected at first
        }
        QTest::keyClick(&table(form), Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(column(form, 0), expected[1][0]);
    }

    void comingBack()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Serves) VALUES ('a', 2), ('b', 1)");
        const frmRecipes &form = list();
        clickHeader(form, 3);
        QCOMPARE(column(form, 0), QStringList({u"b"_s, u"a"_s}));
        table(form).setCurrentIndex(table(form).model()->index(1, 0));
        for (const QByteArray &change :
             {QByteArray(), QByteArray("INSERT INTO Recipes (RecipeName, Serves) VALUES ('c', 0)"),
              QByteArray("UPDATE Recipes SET Serves = 9 WHERE RecipeName = 'c'")}) {
            press(form, "cmdView");
            QVERIFY(opened());
            if (!change.isEmpty())
                m_kitchen->sql(change);
            press(*opened(), "cmdDone");
            QCOMPARE(m_kitchen->frame.activeChild(), &form);
            QCOMPARE(selected(form), column(form, 0).constFirst());
        }
        QCOMPARE(column(form, 0), QStringList({u"b"_s, u"a"_s, u"c"_s}));
        press(form, "cmdClose");
        QVERIFY(!m_kitchen->frame.find<frmRecipes>());
        QCOMPARE(column(list(), 0), QStringList({u"a"_s, u"b"_s, u"c"_s}));
    }

    void titles()
    {
        const QStringList titles{u"Tom's \"best\""_s,
                                 u"a' OR 'a'='a"_s,
                                 u"''"_s,
                                 u"[*] [*][*]"_s,
                                 u"100%_*?#[a-z]"_s,
                                 u"<b>bold</b> & \\n"_s,
                                 u"Twice"_s,
                                 u"Twice"_s,
                                 u"tWICE"_s,
                                 u"\U0001F370 cake"_s,
                                 u"e\u0301"_s,
                                 u"\u00e9"_s,
                                 u""_s,
                                 QString(3000, u'x')};
        for (const QString &title : titles) {
            m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('"
                           + QString(title).replace(u'\'', u"''"_s).toUtf8() + "')");
        }
        const frmRecipes &form = list();
        QSet<qint64> keys;
        for (int row = 0; row < titles.size(); ++row) {
            const QModelIndex index = table(form).model()->index(row, 0);
            table(form).setCurrentIndex(index);
            const QString title = index.data().toString();
            press(form, "cmdView");
            QVERIFY2(opened(), qPrintable(title));
            QCOMPARE(opened()->title(), title);
            QCOMPARE(titles[static_cast<int>(opened()->CurrentRecipeID) - 1], title);
            keys += opened()->CurrentRecipeID;
            press(*opened(), "cmdDone");
        }
        QCOMPARE(keys.size(), titles.size());
    }

    void openingAndClosing_data()
    {
        QTest::addColumn<bool>("filled");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("outcome");
        for (const bool filled : {true, false}) {
            const auto *kind = filled ? "filled" : "empty";
            const QString opens = filled ? u"Recipe b"_s : u"list"_s;
            QTest::addRow("%s, Enter", kind) << filled << u"Enter"_s << opens;
            QTest::addRow("%s, double click", kind) << filled << u"double"_s << opens;
            QTest::addRow("%s, Esc", kind) << filled << u"Esc"_s << u"closed"_s;
            QTest::addRow("%s, nothing selected", kind) << filled << u"none"_s << u"list"_s;
            QTest::addRow("%s, double click below", kind) << filled << u"below"_s << u"list"_s;
        }
    }
    void openingAndClosing()
    {
        QFETCH(const bool, filled);
        QFETCH(const QString, action);
        if (filled)
            m_kitchen->sql(
                "INSERT INTO Recipes (RecipeName) VALUES ('Recipe b'), ('aa'), ('Rice')");
        const frmRecipes &form = list();
        RecipeTable &rows = table(form);
        QCOMPARE(selected(form), filled ? u"aa"_s : u"none"_s);
        QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, {250, 5}); // in another column
        QTest::keyClicks(&rows, u"re"_s);
        QCOMPARE(selected(form), filled ? u"Recipe b"_s : u"none"_s);
        const QPoint row = rows.visualRect(rows.currentIndex()).center();
        if (action == "Enter"_L1) {
            QTest::keyClick(&rows, Qt::Key_Return);
        } else if (action == "Esc"_L1) {
            QTest::keyClick(&rows, Qt::Key_Escape);
        } else if (action == "double"_L1) {
            const QPoint place = filled ? row : QPoint(20, 20);
            QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(rows.viewport(), Qt::LeftButton, {}, place);
        } else if (action == "below"_L1) {
            QTest::mouseDClick(rows.viewport(), Qt::LeftButton, {}, {20, 200});
        } else {
            rows.clearSelection();
            QVERIFY(!control<QPushButton>(form, "cmdView")->isEnabled());
            QTest::keyClick(&rows, Qt::Key_Return);
        }
        m_kitchen->settle();
        QTEST(opened()                                  ? opened()->title()
                  : m_kitchen->frame.find<frmRecipes>() ? u"list"_s
                                                        : u"closed"_s,
              "outcome");
    }
};

QTEST_MAIN(tst_frmRecipes)
#include "tst_frmrecipes.moc"
