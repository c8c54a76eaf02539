#include "ListBox.h"
#include "RecipeHands.h"
#include "RegistryFunctions.h"
#include "SettingsKeys.h"
#include "frmRecipes.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

// What the record window shows, and which state it is in.
class tst_frmRecipe : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Kitchen> m_kitchen;
    std::unique_ptr<RecipeHands> m_hands;

    static void setOrder(const QString &order)
    {
        CreateRegistryKey(platform::HKEY_CURRENT_USER, sortingKey());
        WriteRegistryValue(platform::HKEY_CURRENT_USER, sortingKey(), u"Recipes"_s, order,
                           platform::REG_SZ);
    }

private Q_SLOTS:
    void init()
    {
        setOrder(u"1"_s);
        m_kitchen = std::make_unique<Kitchen>();
        m_hands = std::make_unique<RecipeHands>(*m_kitchen);
    }
    void cleanup() { m_kitchen->doorway.checkAllCame(); }

    void display_data()
    {
        QTest::addColumn<QByteArray>("values"); // of the seven columns
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << QByteArray("'Soup', 'd', 'Ann', 1, 'Boil.', 2, 4")
                               << u"Soup|Ann|Soup|4|2 - Well recieved|vegetarian|||Boil."_s;
        QTest::newRow("nulls") << QByteArray("'n', NULL, NULL, NULL, NULL, NULL, NULL")
                               << u"n||Misc||5 - Disaster|vegetarian|||"_s;
        QTest::newRow("zeros") << QByteArray("'z', '', '', 0, '', 0, 0")
                               << u"z||Misc|0|Unrated|vegetarian|||"_s;
        QTest::newRow("outside the lists")
            << QByteArray("'o', '', '12345678901234567890123456789', 16, '', -1, 120")
            << u"o|12345678901234567890123456789||120||vegetarian|||"_s;
        QTest::newRow("numbers") << QByteArray("'n', '', '', 15, '', 5, 1e20")
                                 << u"n||Cakes|100000000000000000000|5 - Disaster|vegetarian|||"_s;
    }
    void display()
    {
        QFETCH(const QByteArray, values);
        m_kitchen->sql("INSERT INTO Recipes VALUES (7, " + values + ")");
        m_hands->open(7);
        QTEST(m_hands->shown(), "shown");
        QCOMPARE(m_hands->state(), u"locked"_s);
        QVERIFY(!control<QPushButton>(m_hands->open(7), "cmdPrint")->isEnabled());
        m_hands->perform(u"vegetarian"_s);
        QTEST(m_hands->shown(), "shown");
    }

    void composition()
    {
        m_kitchen->sql(
            "INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 0), ('b', 0), ('c', 0);"
            "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Ham', 7, 3, 0),"
            " (3, 'Oil', 0, 0, -1); INSERT INTO Utensils VALUES (1, 'Pot'), (2, 'Axe');"
            "INSERT INTO RecipeIngredients VALUES (1, 3, '2 tsp'), (2, 3, NULL), (2, 2, ''),"
            " (1, 1, '(a) (b)'), (1, 99, 'gone'), (2, 1, 'x');"
            "INSERT INTO RecipeUtensils VALUES (1, 2), (1, 1), (1, 9)");
        m_hands->open(1);
        const QString a = u"a||Misc||Unrated|vegetarian|Oil (2 tsp) + Salt ((a) (b))|Axe + Pot|"_s;
        QCOMPARE(m_hands->shown(), a);
        m_hands->perform(u"next"_s);
        QCOMPARE(m_hands->shown(), u"b||Misc||Unrated|meat|Oil () + Ham () + Salt (x)||"_s);
        m_hands->perform(u"previous, previous"_s);
        QCOMPARE(m_hands->shown(), a);
        m_hands->perform(u"next, next, next, vegetarian"_s);
        QCOMPARE(m_hands->shown(), u"c||Misc||Unrated|vegetarian|||"_s);
    }

    void order_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("walk");
        QTest::newRow("by type") << u"0"_s << u"apple Zimt Éclair eel"_s;
        QTest::newRow("by name") << u"1"_s << u"apple Éclair eel Zimt"_s;
    }
    void order()
    {
        QFETCH(const QString, setting);
        setOrder(setting);
        m_kitchen->sql("INSERT INTO Recipes (RecipeID, RecipeName, RecipeType) VALUES"
                       " (1, 'Zimt', 0), (2, 'eel', 15), (3, 'apple', 0), (4, 'Éclair', 2)");
        const frmRecipe &form = m_hands->open(3);
        QStringList walk{form.title()};
        for (int i = 0; i < 4; ++i) { // the last step leads nowhere
            m_hands->perform(u"next"_s);
            if (form.title() != walk.constLast())
                walk += form.title();
        }
        QTEST(walk.join(u' '), "walk");
    }

    void states_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("changed");
        QTest::newRow("display") << u""_s << u"locked"_s << false;
        QTest::newRow("Don't Save does nothing")
            << u"edit b, dontsave"_s << u"open dontsave"_s << false;
        QTest::newRow("new") << u"new x"_s << u"open dontsave save"_s << true;
        QTest::newRow("new, no name") << u"new "_s << u"locked"_s << false;
        QTest::newRow("new, blanks") << u"new   "_s << u"locked"_s << false;
        QTest::newRow("edit") << u"edit b"_s << u"open dontsave"_s << false;
        QTest::newRow("edit, no name") << u"edit "_s << u"locked"_s << false;
        QTest::newRow("renamed") << u"edit B"_s << u"open dontsave save"_s << true;
        QTest::newRow("author") << u"edit b, author x"_s << u"open dontsave save"_s << true;
        QTest::newRow("serves") << u"edit b, serves 1"_s << u"open dontsave save"_s << true;
        QTest::newRow("instructions")
            << u"edit b, instructions x"_s << u"open dontsave save"_s << true;
        QTest::newRow("type") << u"edit b, type 3"_s << u"open dontsave save"_s << true;
        QTest::newRow("typed while locked")
            << u"author x, serves 1, instructions x, type 3"_s << u"locked"_s << false;
        QTest::newRow("rated") << u"rate 2"_s << u"locked save"_s << true;
        QTest::newRow("saved") << u"edit B, author x, save"_s << u"locked"_s << false;
        QTest::newRow("new, saved") << u"new x, save"_s << u"locked"_s << false;
        QTest::newRow("left for the next one")
            << u"edit b, author x, next?No"_s << u"open"_s << false;
        QTest::newRow("left for none")
            << u"edit b, author x, next?No, author x, next?No"_s << u"open save"_s << true;
        QTest::newRow("saved on the way")
            << u"edit b, author x, previous?Yes"_s << u"locked"_s << false;
        QTest::newRow("no new one before the answer")
            << u"rate 2, new ?Yes"_s << u"locked"_s << false;
        QTest::newRow("saved for the ingredients")
            << u"new x, ingredients"_s << u"locked"_s << false;
        QTest::newRow("saved for the utensils") << u"rate 1, utensils"_s << u"locked"_s << false;
    }
    void states()
    {
        QFETCH(const QString, steps);
        QFETCH(const bool, changed);
        m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b'), ('c')");
        m_hands->open(2);
        m_hands->perform(steps);
        QTEST(m_hands->state(), "state");
        // A composition editor that has been opened keeps the activation until it is left.
        for (const char *editor : {"frmChangeIngredients", "frmChangeUtensils"}) {
            if (ChildWindow *window = m_kitchen->frame.find(editor))
                m_kitchen->frame.unload(*window);
        }
        m_hands->perform(changed ? u"done?No"_s : u"done"_s);
        QVERIFY(!m_kitchen->frame.find<frmRecipe>());
    }

    // With the editors themselves: what Done stores is this recipe's, and is shown.
    void composes()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 0), ('b', 0);"
                       "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1),"
                       " (2, 'Beans (white)', 0, 0, 1); INSERT INTO Utensils VALUES (1, 'Pot');"
                       "INSERT INTO RecipeIngredients VALUES (2, 2, '1 (large) can')");
        const frmRecipe &form = m_hands->open(2);
        m_hands->perform(u"edit c, author Ann, ingredients"_s);
        ChildWindow *editor = m_kitchen->frame.find("frmChangeIngredients");
        control<ListBox>(*editor, "lstIngredients")->selectRow(1);
        press(*editor, "cmdAdd");
        m_kitchen->show<frmRecipes>(); // in which another recipe could be opened
        QCOMPARE(m_kitchen->frame.activeChild(), editor);
        press(*editor, "cmdDone");
        m_kitchen->settle();
        QCOMPARE(m_kitchen->frame.activeChild(), &form);
        QCOMPARE(m_hands->shown(),
                 u"c|Ann|Misc|0|Unrated|vegetarian|"
                 "Beans (white) (1 (large) can) + Salt (1 tsp)||"_s);
        m_hands->perform(u"utensils"_s);
        editor = m_kitchen->frame.find("frmChangeUtensils");
        control<ListBox>(*editor, "lstUtensils")->selectRow(0);
        press(*editor, "cmdAdd");
        press(*editor, "cmdDone");
        m_kitchen->settle();
        QVERIFY(m_hands->shown().endsWith("|Pot|"_L1));
        QCOMPARE(m_kitchen->stored("SELECT RecipeID FROM RecipeIngredients UNION ALL "
                                   "SELECT RecipeID FROM RecipeUtensils"),
                 u"2|2|2"_s);
    }

    void noRecipe()
    {
        frmRecipe &form = m_hands->open(0);
        const auto none = MessageBox{.text = u"None"_s, .title = u"Recipe Description"_s};
        QCOMPARE(form.title(), u"Recipe"_s);
        QCOMPARE(m_hands->state(), u"locked dontsave save"_s);
        m_hands->perform(u"next, previous, ingredients, utensils"_s);
        QCOMPARE(m_hands->state(), u"locked dontsave save"_s);
        m_hands->perform(u"save"_s);
        QCOMPARE(m_kitchen->stored("SELECT count(*) FROM Recipes"), u"0"_s);
        m_kitchen->doorway.expect(none);
        m_hands->perform(u"describe, new x, save"_s);
        QCOMPARE(m_kitchen->stored("SELECT * FROM Recipes"), u"1|'x'|''|''|0|''|5|0"_s);
        QCOMPARE(form.CurrentRecipeID, 1);
    }

    void names_data()
    {
        using Answers = QList<std::pair<QString, QString>>; // the answer, and what is wrong with it
        const QString bad = u"Recipe can't have the following charaters in it\r\\/:*?\"<>|()"_s;
        const QString taken = u"Recipe Name must be unique"_s;
        QTest::addColumn<QString>("button");
        QTest::addColumn<Answers>("answers");
        QTest::addColumn<QString>("title");
        QTest::newRow("new: refused, then trimmed") << u"cmdNew"_s
                                                    << Answers{{u"a/b"_s, bad},
                                                               {u"Tom's"_s, bad},
                                                               {u"APPLE pie"_s, taken},
                                                               {u" soup "_s, taken},
                                                               {u"  Stew "_s, {}}}
                                                    << u"Stew"_s;
        QTest::newRow("new: given up")
            << u"cmdNew"_s << Answers{{u"soup"_s, taken}, {u" "_s, {}}} << u"apple pie"_s;
        QTest::newRow("edit: only the case")
            << u"cmdEdit"_s << Answers{{u"Apple Pie"_s, {}}} << u"Apple Pie"_s;
        QTest::newRow("edit: another's")
            << u"cmdEdit"_s << Answers{{u"SOUP"_s, taken}, {u"a(b)"_s, bad}, {u""_s, {}}}
            << u"apple pie"_s;
    }
    void names()
    {
        using Answers = QList<std::pair<QString, QString>>;
        QFETCH(const QString, button);
        QFETCH(const Answers, answers);
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Description) VALUES"
                       " ('apple pie', 'mine'), ('Soup', 'other')");
        const frmRecipe &form = m_hands->open(1);
        for (const auto &[answer, complaint] : answers) {
            m_kitchen->doorway.expect(
                RecipeHands::nameBox(button == "cmdNew"_L1 ? u""_s : u"apple pie"_s), answer);
            if (!complaint.isEmpty())
                m_kitchen->doorway.expect(RecipeHands::error(complaint));
        }
        press(form, button.toLatin1());
        QTEST(form.title(), "title");
        m_kitchen->doorway.checkAllCame();
        // The search for the name has not moved away from the recipe.
        if (form.CurrentRecipeID == 1 && m_hands->state() == "locked"_L1) {
            m_kitchen->doorway.expect({.text = u"mine"_s, .title = u"Recipe Description"_s});
            m_hands->perform(u"describe"_s);
        }
    }

    void description()
    {
        const QString stored = u"one\r\ntwo \nthree"_s;
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Description) VALUES ('a', '"
                       + stored.toUtf8() + "'), ('b', NULL)");
        m_hands->open(1);
        m_kitchen->doorway.expect({.text = stored, .title = u"Recipe Description"_s});
        m_hands->perform(u"describe, edit a"_s);
        m_kitchen->doorway.expect(RecipeHands::descriptionBox(stored), stored);
        m_hands->perform(u"describe"_s);
        QCOMPARE(m_hands->state(), u"open dontsave"_s);
        m_kitchen->doorway.expect(RecipeHands::descriptionBox(stored), {}); // cancelled
        m_hands->perform(u"describe"_s);
        QCOMPARE(m_hands->state(), u"open dontsave save"_s);
        m_hands->perform(u"save"_s);
        QCOMPARE(m_kitchen->stored("SELECT Description FROM Recipes WHERE RecipeID = 1"), u"''"_s);

        m_hands->perform(u"new c"_s);
        m_kitchen->doorway.expect(RecipeHands::descriptionBox({}), u" as typed "_s);
        m_kitchen->doorway.expect(RecipeHands::descriptionBox(u" as typed "_s), u" twice "_s);
        m_hands->perform(u"describe, describe, save"_s);
        QCOMPARE(m_kitchen->stored("SELECT Description FROM Recipes WHERE RecipeID = 3"),
                 u"' twice '"_s);
    }

    void comingBack()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 1), ('b', 1)");
        frmRecipe &form = m_hands->open(2);
        m_hands->perform(u"edit b, author lost"_s);
        m_kitchen->sql("UPDATE Recipes SET RecipeName = 'z', Author = 'Eve' WHERE RecipeID = 2;"
                       "INSERT INTO Utensils VALUES (1, 'Pot');"
                       "INSERT INTO RecipeUtensils VALUES (2, 1)");
        m_kitchen->frame.hide(form);
        m_kitchen->frame.show(form);
        m_kitchen->settle();
        QCOMPARE(m_hands->shown(), u"z|Eve|Misc||1 - Rave reviews|vegetarian||Pot|"_s);
        m_kitchen->sql("DELETE FROM Recipes WHERE RecipeID = 2");
        m_kitchen->frame.hide(form);
        m_kitchen->frame.show(form);
        m_kitchen->settle();
        QCOMPARE(form.title(), u"a"_s);
        QCOMPARE(form.CurrentRecipeID, 1);
    }

    void tabOrder()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('a')");
        const frmRecipe &form = m_hands->open(1);
        m_hands->perform(u"edit b"_s);
        QStringList order;
        auto *focus = control<QWidget>(form, "txtAuthor");
        focus->setFocus();
        do {
            order += focus->objectName();
            QTest::keyClick(focus, Qt::Key_Tab);
            focus = QApplication::focusWidget();
        } while (focus && !order.contains(focus->objectName()));
        QCOMPARE(order.join(u' '),
                 u"txtAuthor chkVegetarian cmbRecipeType txtServes cmbRating cmdChangeIngredients "
                 "lstIngredient cmdChangeUtensils lstUtensils txtInstruction cmdPrevious cmdNext "
                 "cmdSave cmdDone cmdDontSave cmdDescription"_s);
    }
};

QTEST_MAIN(tst_frmRecipe)
#include "tst_frmrecipe.moc"
