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

// Overwrites the first page of a table.
void damage(const TestDatabase &file, const QByteArray &table)
{
    const int page =
        file.stored("SELECT rootpage FROM sqlite_schema WHERE name = '" + table + "'").toInt();
    const int size = file.stored("PRAGMA page_size").toInt();
    QFile bytes(file.path());
    if (!bytes.open(QIODevice::ReadWrite) || !bytes.seek(qint64{page - 1} * size)
        || bytes.write(QByteArray(size, '\x55')) != size)
        qFatal("the file is not damaged");
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
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("stored");
        const auto row = [](const char *name, const std::function<void(Windows &)> &situation,
                            bool showsCurry) {
            QTest::newRow(name) << situation << (showsCurry ? u"Curry"_s : u"Bean Soup"_s)
                                << (showsCurry ? u"Bean Soup|Ann, Curry|Bob!"_s
                                               : u"Bean Soup|Ann!, Curry|Bob"_s);
        };
        const auto unreadable = [](Windows &windows, const QByteArray &table) {
            windows.activate(windows.list);
            windows.select(1);
            windows.sql("ALTER TABLE " + table + " RENAME TO Gone");
            windows.interaction.expect(
                WindowFixture::failure(u"Bean Soup"_s,
                                       u"%1 is not a recipe database: the table %2 is missing. Put "
                                       "your last copy of it in its place and try again."_s.arg(
                                           windows.file.path(), QString::fromLatin1(table))));
            press(windows.list, u"cmdView"_s);
            windows.interaction.checkAllCame();
            windows.sql("ALTER TABLE Gone RENAME TO " + table);
        };
        row(
            "utensils cannot be read",
            [=](Windows &windows) { unreadable(windows, "RecipeUtensils"); }, false);
        row(
            "ingredients cannot be read",
            [=](Windows &windows) { unreadable(windows, "RecipeIngredients"); }, false);
        row(
            "Alt+V and Ctrl+Tab in one burst",
            [](Windows &windows) {
                windows.activate(windows.list);
                windows.select(1);
                Windows::type(u"alt+v ctrl+Tab"_s);
                windows.activate(windows.recipe);
            },
            true);
        row(
            "View behind", [](Windows &windows) { windows.pressViewBehind(); }, true);
        row(
            "View behind a new recipe",
            [](Windows &windows) {
                windows.perform(windows.recipe, u"cmdNew Dal, txtAuthor Eve"_s);
                windows.pressViewBehind();
            },
            true);
        row(
            "View behind an editor",
            [](Windows &windows) {
                press(windows.recipe, u"cmdChangeIngredients"_s);
                windows.pressViewBehind();
                press(*windows.frame.find("frmChangeIngredients"), u"cmdCancel"_s);
            },
            true);
    }
    void savesWhatItShows()
    {
        QFETCH(std::function<void(Windows &)>, situation);
        QFETCH(QString, title);
        QFETCH(QString, stored);
        Windows windows;
        const QByteArray links = "SELECT * FROM RecipeIngredients ORDER BY RecipeID, IngredientID";
        const QString linksBefore = windows.stored(links);
        situation(windows);
        QCOMPARE(windows.recipe.title(), title);
        if (control<QPushButton>(windows.recipe, u"cmdEdit"_s).isEnabled())
            windows.perform(windows.recipe, u"cmdEdit "_s + title);
        windows.perform(windows.recipe, u"txtAuthor !, cmdSave, cmdChangeIngredients"_s);
        press(*windows.frame.find("frmChangeIngredients"), u"cmdDone"_s);
        QCOMPARE(windows.stored("SELECT RecipeName, Author FROM Recipes"), stored);
        QCOMPARE(windows.stored(links), linksBefore);
        QCOMPARE(windows.recipe.title(), title);
    }

    void damagedLinks_data()
    {
        QTest::addColumn<QByteArray>("table");
        QTest::newRow("ingredients") << QByteArray("RecipeIngredients");
        QTest::newRow("utensils") << QByteArray("RecipeUtensils");
    }
    // Nothing half read is shown, and nothing is stored in the damaged file.
    void damagedLinks()
    {
        QFETCH(QByteArray, table);
        WindowFixture fixture(recipes);
        damage(fixture.file, table);
        const QByteArray all = "SELECT * FROM Recipes";
        const QString before = fixture.stored(all);
        const auto expectFailure = [&](const QString &title) {
            fixture.interaction.expect(
                WindowFixture::failure(title,
                                       u"The recipe database %1 is damaged. Keep it, because "
                                       "parts of it may be saved; put your last copy of it in its "
                                       "place and try again."_s.arg(fixture.file.path())));
        };
        expectFailure(u"Recipe"_s);
        auto &form = fixture.open<frmRecipe>();
        QCOMPARE(fixture.shown(form), u"Recipe||no|||Unrated|||"_s);
        for (const QString &step : {u"cmdSave"_s, u"cmdNext"_s}) {
            expectFailure(u"Recipe"_s);
            fixture.perform(form, step);
        }
        for (const QString &step : {u"cmdEdit"_s, u"cmdChangeUtensils"_s}) {
            fixture.interaction.expect(
                WindowFixture::error(u"No recipe is open. Press New to start one."_s));
            fixture.perform(form, step);
        }
        QCOMPARE(fixture.shown(form), u"Recipe||no|||Unrated|||"_s);
        QCOMPARE(fixture.stored(all), before);

        fixture.perform(form, u"cmdNew Dal"_s);
        fixture.interaction.expect(WindowFixture::failure(
            u"Dal"_s,
            UnusableDatabase::damaged(fixture.file.path(), DatabaseError::Operation::Writing)
                .text()));
        fixture.perform(form, u"cmdSave"_s);
        QCOMPARE(fixture.stored(all), before);
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
