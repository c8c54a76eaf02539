#include "recipes/RecipeTable.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/TemporaryHome.h"
#include "support/WindowFixture.h"

#include <QAccessible>
#include <QClipboard>
#include <QFile>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QScrollBar>

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto recipes =
    "INSERT INTO Recipes (RecipeName, Author, RecipeType) VALUES ('Bean Soup', 'Ann', 0),"
    " ('Curry', 'Bob', 0);"
    "INSERT INTO Ingredients VALUES (1, 'Beans', 0, 0, 1), (2, 'Rice', 0, 0, 1),"
    " (3, 'Salt', 0, 0, 1); INSERT INTO Utensils VALUES (1, 'Pot');"
    "INSERT INTO RecipeIngredients VALUES (1, 1, '1 cup'), (2, 2, '1 lb'), (1, 3, ''),"
    " (1, 2, '2 oz'); INSERT INTO RecipeUtensils VALUES (1, 1);";

// The list and the record window, which is active and shows Bean Soup.
struct Windows : WindowFixture {
    explicit Windows(const QByteArray &statements = recipes)
        : WindowFixture(statements)
    {
        select(0);
        press(list, u"cmdView"_s);
    }

    void select(int row)
    {
        auto &table = control<RecipeTable>(list, u"lvwRecipes"_s);
        table.setCurrentIndex(table.model()->index(row, 0));
    }
    // Returns to a window, as F5 does.
    void activate(ChildWindow &window)
    {
        frame.show(window);
        QCoreApplication::processEvents();
    }
    // Presses View for Curry while another window may be active, as a screen reader does.
    void pressViewBehind()
    {
        select(1);
        auto &view = control<QPushButton>(list, u"cmdView"_s);
        QAccessible::queryAccessibleInterface(&view)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
        QTest::qWait(200); // QAccessible presses a button with an animation of 100 ms
    }
    // Types keys in one burst.
    static void type(const QString &keys)
    {
        if (QProcess::execute(u"xdotool"_s, QStringList(u"key"_s) + keys.split(u' ')) != 0)
            qFatal("xdotool failed");
        QTest::qWait(200);
    }

    frmRecipes &list = open<frmRecipes>();
    frmRecipe &recipe = frame.load<frmRecipe>();
};

// Replaces the first page of a table, so that other connections notice it. Returns the old page.
QByteArray replacePage(const TestDatabase &file, const QByteArray &table, const QByteArray &page)
{
    const int number =
        file.stored("SELECT rootpage FROM sqlite_schema WHERE name = '" + table + "'").toInt();
    file.write(u"PRAGMA user_version = "_s + file.stored("PRAGMA user_version"));
    QFile bytes(file.path());
    if (!bytes.open(QIODevice::ReadWrite) || !bytes.seek((number - 1) * page.size()))
        qFatal("the file cannot be changed");
    QByteArray old = bytes.read(page.size());
    if (!bytes.seek((number - 1) * page.size()) || bytes.write(page) != page.size())
        qFatal("the page is not replaced");
    return old;
}

} // namespace

// What the record window shows is what it saves, and it stays usable by keyboard. Keys are real
// ones on an X server.
class tst_ShownRecipe : public QObject
{
    Q_OBJECT

    const TemporaryHome home;

private Q_SLOTS:
    void savesWhatItShows_data()
    {
        QTest::addColumn<std::function<void(Windows &)>>("situation");
        const auto row = [](const char *name, const std::function<void(Windows &)> &situation) {
            QTest::newRow(name) << situation;
        };
        row("Alt+V and Ctrl+Tab in one burst", [](Windows &windows) {
            windows.activate(windows.list);
            windows.select(1);
            Windows::type(u"alt+v ctrl+Tab"_s);
            windows.activate(windows.recipe);
        });
        row("View behind", [](Windows &windows) { windows.pressViewBehind(); });
        row("View behind a new recipe", [](Windows &windows) {
            windows.perform(windows.recipe, u"cmdNew Dal, txtAuthor Eve"_s);
            windows.pressViewBehind();
        });
        row("View behind an editor", [](Windows &windows) {
            press(windows.recipe, u"cmdChangeIngredients"_s);
            windows.pressViewBehind();
            press(*windows.frame.find("frmChangeIngredients"), u"cmdCancel"_s);
        });
    }
    void savesWhatItShows()
    {
        QFETCH(std::function<void(Windows &)>, situation);
        Windows windows;
        const QByteArray links = "SELECT * FROM RecipeIngredients ORDER BY RecipeID, IngredientID";
        const QString linksBefore = windows.stored(links);
        situation(windows);
        if (control<QPushButton>(windows.recipe, u"cmdEdit"_s).isEnabled())
            windows.perform(windows.recipe, u"cmdEdit Curry"_s);
        windows.perform(windows.recipe, u"txtAuthor !, cmdSave, cmdChangeIngredients"_s);
        press(*windows.frame.find("frmChangeIngredients"), u"cmdDone"_s);
        QCOMPARE(windows.stored("SELECT RecipeName, Author FROM Recipes"),
                 u"Bean Soup|Ann, Curry|Bob!"_s);
        QCOMPARE(windows.stored(links), linksBefore);
        QCOMPARE(windows.recipe.title(), u"Curry"_s);
    }

    void unreadable_data()
    {
        QTest::addColumn<QByteArray>("table");
        QTest::addColumn<bool>("damaged"); // or missing
        QTest::addColumn<bool>("another"); // recipe is to be shown, or the same one again
        for (const char *table : {"Recipes", "RecipeIngredients", "RecipeUtensils"}) {
            QTest::addRow("%s missing, another", table) << QByteArray(table) << false << true;
            QTest::addRow("%s missing, the same", table) << QByteArray(table) << false << false;
        }
        // The recipe shown has no utensils, so only the index on their links is read.
        for (const char *damaged : {"Recipes", "RecipeIngredients", "RecipeUtensilsOfRecipe"})
            QTest::addRow("%s damaged", damaged) << QByteArray(damaged) << true << true;
    }
    // A recipe that cannot be read completely is not shown, nor the one before it. Nothing is
    // stored until it can be read.
    void unreadable()
    {
        QFETCH(QByteArray, table);
        QFETCH(bool, damaged);
        QFETCH(bool, another);
        Windows windows;
        const frmRecipe &form = windows.recipe;
        const QByteArray all = "SELECT RecipeName, Author, Rating FROM Recipes";
        const auto expectFailure = [&](const QString &title) {
            const QString missing = u"no such table: "_s + QString::fromLatin1(table);
            windows.interaction.expect(WindowFixture::failure(
                title, sqliteText(windows.file, damaged ? SQLITE_CORRUPT : SQLITE_ERROR, missing)));
        };
        const auto instructions = [&] {
            return control<QPlainTextEdit>(form, u"txtInstruction"_s).placeholderText();
        };
        windows.perform(form, u"cmdEdit Soup, txtAuthor x"_s);
        windows.activate(windows.list);
        windows.select(1);
        const QString stored = windows.stored(all);
        QByteArray page(windows.stored("PRAGMA page_size").toInt(), '\x55');
        if (damaged)
            page = replacePage(windows.file, table, page);
        else
            windows.sql("ALTER TABLE " + table + " RENAME TO Gone");
        expectFailure(u"Soup"_s);
        if (another)
            press(windows.list, u"cmdView"_s);
        else
            windows.activate(windows.recipe);
        windows.interaction.checkAllCame();

        QVERIFY(instructions().startsWith("The recipe could not be read."_L1));
        QCOMPARE(WindowFixture::shown(form), u"Recipe||no|||Unrated|||"_s);
        QCOMPARE(form.recipeId(), 0);
        for (const QString &button : {u"cmdSave"_s, u"cmdEdit"_s, u"cmdChangeIngredients"_s,
                                      u"cmdChangeUtensils"_s, u"cmdDescription"_s}) {
            windows.interaction.expect(
                WindowFixture::error(u"No recipe is open. Press New to start one."_s));
            windows.perform(form, u"cmbRating 2, "_s + button);
        }
        expectFailure(u"Recipe"_s);
        windows.perform(form, u"cmdPrevious"_s);

        if (damaged)
            replacePage(windows.file, table, page);
        else
            windows.sql("ALTER TABLE Gone RENAME TO " + table);
        QCOMPARE(windows.stored(all), stored);
        windows.activate(windows.list);
        windows.activate(windows.recipe);
        QCOMPARE(form.title(), another ? u"Curry"_s : u"Bean Soup"_s);
        QVERIFY(instructions().isEmpty());
    }

    void focusOnSave_data()
    {
        QTest::addColumn<std::function<void(Windows &)>>("saveIsDisabled");
        const auto row = [](const char *name,
                            const std::function<void(Windows &)> &saveIsDisabled) {
            QTest::newRow(name) << saveIsDisabled;
        };
        const auto leave = [](const QString &button, const QString &key) {
            return [button, key](Windows &windows) {
                windows.expectQuestion(windows.recipe, button, u"No"_s);
                Windows::type(key);
            };
        };
        row("pressed", [](Windows &) { Windows::type(u"space"_s); });
        row("another window and back", [](Windows &windows) {
            windows.activate(windows.list);
            windows.activate(windows.recipe);
        });
        row("Next, No", leave(u"cmdNext"_s, u"alt+e"_s));
        row("Previous, No", leave(u"cmdPrevious"_s, u"alt+r"_s));
    }
    // Enter must not press the button that follows Save, which is Done.
    void focusOnSave()
    {
        QFETCH(std::function<void(Windows &)>, saveIsDisabled);
        Windows windows(
            QByteArray(recipes)
            + "INSERT INTO Recipes (RecipeName, RecipeType) VALUES ('Apples', 0), ('Zwieback', 0)");
        windows.perform(windows.recipe, u"cmdNext, cmbRating 2"_s);
        auto &save = control<QPushButton>(windows.recipe, u"cmdSave"_s);
        save.setFocus();
        saveIsDisabled(windows);
        QTRY_VERIFY(!save.isEnabled());
        QVERIFY(windows.recipe.isAncestorOf(QApplication::focusWidget()));
        QVERIFY(!control<QPushButton>(windows.recipe, u"cmdDone"_s).hasFocus());
        Windows::type(u"Return"_s);
        QCOMPARE(windows.frame.find<frmRecipe>(), &windows.recipe);
    }

    void placeInInstructions_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::newRow("another window and back") << u""_s;
        QTest::newRow("saved") << u"cmdEdit Bean Soup, txtAuthor !, cmdSave"_s;
        QTest::newRow("rating saved") << u"cmbRating 2, cmdSave"_s;
    }
    // The text has two kinds of line ends and a no-break space.
    void placeInInstructions()
    {
        QFETCH(QString, steps);
        Windows windows(QByteArray(recipes)
                        + "UPDATE Recipes SET Instructions = replace(hex(zeroblob(200)), '00',"
                          " 'Stir\xC2\xA0it.' || x'0D0A' || 'Wait.' || x'0A')");
        auto &text = control<QPlainTextEdit>(windows.recipe, u"txtInstruction"_s);
        QTextCursor caret = text.textCursor();
        caret.setPosition(700);
        text.setTextCursor(caret);
        const int top = text.verticalScrollBar()->value() + 2;
        text.verticalScrollBar()->setValue(top);
        windows.perform(windows.recipe, steps);
        windows.activate(windows.list);
        windows.activate(windows.recipe);
        QCOMPARE(text.textCursor().position(), 700);
        QCOMPARE(text.verticalScrollBar()->value(), top);
        windows.perform(windows.recipe, u"cmdNext"_s);
        QCOMPARE(text.textCursor().position(), 0); // another recipe, though the text is the same
    }

    void focusAfterEdit_data()
    {
        QTest::addColumn<QString>("focused");
        QTest::addColumn<QString>("expected");
        QTest::newRow("in the instructions") << u"txtInstruction"_s << u"txtInstruction"_s;
        QTest::newRow("on Edit") << u"cmdEdit"_s << u"txtAuthor"_s;
    }
    void focusAfterEdit()
    {
        QFETCH(QString, focused);
        QFETCH(QString, expected);
        Windows windows;
        control<QWidget>(windows.recipe, focused).setFocus();
        windows.interaction.expect(WindowFixture::nameBox(u"Bean Soup"_s), u"Bean Soup"_s);
        Windows::type(u"alt+d"_s);
        QCOMPARE(QApplication::focusWidget()->objectName(), expected);
    }

    void copying_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("copied");
        QTest::newRow("all") << u"ctrl+a ctrl+c"_s << u"Beans (1 cup)\nSalt ()\nRice (2 oz)"_s;
        QTest::newRow("two, from below") << u"End shift+Up ctrl+c"_s << u"Salt ()\nRice (2 oz)"_s;
        QTest::newRow("apart") << u"End Home ctrl+Down ctrl+Down ctrl+space ctrl+c"_s
                               << u"Beans (1 cup)\nRice (2 oz)"_s;
    }
    void copying()
    {
        QFETCH(QString, keys);
        QFETCH(QString, copied);
        Windows windows;
        control<QListWidget>(windows.recipe, u"lstIngredient"_s).setFocus();
        Windows::type(keys);
        QCOMPARE(QGuiApplication::clipboard()->text(), copied);
    }

    void themeChange()
    {
        Windows windows;
        const QPalette before = QApplication::palette();
        QPalette dark;
        dark.setColor(QPalette::Window, Qt::darkBlue);
        dark.setColor(QPalette::Base, Qt::black);
        QApplication::setPalette(dark);
        const auto backgrounds = [&] {
            QStringList names;
            for (const QString &edit : {u"txtAuthor"_s, u"txtServes"_s, u"txtInstruction"_s})
                names +=
                    control<QWidget>(windows.recipe, edit).palette().color(QPalette::Base).name();
            return names.join(u' ');
        };
        QCoreApplication::processEvents();
        const QString locked = backgrounds();
        windows.perform(windows.recipe, u"cmdEdit Bean Soup"_s);
        const QString open = backgrounds();
        QApplication::setPalette(before);
        QCOMPARE(locked, u"#000080 #000080 #000080"_s);
        QCOMPARE(open, u"#000000 #000000 #000000"_s);
    }
};

QTEST_MAIN(tst_ShownRecipe)
#include "tst_shownrecipe.moc"
