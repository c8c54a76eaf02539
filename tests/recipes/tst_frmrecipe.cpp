#include "recipes/LockableComboBox.h"
#include "recipes/frmRecipe.h"
#include "support/TemporaryHome.h"
#include "support/WindowFixture.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// A kitchen whose record window shows a recipe.
struct RecipeWindowFixture : WindowFixture {
    explicit RecipeWindowFixture(const QByteArray &statements, qint64 key = 1)
        : WindowFixture(statements)
    {
        frame.show(form);
        form.CurrentRecipeID = key;
        QCoreApplication::processEvents();
    }

    void perform(const QString &steps) { WindowFixture::perform(form, steps); }
    QString shown() const { return WindowFixture::shown(form); }

    frmRecipe &form = frame.load<frmRecipe>();
};

} // namespace

class tst_frmRecipe : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

    // "locked" or "open", then which of "dontsave" and "save" are enabled.
    static QString stateOf(const frmRecipe &form)
    {
        const auto is = [&form](const char *property, const QString &name) {
            return control<QWidget>(form, name).property(property).toBool();
        };
        const bool locked = control<LockableComboBox>(form, u"cmbRecipeType"_s).isReadOnly();
        bool isWhole =
            is("enabled", u"cmdNew"_s) == locked && is("enabled", u"cmdEdit"_s) == locked;
        for (const QString &edit : {u"txtAuthor"_s, u"txtServes"_s, u"txtInstruction"_s})
            isWhole = isWhole && is("readOnly", edit) == locked;
        return (isWhole ? u""_s : u"half "_s) + (locked ? u"locked"_s : u"open"_s)
            + (is("enabled", u"cmdDontSave"_s) ? u" dontsave"_s : u""_s)
            + (is("enabled", u"cmdSave"_s) ? u" save"_s : u""_s);
    }

private Q_SLOTS:
    void display()
    {
        const std::pair<QByteArray, QString> rows[] = {
            {"'n', NULL, NULL, NULL, NULL, NULL, NULL", u"n||yes|Misc||5 - Disaster|||"_s},
            {"'o', '', '12345678901234567890123456789', 16, 'Boil.', -1, 120",
             u"o|12345678901234567890123456789|yes||120||||Boil."_s},
        };
        for (const auto &[values, shown] : rows) {
            RecipeWindowFixture hands("INSERT INTO Recipes VALUES (7, " + values + ")", 7);
            QCOMPARE(hands.shown(), shown);
            hands.perform(u"chkVegetarian"_s);
            QCOMPARE(hands.shown(), shown);
        }
    }

    void composition()
    {
        RecipeWindowFixture hands(
            "INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 0), ('b', 0), ('c', 0);"
            "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Ham', 7, 3, 0),"
            " (3, 'Oil', 0, 0, -1); INSERT INTO Utensils VALUES (1, 'Pot'), (2, 'Axe');"
            "INSERT INTO RecipeIngredients VALUES (1, 3, '2 tsp'), (2, 3, NULL), (2, 2, ''),"
            " (1, 1, '(a) (b)'), (1, 99, 'gone'), (2, 1, 'x');"
            "INSERT INTO RecipeUtensils VALUES (1, 2), (1, 1), (1, 9)");
        const QString a = u"a||yes|Misc||Unrated|Oil (2 tsp) + Salt ((a) (b))|Axe + Pot|"_s;
        QCOMPARE(hands.shown(), a);
        hands.perform(u"cmdNext"_s);
        QCOMPARE(hands.shown(), u"b||no|Misc||Unrated|Oil () + Ham () + Salt (x)||"_s);
        hands.perform(u"cmdPrevious, cmdPrevious"_s);
        QCOMPARE(hands.shown(), a);
    }

    void order()
    {
        RecipeWindowFixture hands(
            "INSERT INTO Recipes (RecipeID, RecipeName, RecipeType) VALUES"
            " (1, 'Zimt', 0), (2, 'eel', 15), (3, 'apple', 0), (4, 'Éclair', 2)",
            3);
        for (const QString &title : {u"apple"_s, u"Zimt"_s, u"Éclair"_s, u"eel"_s, u"eel"_s}) {
            QCOMPARE(hands.form.title(), title);
            hands.perform(u"cmdNext"_s);
        }
    }

    void states()
    {
        const std::pair<QString, QString> rows[] = {
            // steps from the recipe b between a and c, and the state; a "!" where leaving asks
            {u"txtAuthor x, txtServes 1, txtInstruction x, cmbRecipeType 3"_s, u"locked"_s},
            {u"cmbRating 2"_s, u"locked save!"_s},
            {u"cmdNew x"_s, u"open dontsave save!"_s},
            {u"cmdNew   "_s, u"locked"_s},
            {u"cmdEdit "_s, u"locked"_s},
            {u"cmdEdit B"_s, u"open dontsave save!"_s},
            {u"cmdEdit b, cmdDontSave"_s, u"open dontsave"_s},
            {u"cmdEdit b, txtAuthor x"_s, u"open dontsave save!"_s},
            {u"cmdEdit b, txtServes 1"_s, u"open dontsave save!"_s},
            {u"cmdEdit b, txtInstruction x"_s, u"open dontsave save!"_s},
            {u"cmdEdit b, cmbRecipeType 3"_s, u"open dontsave save!"_s},
            {u"cmdEdit B, txtAuthor x, cmdSave"_s, u"locked"_s},
            {u"cmdEdit b, txtAuthor x, cmdNext?No"_s, u"open"_s},
            {u"cmdEdit b, txtAuthor x, cmdNext?No, txtAuthor x, cmdNext?No"_s, u"open save!"_s},
            {u"cmdEdit b, txtAuthor x, cmdPrevious?Yes"_s, u"locked"_s},
            {u"cmbRating 2, cmdNew ?Yes"_s, u"locked"_s},
            {u"cmdNew x, cmdChangeIngredients"_s, u"locked"_s},
            {u"cmbRating 1, cmdChangeUtensils"_s, u"locked"_s},
        };
        for (const auto &[steps, expected] : rows) {
            RecipeWindowFixture hands("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b'), ('c')",
                                      2);
            hands.perform(steps);
            const bool asks = expected.endsWith(u'!');
            const QString state = stateOf(hands.form) + (asks ? u"!"_s : u""_s);
            QVERIFY2(state == expected, qPrintable(steps + u": "_s + state));
            // A composition editor that has been opened keeps the activation until it is left.
            for (const char *editor : {"frmChangeIngredients", "frmChangeUtensils"}) {
                if (ChildWindow *window = hands.frame.find(editor))
                    hands.frame.unload(*window);
            }
            hands.perform(asks ? u"cmdDone?No"_s : u"cmdDone"_s);
            QVERIFY(!hands.frame.find<frmRecipe>());
        }
    }

    void noRecipe()
    {
        RecipeWindowFixture hands({}, 0);
        hands.perform(u"cmdNext, cmdPrevious, cmdChangeIngredients, cmdChangeUtensils"_s);
        QCOMPARE(hands.form.title(), u"Recipe"_s);
        QCOMPARE(stateOf(hands.form), u"locked dontsave save"_s);
        hands.interaction.expect({.text = u"None"_s, .title = u"Recipe Description"_s});
        hands.perform(u"cmdSave, cmdDescription, cmdNew x, cmdSave"_s);
        QCOMPARE(hands.stored("SELECT * FROM Recipes"), u"1|x|||0||5|0"_s);
        QCOMPARE(hands.form.CurrentRecipeID, 1);
    }

    void names()
    {
        const MessageBox taken = WindowFixture::error(u"Recipe Name must be unique"_s);
        const QString forbidden = u"\\/:*?\"'<>|()"_s;
        for (const bool isNew : {true, false}) {
            RecipeWindowFixture hands(
                "INSERT INTO Recipes (RecipeName) VALUES ('apple pie'), ('Soup')");
            const InputBox box = WindowFixture::nameBox(isNew ? u""_s : u"apple pie"_s);
            for (const QChar c : forbidden) {
                hands.interaction.expect(box, u"a%1b"_s.arg(c));
                hands.interaction.expect(WindowFixture::error(
                    u"Recipe can't have the following charaters in it\r\\/:*?\"<>|()"_s));
            }
            for (const QString &name : {isNew ? u" APPLE pie "_s : u" SOUP"_s, u"soup"_s}) {
                hands.interaction.expect(box, name);
                hands.interaction.expect(taken);
            }
            hands.perform(isNew ? u"cmdNew  Crème & co. 50% [a]; b-c_d "_s
                                : u"cmdEdit Apple Pie"_s);
            QCOMPARE(hands.form.title(), isNew ? u"Crème & co. 50% [a]; b-c_d"_s : u"Apple Pie"_s);
        }
    }

    void description()
    {
        const QString stored = u"one\r\ntwo \nthree"_s;
        const auto box = [](const QString &text) {
            return InputBox{u"Enter description for this recipe"_s, u"Enter Description"_s, text,
                            Lines::Several};
        };
        RecipeWindowFixture hands("INSERT INTO Recipes (RecipeName, Description) VALUES ('a', '"
                                  + stored.toUtf8() + "'), ('SOUP', 'another')");
        // Looking for the name does not move away from the recipe.
        hands.interaction.expect(WindowFixture::nameBox(u"a"_s), u"Soup"_s);
        hands.interaction.expect(WindowFixture::error(u"Recipe Name must be unique"_s));
        hands.perform(u"cmdEdit "_s);
        hands.interaction.expect({.text = stored, .title = u"Recipe Description"_s});
        hands.perform(u"cmdDescription, cmdEdit a"_s);
        hands.interaction.expect(box(stored), stored);
        hands.perform(u"cmdDescription"_s);
        QCOMPARE(stateOf(hands.form), u"open dontsave"_s);
        hands.interaction.expect(box(stored), {}); // cancelled
        hands.perform(u"cmdDescription, cmdSave, cmdNew c"_s);
        hands.interaction.expect(box({}), u" as typed "_s);
        hands.perform(u"cmdDescription, cmdSave"_s);
        QCOMPARE(hands.stored("SELECT Description FROM Recipes"), u", another,  as typed "_s);
    }

    void comingBack()
    {
        RecipeWindowFixture hands(
            "INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 1), ('b', 1);"
            "INSERT INTO Utensils VALUES (1, 'Pot')",
            2);
        hands.perform(u"cmdEdit b, txtAuthor lost"_s);
        for (const auto &[change, shown] :
             {std::pair("UPDATE Recipes SET RecipeName = 'z', Author = 'Eve' WHERE RecipeID = 2;"
                        "INSERT INTO RecipeUtensils VALUES (2, 1)",
                        u"z|Eve|yes|Misc||1 - Rave reviews||Pot|"_s),
              {"DELETE FROM Recipes WHERE RecipeID = 2", u"a||yes|Misc||1 - Rave reviews|||"_s}}) {
            hands.sql(change);
            hands.frame.hide(hands.form);
            hands.frame.show(hands.form);
            QTRY_COMPARE(hands.shown(), shown);
        }
        QCOMPARE(hands.form.CurrentRecipeID, 1);
    }

    void untouched()
    {
        const QByteArray all = "SELECT hex(RecipeName), hex(Description), hex(Author), RecipeType,"
                               " hex(Instructions), typeof(Instructions), Serves FROM Recipes";
        for (const QByteArray instructions :
             {"'  a\xC2\xA0\t' || x'0A' || 'b' || x'0D' || 'c' || x'0D0A0AE280A8E280A9' || ' '",
              "'\U0001F370 e\u0301 \uFEFF' || x'0001071B' || 'b'", "CAST(x'61FF62' AS TEXT)",
              "x'610A62'"}) {
            RecipeWindowFixture hands(
                "INSERT INTO Recipes VALUES (1, 'Tom''s (\"best\") [*]', 'two' || x'0A' || 'lines "
                "',"
                " '12345678901234567890123456789 ', 70000, "
                + instructions
                + ", 0, 'a few'); INSERT INTO Recipes (RecipeName) SELECT RecipeName FROM Recipes");
            const QString before = hands.stored(all);
            hands.perform(u"cmbRating 2, cmdSave"_s);
            QCOMPARE(hands.stored(all), before);
            QCOMPARE(hands.stored("SELECT Rating FROM Recipes"), u"2, null"_s);
        }
    }

    void edited()
    {
        const QString old = u"1|soup|d|null|16|a\nb\u00A0|9|null"_s;
        const std::pair<QString, QString> rows[] = {
            {u"cmdEdit soup, cmbRating 1, cmdSave"_s, u"1|soup|d||16|a\nb\u00A0|1|0"_s},
            {u"cmdEdit soup, txtInstruction c, cmdSave"_s, u"1|soup|d||16|a\r\nb\u00A0c|9|0"_s},
            {u"cmdEdit Soup, txtAuthor 12345678901234567890123456, cmbRecipeType 2, "
             "txtServes 123, cmdSave"_s,
             u"1|Soup|d|1234567890123456789012345|2|a\nb\u00A0|9|12"_s},
            {u"cmdEdit s, txtAuthor Ann, cmdNext?No, cmdDone?No"_s, old},
            {u"cmdNew b, cmbRecipeType 1, txtServes 5, cmdDone?Yes"_s, old + u", 2|b|||1||5|5"_s},
        };
        for (const auto &[steps, stored] : rows) {
            RecipeWindowFixture hands("INSERT INTO Recipes VALUES"
                                      " (1, 'soup', 'd', NULL, 16, 'a' || x'0A62C2A0', 9, NULL)");
            hands.perform(steps);
            QCOMPARE(hands.stored("SELECT * FROM Recipes"), stored);
        }
    }

    // Everything stays as it was, and once the cause is gone it can be saved.
    void failures()
    {
        const std::tuple<QByteArray, QByteArray, QString, MessageBox> causes[] = {
            // the harm, its repair, what is entered for Serves, and what is said
            {"", "", u"1e"_s,
             WindowFixture::error(u"Serves must be a number, 0 or more. \"1e\" is not."_s)},
            {"CREATE TRIGGER t AFTER UPDATE ON Recipes BEGIN SELECT RAISE(ABORT, 'no'); END",
             "DROP TRIGGER t", u"4"_s,
             WindowFixture::failure(u"b2"_s, u"The recipe file %1 could not be used: no"_s)},
            {"INSERT INTO Recipes (RecipeName) VALUES ('B2')",
             "DELETE FROM Recipes WHERE RecipeName = 'B2'", u"4"_s,
             WindowFixture::error(u"Recipe Name must be unique"_s)},
            {"DELETE FROM Recipes WHERE RecipeID = 2",
             "INSERT INTO Recipes (RecipeID, RecipeName, Rating, RecipeType) VALUES (2, 'b', 0, 0)",
             u"4"_s,
             WindowFixture::failure(
                 u"b2"_s,
                 u"This recipe has been deleted by another program. Nothing was stored."_s)},
        };
        for (const QString &leave :
             {u"cmdSave"_s, u"cmdNext"_s, u"cmdDone"_s, u"cmdChangeIngredients"_s}) {
            for (auto [harm, repair, serves, box] : causes) {
                RecipeWindowFixture hands("INSERT INTO Recipes (RecipeName, Rating, RecipeType)"
                                          " VALUES ('a', 0, 0), ('b', 0, 0), ('c', 0, 0)",
                                          2);
                hands.perform(u"cmdEdit b2, txtAuthor Ann, txtServes "_s + serves);
                const QString entered = hands.shown();
                hands.sql(harm);
                const QString before = hands.stored("SELECT * FROM Recipes");
                if (leave == "cmdNext"_L1 || leave == "cmdDone"_L1)
                    hands.expectQuestion(hands.form, leave, u"Yes"_s);
                box.text.replace(u"%1"_s, hands.file.path());
                hands.interaction.expect(box);
                hands.perform(leave);
                hands.interaction.checkAllCame();
                QCOMPARE(hands.shown(), entered);
                QCOMPARE(hands.form.CurrentRecipeID, 2);
                QCOMPARE(hands.stored("SELECT * FROM Recipes"), before);

                hands.sql(repair);
                hands.perform(u"txtServes =4, cmdSave, cmdNext"_s);
                QCOMPARE(hands.form.title(), u"c"_s);
                QCOMPARE(
                    hands.stored("SELECT RecipeName, Serves FROM Recipes WHERE Author = 'Ann'"),
                    u"b2|4"_s);
            }
        }
    }

    void othersChangesStay()
    {
        RecipeWindowFixture hands("INSERT INTO Recipes (RecipeName, Author) VALUES ('a', 'Ann')");
        hands.sql("UPDATE Recipes SET RecipeName = 'b', Author = 'Eve'");
        hands.perform(u"cmbRating 3, cmdSave"_s);
        QCOMPARE(hands.stored("SELECT RecipeName, Author, Rating FROM Recipes"), u"b|Eve|3"_s);
        QCOMPARE(hands.form.title(), u"b"_s);
    }
};

QTEST_MAIN(tst_frmRecipe)
#include "tst_frmrecipe.moc"
