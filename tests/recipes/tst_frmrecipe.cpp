#include "recipes/frmRecipe.h"
#include "support/Rows.h"
#include "support/TemporaryHome.h"
#include "support/WindowFixture.h"
#include "widgets/ComboBox.h"

#include <QListWidget>
#include <QScrollBar>

using namespace Qt::Literals::StringLiterals;

namespace {

// A database and the record window, which shows the recipe with the key.
struct RecipeWindowFixture : WindowFixture {
    explicit RecipeWindowFixture(const QByteArray &statements, qint64 key = 1)
        : WindowFixture(statements)
    {
        frame.show(form);
        form.setCurrentRecipeID(key);
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

    // "locked" or "open" for the fields, then "dontsave" and "save" if these buttons are enabled.
    static QString stateOf(const frmRecipe &form)
    {
        const auto is = [&form](const char *property, const QString &name) {
            return control<QWidget>(form, name).property(property).toBool();
        };
        const bool locked = control<ComboBox>(form, u"cmbRecipeType"_s).isReadOnly();
        bool isConsistent =
            is("enabled", u"cmdNew"_s) == locked && is("enabled", u"cmdEdit"_s) == locked;
        for (const QString &edit : {u"txtAuthor"_s, u"txtServes"_s, u"txtInstruction"_s})
            isConsistent = isConsistent && is("readOnly", edit) == locked;
        return (isConsistent ? u""_s : u"partly "_s) + (locked ? u"locked"_s : u"open"_s)
            + (is("enabled", u"cmdDontSave"_s) ? u" dontsave"_s : u""_s)
            + (is("enabled", u"cmdSave"_s) ? u" save"_s : u""_s);
    }

private Q_SLOTS:
    void display_data()
    {
        addRows<QByteArray, QString>({
            {"nulls", QByteArray("'n', NULL, NULL, NULL, NULL, NULL, NULL"),
             u"n||yes|Misc||5 - Disaster|||"_s},
            {"out of range",
             QByteArray("'o', '', '12345678901234567890123456789', 16, 'Boil.', -1, 120"),
             u"o|12345678901234567890123456789|yes||120||||Boil."_s},
        });
    }
    void display()
    {
        const auto [values, shown] = fetchRow<QByteArray, QString>();
        RecipeWindowFixture fixture("INSERT INTO Recipes VALUES (7, " + values + ")", 7);
        QCOMPARE(fixture.shown(), shown);
        fixture.perform(u"chkVegetarian"_s);
        QCOMPARE(fixture.shown(), shown);
    }

    void composition()
    {
        RecipeWindowFixture fixture(
            joinsBeginWithCatalog
            + "INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 0), ('b', 0), ('c', 0);"
              "INSERT INTO Ingredients VALUES (1, 'Salt', 0, 0, 1), (2, 'Ham', 7, 3, 0),"
              " (3, 'Oil', 0, 0, -1); INSERT INTO Utensils VALUES (1, 'Pot'), (2, 'Axe');"
              "INSERT INTO RecipeIngredients VALUES (1, 3, '2 tsp'), (2, 3, NULL), (2, 2, ''),"
              " (1, 1, '(a) (b)'), (1, 99, 'gone'), (2, 1, 'x');"
              "INSERT INTO RecipeUtensils VALUES (1, 2), (1, 1), (1, 9)");
        const QString a = u"a||yes|Misc||Unrated|Oil (2 tsp) + Salt ((a) (b))|Axe + Pot|"_s;
        QCOMPARE(fixture.shown(), a);
        fixture.perform(u"cmdNext"_s);
        QCOMPARE(fixture.shown(), u"b||no|Misc||Unrated|Oil () + Ham () + Salt (x)||"_s);
        fixture.perform(u"cmdPrevious, cmdPrevious"_s);
        QCOMPARE(fixture.shown(), a);
    }

    void placeInLists_data()
    {
        // What another program does, what the user does, and what the lists then show: the number
        // of lines, the current and the selected one, and whether they are scrolled as before.
        addRows<QByteArray, QString, QString>({
            {"unchanged", "", u""_s, u"60 x30 x30 scrolled"_s},
            {"saved", "", u"cmdEdit a, cmbRating 2, cmdSave"_s, u"60 x30 x30 scrolled"_s},
            {"line added",
             "INSERT INTO RecipeIngredients VALUES (1, 5, ''); INSERT INTO RecipeUtensils VALUES "
             "(1, 5)",
             u""_s, u"61 x30 x30 scrolled"_s},
            {"line before it deleted",
             "DELETE FROM RecipeIngredients WHERE IngredientID = 5;"
             "DELETE FROM RecipeUtensils WHERE UtensilID = 5",
             u""_s, u"59 x30 x30 scrolled"_s},
            {"line deleted",
             "DELETE FROM RecipeIngredients WHERE IngredientID = 30;"
             "DELETE FROM RecipeUtensils WHERE UtensilID = 30",
             u""_s, u"59 x29 - scrolled"_s},
            {"another recipe with the same lines", "", u"cmdNext"_s, u"60 - - top"_s},
        });
    }
    void placeInLists()
    {
        const auto [change, steps, expected] = fetchRow<QByteArray, QString, QString>();
        RecipeWindowFixture fixture(
            "INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b');"
            "CREATE TEMP TABLE n AS WITH RECURSIVE n(i) AS"
            " (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 60) SELECT i FROM n;"
            "INSERT INTO Ingredients SELECT i, 'x' || i, 0, 0, 1 FROM n;"
            "INSERT INTO Utensils SELECT i, 'x' || i FROM n;"
            "INSERT INTO RecipeIngredients SELECT RecipeID, i, '' FROM Recipes, n;"
            "INSERT INTO RecipeUtensils SELECT RecipeID, i FROM Recipes, n");
        for (const QString &name : {u"lstIngredient"_s, u"lstUtensils"_s}) {
            auto &list = control<QListWidget>(fixture.form, name);
            list.setCurrentRow(29);
            list.verticalScrollBar()->setValue(100);
        }
        fixture.sql(change);
        fixture.perform(steps);
        fixture.open<frmRecipe>(); // reads again, as F5 and View do
        for (const QString &name : {u"lstIngredient"_s, u"lstUtensils"_s}) {
            const auto &list = control<QListWidget>(fixture.form, name);
            const auto nameIn = [](const QListWidgetItem *item) {
                return item ? item->text().section(u' ', 0, 0) : u"-"_s;
            };
            const int top = list.verticalScrollBar()->value();
            QCOMPARE(QString::number(list.count()) + u' ' + nameIn(list.currentItem()) + u' '
                         + nameIn(list.selectedItems().value(0))
                         + (top == 100     ? u" scrolled"_s
                                : top == 0 ? u" top"_s
                                           : u" moved"_s),
                     expected);
        }
    }

    void order()
    {
        RecipeWindowFixture fixture(
            "INSERT INTO Recipes (RecipeID, RecipeName, RecipeType) VALUES"
            " (1, 'Zimt', 0), (2, 'eel', 15), (3, 'apple', 0), (4, 'Éclair', 2)",
            3);
        for (const QString &title : {u"apple"_s, u"Zimt"_s, u"Éclair"_s, u"eel"_s, u"eel"_s}) {
            QCOMPARE(fixture.form.title(), title);
            fixture.perform(u"cmdNext"_s);
        }
    }

    void states_data()
    {
        // The steps start at the recipe b between a and c. "!": Done asks whether to save.
        addRows<QString, QString>({
            {"locked fields", u"txtAuthor x, txtServes 1, txtInstruction x, cmbRecipeType 3"_s,
             u"locked"_s},
            {"rating", u"cmbRating 2"_s, u"locked save!"_s},
            {"new", u"cmdNew x"_s, u"open dontsave save!"_s},
            {"new, name of spaces", u"cmdNew   "_s, u"locked"_s},
            {"edit cancelled", u"cmdEdit "_s, u"locked"_s},
            {"renamed", u"cmdEdit B"_s, u"open dontsave save!"_s},
            {"same name", u"cmdEdit b, cmdDontSave"_s, u"open dontsave"_s},
            {"author", u"cmdEdit b, txtAuthor x"_s, u"open dontsave save!"_s},
            {"serves", u"cmdEdit b, txtServes 1"_s, u"open dontsave save!"_s},
            {"instructions", u"cmdEdit b, txtInstruction x"_s, u"open dontsave save!"_s},
            {"type", u"cmdEdit b, cmbRecipeType 3"_s, u"open dontsave save!"_s},
            {"saved", u"cmdEdit B, txtAuthor x, cmdSave"_s, u"locked"_s},
            {"dropped by Next", u"cmdEdit b, txtAuthor x, cmdNext?No"_s, u"open"_s},
            {"kept at the end", u"cmdEdit b, txtAuthor x, cmdNext?No, txtAuthor x, cmdNext?No"_s,
             u"open save!"_s},
            {"saved by Previous", u"cmdEdit b, txtAuthor x, cmdPrevious?Yes"_s, u"locked"_s},
            {"saved by New", u"cmbRating 2, cmdNew ?Yes"_s, u"locked"_s},
            {"new, saved for the editor", u"cmdNew x, cmdChangeIngredients"_s, u"locked"_s},
            {"saved for the editor", u"cmbRating 1, cmdChangeUtensils"_s, u"locked"_s},
        });
    }
    void states()
    {
        const auto [steps, expected] = fetchRow<QString, QString>();
        RecipeWindowFixture fixture("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b'), ('c')",
                                    2);
        fixture.perform(steps);
        const bool asks = expected.endsWith(u'!');
        QCOMPARE(stateOf(fixture.form) + (asks ? u"!"_s : u""_s), expected);
        // An open composition editor would keep the activation.
        for (const char *editor : {"frmChangeIngredients", "frmChangeUtensils"}) {
            if (ChildWindow *window = fixture.frame.find(editor))
                fixture.frame.unload(*window);
        }
        fixture.perform(asks ? u"cmdDone?No"_s : u"cmdDone"_s);
        QVERIFY(!fixture.frame.find<frmRecipe>());
    }

    void noRecipe()
    {
        RecipeWindowFixture fixture({}, 0);
        const MessageBox none =
            WindowFixture::error(u"No recipe is open. Press New to start one."_s);
        for (const QString &button :
             {u"cmdEdit"_s, u"cmdChangeIngredients"_s, u"cmdChangeUtensils"_s}) {
            fixture.interaction.expect(none);
            fixture.perform(button);
        }
        fixture.perform(u"cmdNext, cmdPrevious, cmbRating 3, cmdNew "_s);
        QCOMPARE(fixture.form.title(), u"Recipe"_s);
        QCOMPARE(stateOf(fixture.form), u"locked dontsave save"_s);
        fixture.interaction.expect(none);
        fixture.interaction.expect({.text = u"None"_s, .title = u"Recipe Description"_s});
        fixture.perform(u"cmdSave, cmdDescription, cmdNew x"_s);
        QCOMPARE(fixture.shown(), u"x||no|Misc||5 - Disaster|||"_s);
        QCOMPARE(fixture.stored("SELECT * FROM Recipes"), QString());
        fixture.perform(u"cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT * FROM Recipes"), u"1|x|||0||5|0"_s);
        QCOMPARE(fixture.form.recipeId(), 1);

        RecipeWindowFixture left({}, 0);
        left.perform(u"cmdDone"_s);
        QVERIFY(!left.frame.find<frmRecipe>());
    }

    void names_data()
    {
        addRows<QString, QStringList, QString, QString>({
            {"new", u""_s, QStringList({u" APPLE pie "_s, u"soup"_s}),
             u"cmdNew  Crème & co. 50% [a]; b-c_d "_s, u"Crème & co. 50% [a]; b-c_d"_s},
            {"edit", u"apple pie"_s, QStringList({u" SOUP"_s, u"soup"_s}), u"cmdEdit Apple Pie"_s,
             u"Apple Pie"_s},
        });
    }
    void names()
    {
        const auto [current, taken, step, accepted] =
            fetchRow<QString, QStringList, QString, QString>();
        RecipeWindowFixture fixture(
            "INSERT INTO Recipes (RecipeName) VALUES ('apple pie'), ('Soup')");
        const InputBox box = WindowFixture::nameBox(current);
        for (const QChar forbidden : u"\\/:*?\"'<>|()"_s) {
            fixture.interaction.expect(box, u"a%1b"_s.arg(forbidden));
            fixture.interaction.expect(WindowFixture::error(
                u"Recipe can't have the following charaters in it\r\\/:*?\"<>|()"_s));
        }
        for (const QString &name : std::as_const(taken)) {
            fixture.interaction.expect(box, name);
            fixture.interaction.expect(WindowFixture::error(u"Recipe Name must be unique"_s));
        }
        fixture.perform(step);
        QCOMPARE(fixture.form.title(), accepted);
    }

    void description()
    {
        const QString stored = u"one\r\ntwo \nthree"_s;
        const auto box = [](const QString &text) {
            return InputBox{u"Enter description for this recipe"_s, u"Enter Description"_s, text,
                            Lines::Several};
        };
        RecipeWindowFixture fixture("INSERT INTO Recipes (RecipeName, Description) VALUES ('a', '"
                                    + stored.toUtf8() + "'), ('SOUP', 'another')");
        // The search for the name leaves the cursor on the recipe shown.
        fixture.interaction.expect(WindowFixture::nameBox(u"a"_s), u"Soup"_s);
        fixture.interaction.expect(WindowFixture::error(u"Recipe Name must be unique"_s));
        fixture.perform(u"cmdEdit "_s);
        fixture.interaction.expect({.text = stored, .title = u"Recipe Description"_s});
        fixture.perform(u"cmdDescription, cmdEdit a"_s);
        fixture.interaction.expect(box(stored), stored);
        fixture.perform(u"cmdDescription"_s);
        QCOMPARE(stateOf(fixture.form), u"open dontsave"_s);
        fixture.interaction.expect(box(stored), {}); // cancelled
        fixture.perform(u"cmdDescription, cmdSave, cmdNew c"_s);
        fixture.interaction.expect(box({}), u" as typed "_s);
        fixture.perform(u"cmdDescription, cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT Description FROM Recipes"), u", another,  as typed "_s);
    }

    void comingBack()
    {
        RecipeWindowFixture fixture(
            "INSERT INTO Recipes (RecipeName, Rating) VALUES ('a', 1), ('b', 1);"
            "INSERT INTO Utensils VALUES (1, 'Pot')",
            2);
        fixture.perform(u"cmdEdit b, txtAuthor lost"_s);
        for (const auto &[change, shown] :
             {std::pair("UPDATE Recipes SET RecipeName = 'z', Author = 'Eve' WHERE RecipeID = 2;"
                        "INSERT INTO RecipeUtensils VALUES (2, 1)",
                        u"z|Eve|yes|Misc||1 - Rave reviews||Pot|"_s),
              {"DELETE FROM Recipes WHERE RecipeID = 2", u"a||yes|Misc||1 - Rave reviews|||"_s}}) {
            fixture.sql(change);
            fixture.frame.hide(fixture.form);
            fixture.frame.show(fixture.form);
            QTRY_COMPARE(fixture.shown(), shown);
        }
        QCOMPARE(fixture.form.recipeId(), 1);
    }

    // Recipe b of a, b, c, d is shown. What the user does, and what another program deletes first.
    void passesDeleted_data()
    {
        addRows<QString, QByteArray, QString, QString>({
            {"next", u""_s, "3", u"cmdNext"_s, u"d"_s},
            {"previous", u""_s, "1", u"cmdPrevious"_s, u"b"_s},
            {"next after all were read", u"cmdNext, cmdPrevious"_s, "3, 4", u"cmdNext"_s, u"b"_s},
            {"the recipe itself", u""_s, "2", u"cmdNext"_s, u"a"_s},
            {"the recipe itself after all were read", u"cmdNext, cmdPrevious"_s, "2", u"cmdNext"_s,
             u"c"_s},
        });
    }
    void passesDeleted()
    {
        const auto [before, keys, press, title] = fetchRow<QString, QByteArray, QString, QString>();
        RecipeWindowFixture fixture(
            "INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b'), ('c'), ('d')", 2);
        fixture.perform(before);
        fixture.sql("DELETE FROM Recipes WHERE RecipeID IN (" + keys + ")");
        fixture.perform(press);
        QCOMPARE(fixture.shown().section(u'|', 0, 0), title);
    }

    void untouched_data()
    {
        addRows<QByteArray>({
            {"spaces and line ends",
             QByteArray("'  a\xC2\xA0\t' || x'0A' || 'b' || x'0D' || 'c'"
                        " || x'0D0A0AE280A8E280A9' || ' '")},
            {"emoji, combining, BOM and control characters",
             QByteArray("'\U0001F370 e\u0301 \uFEFF' || x'0001071B' || 'b'")},
            {"invalid UTF-8", QByteArray("CAST(x'61FF62' AS TEXT)")},
            {"blob", QByteArray("x'610A62'")},
        });
    }
    void untouched()
    {
        const auto [instructions] = fetchRow<QByteArray>();
        const QByteArray all = "SELECT hex(RecipeName), hex(Description), hex(Author), RecipeType,"
                               " hex(Instructions), typeof(Instructions), Serves FROM Recipes";
        RecipeWindowFixture fixture(
            "INSERT INTO Recipes VALUES (1, 'Tom''s (\"best\") [*]', 'two' || x'0A' || 'lines ',"
            " '12345678901234567890123456789 ', 70000, "
            + instructions
            + ", 0, 'a few'); INSERT INTO Recipes (RecipeName) SELECT RecipeName FROM Recipes");
        const QString before = fixture.stored(all);
        fixture.perform(u"cmbRating 2, cmdSave"_s);
        QCOMPARE(fixture.stored(all), before);
        QCOMPARE(fixture.stored("SELECT Rating FROM Recipes"), u"2, null"_s);
    }

    void edited_data()
    {
        const QString old = u"1|soup|d|null|16|a\nb\u00A0|9|null"_s;
        addRows<QString, QString>({
            {"rating, and the nulls as shown", u"cmdEdit soup, cmbRating 1, cmdSave"_s,
             u"1|soup|d||16|a\nb\u00A0|1|0"_s},
            {"instructions", u"cmdEdit soup, txtInstruction c, cmdSave"_s,
             u"1|soup|d||16|a\r\nb\u00A0c|9|0"_s},
            {"typed beyond the limits",
             u"cmdEdit Soup, txtAuthor 12345678901234567890123456, cmbRecipeType 2, "
             "txtServes 123, cmdSave"_s,
             u"1|Soup|d|1234567890123456789012345|2|a\nb\u00A0|9|12"_s},
            {"not saved", u"cmdEdit s, txtAuthor Ann, cmdNext?No, cmdDone?No"_s, old},
            {"new, saved by Done", u"cmdNew b, cmbRecipeType 1, txtServes 5, cmdDone?Yes"_s,
             old + u", 2|b|||1||5|5"_s},
        });
    }
    void edited()
    {
        const auto [steps, stored] = fetchRow<QString, QString>();
        RecipeWindowFixture fixture("INSERT INTO Recipes VALUES"
                                    " (1, 'soup', 'd', NULL, 16, 'a' || x'0A62C2A0', 9, NULL)");
        fixture.perform(steps);
        QCOMPARE(fixture.stored("SELECT * FROM Recipes"), stored);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QByteArray>("cause");
        QTest::addColumn<QByteArray>("repair");
        QTest::addColumn<QString>("serves"); // as entered
        QTest::addColumn<MessageBox>("box");
        for (const QString &button :
             {u"cmdSave"_s, u"cmdNext"_s, u"cmdDone"_s, u"cmdChangeIngredients"_s}) {
            const auto row = [&button](const char *name) -> QTestData & {
                return QTest::addRow("%s, %s", name, qUtf8Printable(button)) << button;
            };
            row("no number") << QByteArray() << QByteArray() << u"1e"_s
                             << WindowFixture::error(
                                    u"Serves must be a number, 0 or more. \"1e\" is not."_s);
            row("database error") << QByteArray("CREATE TRIGGER t AFTER UPDATE ON Recipes"
                                                " BEGIN SELECT RAISE(ABORT, 'no'); END")
                                  << QByteArray("DROP TRIGGER t") << u"4"_s
                                  << WindowFixture::failure(
                                         u"b2"_s,
                                         u"The recipe database %1 could not be used: no"_s);
            row("name taken") << QByteArray("INSERT INTO Recipes (RecipeName) VALUES ('B2')")
                              << QByteArray("DELETE FROM Recipes WHERE RecipeName = 'B2'") << u"4"_s
                              << WindowFixture::error(u"Recipe Name must be unique"_s);
            row("deleted")
                << QByteArray("DELETE FROM Recipes WHERE RecipeID = 2")
                << QByteArray("INSERT INTO Recipes (RecipeID, RecipeName, Rating, RecipeType)"
                              " VALUES (2, 'b', 0, 0)")
                << u"4"_s
                << WindowFixture::failure(
                       u"b2"_s,
                       u"This recipe has been deleted by another program. Nothing was stored."_s);
        }
    }
    // Nothing changes, and the recipe can be saved when the cause is repaired.
    void failures()
    {
        QFETCH(QString, button);
        QFETCH(QByteArray, cause);
        QFETCH(QByteArray, repair);
        QFETCH(QString, serves);
        QFETCH(MessageBox, box);
        RecipeWindowFixture fixture("INSERT INTO Recipes (RecipeName, Rating, RecipeType)"
                                    " VALUES ('a', 0, 0), ('b', 0, 0), ('c', 0, 0)",
                                    2);
        fixture.perform(u"cmdEdit b2, txtAuthor Ann, txtServes "_s + serves);
        const QString entered = fixture.shown();
        fixture.sql(cause);
        const QString before = fixture.stored("SELECT * FROM Recipes");
        if (button == "cmdNext"_L1 || button == "cmdDone"_L1)
            fixture.expectQuestion(fixture.form, button, u"Yes"_s);
        box.text.replace(u"%1"_s, fixture.file.path());
        fixture.interaction.expect(box);
        fixture.perform(button);
        fixture.interaction.checkAllCame();
        QCOMPARE(fixture.shown(), entered);
        QCOMPARE(fixture.form.recipeId(), 2);
        QCOMPARE(fixture.stored("SELECT * FROM Recipes"), before);

        fixture.sql(repair);
        fixture.perform(u"txtServes =4, cmdSave, cmdNext"_s);
        QCOMPARE(fixture.form.title(), u"c"_s);
        QCOMPARE(fixture.stored("SELECT RecipeName, Serves FROM Recipes WHERE Author = 'Ann'"),
                 u"b2|4"_s);
    }

    void othersChangesStay()
    {
        RecipeWindowFixture fixture("INSERT INTO Recipes (RecipeName, Author) VALUES ('a', 'Ann')");
        fixture.sql("UPDATE Recipes SET RecipeName = 'b', Author = 'Eve'");
        fixture.perform(u"cmbRating 3, cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT RecipeName, Author, Rating FROM Recipes"), u"b|Eve|3"_s);
        QCOMPARE(fixture.form.title(), u"b"_s);
    }
};

QTEST_MAIN(tst_frmRecipe)
#include "tst_frmrecipe.moc"
