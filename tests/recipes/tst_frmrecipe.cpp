#include "ListBox.h"
#include "RecipeHands.h"
#include "RegistryFunctions.h"
#include "SettingsKeys.h"
#include "frmRecipes.h"

using namespace Qt::Literals::StringLiterals;

// What the record window shows, and which state it is in.
class tst_frmRecipe : public QObject
{
    Q_OBJECT

    static void setOrder(const QString &order)
    {
        CreateRegistryKey(platform::HKEY_CURRENT_USER, sortingKey());
        WriteRegistryValue(platform::HKEY_CURRENT_USER, sortingKey(), u"Recipes"_s, order,
                           platform::REG_SZ);
    }

private Q_SLOTS:
    void init() { setOrder(u"1"_s); }

    void display()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"'Soup', 'd', 'Ann', 1, 'Boil.', 2, 4",
             u"Soup|Ann|Soup|4|2 - Well recieved|vegetarian|||Boil."_s},
            {"'n', NULL, NULL, NULL, NULL, NULL, NULL", u"n||Misc||5 - Disaster|vegetarian|||"_s},
            {"'o', '', '12345678901234567890123456789', 16, '', -1, 120",
             u"o|12345678901234567890123456789||120||vegetarian|||"_s},
        };
        for (const auto &[values, shown] : rows) {
            RecipeHands hands("INSERT INTO Recipes VALUES (7, " + values + ")");
            QVERIFY(!control<QPushButton>(hands.open(7), u"cmdPrint"_s).isEnabled());
            QCOMPARE(hands.shown(), shown);
            hands.perform(u"chkVegetarian"_s);
            QCOMPARE(hands.shown(), shown);
        }
    }

    void composition()
    {
        RecipeHands hands(
            "INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 0), ('b', 0), ('c', 0);"
            "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Ham', 7, 3, 0),"
            " (3, 'Oil', 0, 0, -1); INSERT INTO Utensils VALUES (1, 'Pot'), (2, 'Axe');"
            "INSERT INTO RecipeIngredients VALUES (1, 3, '2 tsp'), (2, 3, NULL), (2, 2, ''),"
            " (1, 1, '(a) (b)'), (1, 99, 'gone'), (2, 1, 'x');"
            "INSERT INTO RecipeUtensils VALUES (1, 2), (1, 1), (1, 9)");
        hands.open(1);
        const QString a = u"a||Misc||Unrated|vegetarian|Oil (2 tsp) + Salt ((a) (b))|Axe + Pot|"_s;
        QCOMPARE(hands.shown(), a);
        hands.perform(u"cmdNext"_s);
        QCOMPARE(hands.shown(), u"b||Misc||Unrated|meat|Oil () + Ham () + Salt (x)||"_s);
        hands.perform(u"cmdPrevious, cmdPrevious"_s);
        QCOMPARE(hands.shown(), a);
    }

    void order()
    {
        for (const auto &[setting, expected] : {std::pair(u"0"_s, u"apple Zimt Éclair eel"_s),
                                                {u"1"_s, u"apple Éclair eel Zimt"_s}}) {
            setOrder(setting);
            RecipeHands hands("INSERT INTO Recipes (RecipeID, RecipeName, RecipeType) VALUES"
                              " (1, 'Zimt', 0), (2, 'eel', 15), (3, 'apple', 0), (4, 'Éclair', 2)");
            const frmRecipe &form = hands.open(3);
            QStringList walk{form.title()};
            for (int i = 0; i < 3; ++i) {
                hands.perform(u"cmdNext"_s);
                walk += form.title();
            }
            hands.perform(u"cmdNext"_s); // leads nowhere
            QCOMPARE(walk.join(u' '), expected);
            QCOMPARE(form.title(), walk.last());
        }
    }

    void states_data()
    {
        QTest::addColumn<QString>("steps"); // from the recipe b between a and c
        QTest::addColumn<QString>("state"); // a "!" where leaving asks
        const auto row = [](const char *steps, const char *state) {
            QTest::newRow(steps) << QString::fromLatin1(steps) << QString::fromLatin1(state);
        };
        row("", "locked");
        row("txtAuthor x, txtServes 1, txtInstruction x, cmbRecipeType 3", "locked");
        row("cmbRating 2", "locked save!");
        row("cmdNew x", "open dontsave save!");
        row("cmdNew   ", "locked");
        row("cmdEdit b", "open dontsave");
        row("cmdEdit ", "locked");
        row("cmdEdit B", "open dontsave save!");
        row("cmdEdit b, cmdDontSave", "open dontsave");
        row("cmdEdit b, txtAuthor x", "open dontsave save!");
        row("cmdEdit b, txtServes 1", "open dontsave save!");
        row("cmdEdit b, txtInstruction x", "open dontsave save!");
        row("cmdEdit b, cmbRecipeType 3", "open dontsave save!");
        row("cmdEdit B, txtAuthor x, cmdSave", "locked");
        row("cmdNew x, cmdSave", "locked");
        row("cmdEdit b, txtAuthor x, cmdNext?No", "open");
        row("cmdEdit b, txtAuthor x, cmdNext?No, txtAuthor x, cmdNext?No", "open save!");
        row("cmdEdit b, txtAuthor x, cmdPrevious?Yes", "locked");
        row("cmbRating 2, cmdNew ?Yes", "locked");
        row("cmdNew x, cmdChangeIngredients", "locked");
        row("cmbRating 1, cmdChangeUtensils", "locked");
    }
    void states()
    {
        QFETCH(const QString, steps);
        QFETCH(QString, state);
        RecipeHands hands("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b'), ('c')");
        hands.open(2);
        hands.perform(steps);
        const QString leave = state.endsWith(u'!') ? u"cmdDone?No"_s : u"cmdDone"_s;
        QCOMPARE(hands.state(), state.remove(u'!'));
        // A composition editor that has been opened keeps the activation until it is left.
        for (const char *editor : {"frmChangeIngredients", "frmChangeUtensils"}) {
            if (ChildWindow *window = hands.frame.find(editor))
                hands.frame.unload(*window);
        }
        hands.perform(leave);
        QVERIFY(!hands.frame.find<frmRecipe>());
    }

    void noRecipe()
    {
        RecipeHands hands;
        const frmRecipe &form = hands.open(0);
        QCOMPARE(form.title(), u"Recipe"_s);
        hands.perform(u"cmdNext, cmdPrevious, cmdChangeIngredients, cmdChangeUtensils"_s);
        QCOMPARE(hands.state(), u"locked dontsave save"_s);
        hands.doorway.expect({.text = u"None"_s, .title = u"Recipe Description"_s});
        hands.perform(u"cmdSave, cmdDescription, cmdNew x, cmdSave"_s);
        QCOMPARE(hands.stored("SELECT * FROM Recipes"), u"1|x|||0||5|0"_s);
        QCOMPARE(form.CurrentRecipeID, 1);
    }

    void names()
    {
        const QString bad = u"Recipe can't have the following charaters in it\r\\/:*?\"<>|()"_s;
        const QString taken = u"Recipe Name must be unique"_s;
        const struct {
            QString button;
            QList<std::pair<QString, QString>> answers; // and what is wrong with each
            QString title;
        } rows[] = {
            {u"cmdNew"_s,
             {{u"a/b"_s, bad}, {u" APPLE pie "_s, taken}, {u" Stew "_s, {}}},
             u"Stew"_s},
            {u"cmdEdit"_s, {{u"Apple Pie"_s, {}}}, u"Apple Pie"_s},
            {u"cmdEdit"_s, {{u"SOUP"_s, taken}, {u"Tom's"_s, bad}, {u""_s, {}}}, u"apple pie"_s},
        };
        for (const auto &[button, answers, title] : rows) {
            RecipeHands hands("INSERT INTO Recipes (RecipeName, Description) VALUES"
                              " ('apple pie', 'mine'), ('Soup', 'other')");
            const frmRecipe &form = hands.open(1);
            for (const auto &[answer, complaint] : answers) {
                hands.doorway.expect(
                    RecipeHands::nameBox(button == "cmdNew"_L1 ? u""_s : u"apple pie"_s), answer);
                if (!complaint.isEmpty())
                    hands.doorway.expect(Kitchen::error(complaint));
            }
            press(form, button);
            QCOMPARE(form.title(), title);
            hands.doorway.checkAllCame();
        }
    }

    void description()
    {
        const QString stored = u"one\r\ntwo \nthree"_s;
        const auto box = [](const QString &text) {
            return InputBox{u"Enter description for this recipe"_s, u"Enter Description"_s, text,
                            Lines::Several};
        };
        RecipeHands hands("INSERT INTO Recipes (RecipeName, Description) VALUES ('a', '"
                          + stored.toUtf8() + "'), ('SOUP', 'another')");
        hands.open(1);
        // Looking for the name does not move away from the recipe.
        hands.doorway.expect(RecipeHands::nameBox(u"a"_s), u"Soup"_s);
        hands.doorway.expect(Kitchen::error(u"Recipe Name must be unique"_s));
        hands.perform(u"cmdEdit "_s);
        hands.doorway.expect({.text = stored, .title = u"Recipe Description"_s});
        hands.perform(u"cmdDescription, cmdEdit a"_s);
        hands.doorway.expect(box(stored), stored);
        hands.perform(u"cmdDescription"_s);
        QCOMPARE(hands.state(), u"open dontsave"_s);
        hands.doorway.expect(box(stored), {}); // cancelled
        hands.perform(u"cmdDescription, cmdSave, cmdNew c"_s);
        hands.doorway.expect(box({}), u" as typed "_s);
        hands.doorway.expect(box(u" as typed "_s), u" twice "_s);
        hands.perform(u"cmdDescription, cmdDescription, cmdSave"_s);
        QCOMPARE(hands.stored("SELECT Description FROM Recipes"), u", another,  twice "_s);
    }

    void comingBack()
    {
        RecipeHands hands("INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 1), ('b', 1);"
                          "INSERT INTO Utensils VALUES (1, 'Pot')");
        frmRecipe &form = hands.open(2);
        hands.perform(u"cmdEdit b, txtAuthor lost"_s);
        for (const auto &[change, shown] :
             {std::pair("UPDATE Recipes SET RecipeName = 'z', Author = 'Eve' WHERE RecipeID = 2;"
                        "INSERT INTO RecipeUtensils VALUES (2, 1)",
                        u"z|Eve|Misc||1 - Rave reviews|vegetarian||Pot|"_s),
              {"DELETE FROM Recipes WHERE RecipeID = 2",
               u"a||Misc||1 - Rave reviews|vegetarian|||"_s}}) {
            hands.sql(change);
            hands.frame.hide(form);
            hands.frame.show(form);
            QTRY_COMPARE(hands.shown(), shown);
        }
        QCOMPARE(form.CurrentRecipeID, 1);
    }
};

QTEST_MAIN(tst_frmRecipe)
#include "tst_frmrecipe.moc"
