#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "data/Database.h"
#include "support/FormText.h"
#include "support/TemporaryHome.h"
#include "support/WindowFixture.h"
#include "widgets/ListBox.h"

#include <sqlite3.h>

#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto pantry = "INSERT INTO Ingredients VALUES (1, 'Salt', 3, 999, 1),"
                        "(2, 'Apple', 1, 30, 1), (3, 'beef', 4, 2, 0), (4, 'Éclair', 0, 1, 1)";

// A fixture with the catalog and its controls.
struct CatalogFixture : WindowFixture {
    explicit CatalogFixture(const QByteArray &rows)
        : WindowFixture(rows)
    {
    }

    void perform(const QString &steps) { WindowFixture::perform(window, steps); }
    QString shown() const { return WindowFixture::shown(window); }
    QString stored() const { return WindowFixture::stored("SELECT * FROM Ingredients ORDER BY 1"); }

    frmIngredient &window = open<frmIngredient>();
    ListBox &list = control<ListBox>(window, u"lstIngredients"_s);
    QLineEdit &name = control<QLineEdit>(window, u"txtIngredient"_s);
    QPushButton &save = control<QPushButton>(window, u"cmdSave"_s);
};

// Whether nothing is drawn in the list: no row and no placeholder text.
bool isBlank(ListBox &list)
{
    const QImage image = list.viewport()->grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(0, 0))
                return false;
        }
    }
    return true;
}

// Whether the box has a red frame.
bool hasFrame(QLineEdit &edit)
{
    const QColor color = edit.grab().toImage().pixelColor(0, edit.height() / 2);
    return color.red() > 2 * color.blue();
}

QString locked(const RecipeFile &file)
{
    return DatabaseError::fromSqlite(file.path(), SQLITE_BUSY, {}).text();
}

} // namespace

class tst_Catalogs : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

private Q_SLOTS:
    void opens_data()
    {
        QTest::addColumn<QByteArray>("rows");
        QTest::addColumn<bool>("utensils");
        QTest::addColumn<QString>("form");
        const QString types = u"Misc, Fruit, Vegetable, Seasoning, Meat, Poultry, Fish, Dairy, "
                              "Canned good, Grain, Staple, Legume\n"_s;
        const QString move = u"cmdPrevious: P&revious\ncmdNext: N&ext\ncmdNew: &New\n"_s;
        const QString leave = u"cmdSave: &Save, disabled\ncmdDone: D&one"_s;
        const QString labels = u"Ingredient, Type, Shelf Life, days\n"_s;
        QTest::newRow("ingredients") << QByteArray(pantry) << false
                                     << u"Ingredients, "_s + labels
                + u"> lstIngredients: *Éclair, Apple, Salt, beef\n"
                  "txtIngredient: Éclair\ncmbType: *"_s
                + types + u"txtShelfLife: 1\nchkVegetarian: Ve&getarian, checked\n"_s + move
                + u"cmdDelete: &Delete\n"_s + leave;
        QTest::newRow("no ingredients") << QByteArray() << false
                                        << u"Ingredients, New ingredient, not saved yet, "_s
                + labels + u"lstIngredients: \n> txtIngredient: \ncmbType: "_s + types
                + u"txtShelfLife: \nchkVegetarian: Ve&getarian\n"_s + move
                + u"cmdDelete: &Delete\n"_s + leave;
        QTest::newRow("utensils")
            << QByteArray("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')") << true
            << u"Utensils, Utensil\n> lstUtensils: *pan, Whisk\ntxtUtensilName: pan\n"_s + move
                + leave;
        QTest::newRow("no utensils")
            << QByteArray() << true
            << u"Utensils, New utensil, not saved yet, Utensil\nlstUtensils: \n"
               "> txtUtensilName: \n"_s
                + move + leave;
    }
    void opens()
    {
        QFETCH(QByteArray, rows);
        QFETCH(bool, utensils);
        WindowFixture fixture(rows);
        const ChildWindow &window = utensils
            ? static_cast<ChildWindow &>(fixture.open<frmUtensil>())
            : fixture.open<frmIngredient>();
        QTEST(formText(window), "form");
    }

    void order()
    {
        CatalogFixture catalog(pantry);
        for (const QString &seen : {u"Éclair"_s, u"Apple"_s, u"Salt"_s, u"beef"_s, u"beef"_s}) {
            QCOMPARE(catalog.name.text(), seen);
            QCOMPARE(catalog.list.selectedText(), seen);
            catalog.perform(u"cmdNext"_s);
            QVERIFY(catalog.name.hasFocus());
        }
    }

    void saves_data()
    {
        QTest::addColumn<QString>("name"); // as entered for Salt
        QTest::addColumn<QString>("shelfLife");
        QTest::addColumn<QString>("expected"); // row stored for Salt, or "refused"
        QTest::newRow("case changed") << u"SALT"_s << u"1.5"_s << u"SALT|3|1.5|1"_s;
        QTest::newRow("spaces, no shelf life") << u" Salt "_s << u""_s << u" Salt |3|0|1"_s;
        QTest::newRow("typed beyond the limits") << u"12345678901234567890123456"_s << u"1234"_s
                                                 << u"1234567890123456789012345|3|123|1"_s;
        QTest::newRow("spaces only") << u"   "_s << u"7"_s << u"refused"_s;
        QTest::newRow("invalid character") << u"Salt (sea)"_s << u"7"_s << u"refused"_s;
        QTest::newRow("name taken") << u"éCLAIR"_s << u"7"_s << u"refused"_s;
        QTest::newRow("negative shelf life") << u"Salt"_s << u"-1"_s << u"refused"_s;
    }
    // A refusal shows no message; the fields stay as they are and can still be saved.
    void saves()
    {
        QFETCH(QString, name);
        QFETCH(QString, shelfLife);
        QFETCH(QString, expected);
        CatalogFixture catalog(pantry);
        catalog.perform(
            u"lstIngredients 2, txtIngredient =%1, txtShelfLife =%2"_s.arg(name, shelfLife));
        const QString typed = catalog.shown();
        catalog.name.setFocus();
        QTest::keyClick(&catalog.name, Qt::Key_Return);
        const bool refused = expected == "refused"_L1;
        const QString salt = refused ? u"Salt|3|999|1"_s : expected;
        QCOMPARE(catalog.stored().section(u", "_s, 0, 0), u"1|"_s + salt);
        QCOMPARE(catalog.save.isEnabled(), refused);
        QVERIFY(catalog.list.hasFocus());
        QCOMPARE(refused ? catalog.shown() : catalog.list.selectedText(),
                 refused ? typed : catalog.name.text());
    }

    void noticesChanges_data()
    {
        QTest::addColumn<bool>("utensils");
        QTest::addColumn<QString>("steps");
        QTest::newRow("name") << false << u"txtIngredient x"_s;
        QTest::newRow("shelf life") << false << u"txtShelfLife 2"_s;
        QTest::newRow("flag") << false << u"chkVegetarian"_s;
        QTest::newRow("type") << false << u"cmbType 2"_s;
        QTest::newRow("same type again") << false << u"select the same"_s;
        QTest::newRow("type without the list of types") << false << u"select the next"_s;
        QTest::newRow("utensil") << true << u"txtUtensilName x"_s;
    }
    // Each change enables Save and makes Next ask.
    void noticesChanges()
    {
        QFETCH(bool, utensils);
        QFETCH(QString, steps);
        WindowFixture fixture(pantry + ";INSERT INTO Utensils VALUES (1, 'Whisk')"_ba);
        const ChildWindow &window = utensils
            ? static_cast<ChildWindow &>(fixture.open<frmUtensil>())
            : fixture.open<frmIngredient>();
        if (steps.startsWith("select"_L1)) {
            auto &types = control<QComboBox>(window, u"cmbType"_s);
            if (steps == "select the same"_L1)
                Q_EMIT types.activated(types.currentIndex());
            else
                types.setCurrentIndex(types.currentIndex() + 1);
        } else {
            fixture.perform(window, steps);
        }
        QVERIFY(control<QPushButton>(window, u"cmdSave"_s).isEnabled());
        fixture.perform(window, u"cmdNext?No"_s);
    }

    void keys_data()
    {
        QTest::addColumn<bool>("utensils");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("after"); // the name stored, or "closed"
        QTest::newRow("Enter in ingredients") << false << Qt::Key_Enter << u"Salt1"_s;
        QTest::newRow("Esc in ingredients") << false << Qt::Key_Escape << u"closed"_s;
        QTest::newRow("Enter in utensils") << true << Qt::Key_Enter << u"Whisk1"_s;
        QTest::newRow("Esc in utensils") << true << Qt::Key_Escape << u"Whisk"_s;
    }
    void keys()
    {
        QFETCH(bool, utensils);
        QFETCH(Qt::Key, key);
        QFETCH(QString, after);
        WindowFixture fixture("INSERT INTO Ingredients VALUES (1, 'Salt', 3, 999, 1);"
                              "INSERT INTO Utensils VALUES (1, 'Whisk')");
        ChildWindow &window = utensils ? static_cast<ChildWindow &>(fixture.open<frmUtensil>())
                                       : fixture.open<frmIngredient>();
        const QString name = utensils ? u"txtUtensilName"_s : u"txtIngredient"_s;
        fixture.perform(window, name + u" 1"_s);
        if (after == "closed"_L1)
            fixture.expectQuestion(window, u"cmdDone"_s, u"No"_s);
        QTest::keyClick(&control<QLineEdit>(window, name), key);
        const bool isOpen =
            fixture.frame.find(utensils ? QByteArrayView("frmUtensil") : "frmIngredient");
        QCOMPARE(!isOpen        ? u"closed"_s
                     : utensils ? fixture.stored("SELECT UtensilName FROM Utensils")
                                : fixture.stored("SELECT IngredientName FROM Ingredients"),
                 after);
    }

    void marksWhatItRefuses_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no name") << u"txtIngredient =  "_s << u"txtIngredient"_s
                                 << u"Not saved: type a name first."_s;
        QTest::newRow("invalid character")
            << u"txtIngredient x("_s << u"txtIngredient"_s
            << u"Not saved: a name cannot contain any of \\ / : * ? \" ' < > | ( )"_s;
        QTest::newRow("name taken") << u"txtIngredient =Salt"_s << u"txtIngredient"_s
                                    << u"Not saved: another ingredient has this name."_s;
        QTest::newRow("shelf life") << u"txtShelfLife =x"_s << u"txtShelfLife"_s
                                    << u"Not saved: the shelf life must be a number, 0 or more."_s;
        QTest::newRow("utensil without a name")
            << u"txtUtensilName ="_s << u"txtUtensilName"_s << u"Not saved: type a name first."_s;
        QTest::newRow("utensil in capitals")
            << u"txtUtensilName =WHISK"_s << u"txtUtensilName"_s
            << u"Not saved: a utensil has this name. To change only its capital letters, save it "
               "under a different name first."_s;
        QTest::newRow("the same utensil")
            << u"txtUtensilName x, txtUtensilName =Whisk"_s << u"txtUtensilName"_s << u""_s;
    }
    // The mark goes with the next change, and when another row is shown.
    void marksWhatItRefuses()
    {
        QFETCH(QString, steps);
        QFETCH(QString, box);
        QFETCH(QString, reason);
        WindowFixture fixture(pantry
                              + ";UPDATE Ingredients SET ShelfLife = 'x' WHERE IngredientID = 1;"
                                "INSERT INTO Utensils VALUES (1, 'Whisk')"_ba);
        const ChildWindow &window = box == "txtUtensilName"_L1
            ? static_cast<ChildWindow &>(fixture.open<frmUtensil>())
            : fixture.open<frmIngredient>();
        auto &edit = control<QLineEdit>(window, box);
        const QString list = // whose first row or Salt has what is refused
            box == "txtUtensilName"_L1 ? u"lstUtensils 0"_s : u"lstIngredients 2"_s; // Salt
        const auto mark = [&edit] {
            return hasFrame(edit) && edit.accessibleDescription() == edit.toolTip() ? edit.toolTip()
                                                                                    : QString();
        };
        fixture.perform(window, steps + u", cmdSave"_s);
        QCOMPARE(mark(), reason);
        fixture.perform(window, box + u" 1"_s);
        QCOMPARE(mark() + edit.toolTip(), QString());
        fixture.perform(window, steps + u", cmdSave, "_s + list);
        QCOMPARE(mark() + edit.toolTip(), QString());
    }

    // Enter would press Done if the focus passed on to it.
    void keepsTheFocusOffDone()
    {
        CatalogFixture catalog(pantry);
        catalog.perform(u"txtIngredient Sal"_s);
        catalog.save.setFocus();
        catalog.list.selectRow(1);
        QVERIFY(!catalog.save.isEnabled());
        QCOMPARE(catalog.window.focusWidget(), &catalog.list);
    }

    void marksNewRows()
    {
        CatalogFixture catalog(pantry);
        const auto &mark = control<QLabel>(catalog.window, u"lblNew"_s);
        const int height = catalog.list.height();
        QVERIFY(!mark.isVisible());
        catalog.perform(u"lstIngredients 3, chkVegetarian, cmdNew?No"_s);
        QVERIFY(mark.isVisible() && catalog.list.height() == height);
        QCOMPARE(catalog.name.accessibleDescription(), mark.text());
        // New keeps the type and sets the other fields.
        QCOMPARE(catalog.shown(), u"Ingredients||Meat|0|no"_s);
        catalog.perform(u"txtIngredient Pork, chkVegetarian, cmdSave"_s);
        QVERIFY(!mark.isVisible() && catalog.name.accessibleDescription().isEmpty());
        QVERIFY(catalog.stored().endsWith(u"5|Pork|4|0|1"_s));
    }

    void startsAnEmptyCatalog()
    {
        CatalogFixture catalog({});
        catalog.perform(u"cmdNext, cmdPrevious, cmdDelete"_s);
        QCOMPARE(catalog.shown(), u"Ingredients||||no"_s);
        catalog.perform(u"txtIngredient Salt, cmdSave, cmdNew"_s);
        QVERIFY(catalog.name.hasFocus() && !catalog.save.isEnabled());
        catalog.perform(u"txtIngredient Basil, cmbType 3, chkVegetarian, cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Salt|-1|0|0, 2|Basil|3|0|1"_s);
        QCOMPARE(catalog.list.selectedText(), u"Basil"_s);
    }

    void asksBeforeItLeaves_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("next"); // name shown after it
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("stored");
        for (const auto &[button, next] : {std::pair(u"cmdNext"_s, u"Salt"_s),
                                           {u"cmdPrevious"_s, u"Éclair"_s},
                                           {u"cmdNew"_s, u""_s},
                                           {u"cmdDone"_s, u"closed"_s}}) {
            const auto row = [&](const char *name) -> QTestData & {
                return QTest::addRow("%s, %s", qUtf8Printable(button), name) << button << next;
            };
            row("saved") << u"Apricot"_s << u"Yes"_s << u"Apricot"_s;
            row("dropped") << u"Apricot"_s << u"No"_s << u"Apple"_s;
            row("refused") << u"salt"_s << u"Yes"_s << u"Apple"_s;
        }
    }
    void asksBeforeItLeaves()
    {
        QFETCH(QString, button);
        QFETCH(QString, next);
        QFETCH(QString, typed);
        QFETCH(QString, answer);
        QFETCH(QString, stored);
        CatalogFixture catalog(pantry);
        catalog.perform(u"lstIngredients 1, txtIngredient =%1, %2?%3"_s.arg(typed, button, answer));
        QVERIFY(catalog.stored().contains(u", 2|"_s + stored));
        const bool isOpen = catalog.frame.find<frmIngredient>();
        QCOMPARE(isOpen ? catalog.name.text() : u"closed"_s, next);
    }

    // A click on the selected row drops edits; No to the deletion keeps them.
    void dropsEdits()
    {
        CatalogFixture catalog(pantry);
        catalog.perform(u"txtIngredient x, lstIngredients 0"_s);
        QCOMPARE(catalog.name.text(), u"Éclair"_s);
        QVERIFY(!catalog.save.isEnabled());
        catalog.perform(u"txtIngredient x, cmdDelete?No"_s);
        QCOMPARE(catalog.name.text(), u"Éclairx"_s);
    }

    void deletes()
    {
        CatalogFixture catalog(pantry);
        // A refused save leaves the cursor on another row than the one shown.
        catalog.perform(u"lstIngredients 1, txtIngredient =salt, cmdSave, cmdDelete?Yes"_s);
        QCOMPARE(catalog.list.texts(), QStringList({u"Éclair"_s, u"Salt"_s, u"beef"_s}));
        catalog.perform(u"lstIngredients 2, cmdDelete?Yes"_s);
        QCOMPARE(catalog.shown(), u"Ingredients|Salt|Seasoning|999|yes"_s);
        catalog.perform(u"cmdNew, txtIngredient given up, cmdDelete, cmdPrevious"_s);
        QCOMPARE(catalog.shown(), u"Ingredients|Éclair|Misc|1|yes"_s);
        catalog.perform(u"cmdDelete?Yes, cmdDelete?Yes, txtIngredient Salt, cmdSave"_s);
        // The key of a deleted ingredient is not used again, since recipes may still refer to it.
        QVERIFY(catalog.stored().startsWith(u"5|Salt|"_s));
    }

    // Values from an import or another program are shown in full, and kept unless they are edited.
    void keepsForeignValues()
    {
        CatalogFixture catalog("INSERT INTO Ingredients VALUES "
                               "(5, 'Mama''s \"best\" (very old) sauce?', -7, 'a while', NULL)");
        QCOMPARE(catalog.shown(), u"Ingredients|Mama's \"best\" (very old) sauce?||a while|no"_s);
        catalog.perform(u"txtIngredient =Old wine, chkVegetarian, cmdSave"_s);
        QCOMPARE(catalog.stored(), u"5|Old wine|-7|a while|1"_s);
    }

    void anotherProgram_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QByteArray>("others"); // what another program does before Save
        QTest::addColumn<QString>("stored"); // rows 1, 5 and later
        QTest::addColumn<QString>("listed");
        const QString all = u"Éclair, Apple, Salt, beef"_s;
        const QString salt = u"1|Salt|3|999|1"_s;
        QTest::newRow("adds the name")
            << u"cmdNew, txtIngredient basil"_s
            << QByteArray("INSERT INTO Ingredients VALUES (5, 'Basil', 3, 9, 1)")
            << salt + u", 5|Basil|3|9|1"_s << u"Éclair, Apple, Basil, Salt, beef"_s;
        QTest::newRow("changes the other fields")
            << u"lstIngredients 2, txtIngredient =Sea salt"_s
            << QByteArray("UPDATE Ingredients SET IngredientType = 7, ShelfLife = 5, Vegetarian = 0"
                          " WHERE IngredientID = 1")
            << u"1|Sea salt|7|5|0"_s << u"Éclair, Apple, beef, Sea salt"_s;
        QTest::newRow("changes the name")
            << u"lstIngredients 2, cmbType 4, txtShelfLife =1, chkVegetarian"_s
            << QByteArray("UPDATE Ingredients SET IngredientName = 'Rock' WHERE IngredientID = 1")
            << u"1|Rock|4|1|0"_s << u"Éclair, Apple, beef, Rock"_s;
        QTest::newRow("nulls")
            << u"lstIngredients 2, txtIngredient x"_s
            << QByteArray("UPDATE Ingredients SET IngredientType = NULL, Vegetarian = NULL"
                          " WHERE IngredientID = 1")
            << u"1|Saltx|3|999|1"_s << u"Éclair, Apple, Saltx, beef"_s;
    }
    // Only what the user has changed is stored, and no name twice.
    void anotherProgram()
    {
        QFETCH(QString, steps);
        QFETCH(QByteArray, others);
        CatalogFixture catalog(pantry);
        catalog.perform(steps);
        catalog.sql(others);
        catalog.perform(u"cmdSave"_s);
        QTEST(catalog.WindowFixture::stored(
                  "SELECT * FROM Ingredients WHERE IngredientID NOT IN (2, 3, 4) ORDER BY 1"),
              "stored");
        QTEST(catalog.list.texts().join(u", "_s), "listed");
        if (steps.startsWith("cmdNew"_L1)) // the selection and the fields are kept
            QCOMPARE(catalog.list.selectedText() + catalog.name.text(), u"Éclairbasil"_s);
    }

    void anotherProgramAddsAUtensil()
    {
        WindowFixture fixture("INSERT INTO Utensils VALUES (1, 'Whisk')");
        const auto &window = fixture.open<frmUtensil>();
        fixture.perform(window, u"cmdNew, txtUtensilName =pan"_s);
        fixture.sql("INSERT INTO Utensils VALUES (2, 'Pan')");
        fixture.perform(window, u"cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT * FROM Utensils"), u"1|Whisk, 2|Pan"_s);
    }

    // If a commit fails, the new row is still a new one.
    void triesAFailedCommitAgain()
    {
        WindowFixture fixture(pantry);
        const auto database = Database::open(fixture.file.path(), std::chrono::milliseconds(10));
        const auto &window = fixture.open<frmIngredient>();
        fixture.perform(window, u"cmdNew, txtIngredient Dill"_s);
        {
            SQLite::Database other = fixture.file.other();
            SQLite::Statement reading(other, "SELECT * FROM Ingredients");
            reading.executeStep(); // a commit must wait for it
            fixture.interaction.expect(
                WindowFixture::failure(u"Ingredients"_s, locked(fixture.file)));
            fixture.perform(window, u"cmdSave"_s);
        }
        fixture.perform(window, u"cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT IngredientName FROM Ingredients WHERE IngredientID > 4"),
                 u"Dill"_s);
    }

    // A window that has not been activated, or whose table could not be read, does not say that
    // there are no ingredients, and stores none.
    void unreadTable()
    {
        WindowFixture fixture(pantry);
        const auto database = Database::open(fixture.file.path(), std::chrono::milliseconds(10));
        auto &utensils = fixture.open<frmUtensil>();
        auto &window = fixture.open<frmIngredient>(); // thrown back by the utensils
        auto &list = control<ListBox>(window, u"lstIngredients"_s);
        QCOMPARE(fixture.beeps, 1);
        QVERIFY(isBlank(list));

        SQLite::Database other = fixture.file.other();
        for (const bool isFirst : {true, false}) {
            other.exec("BEGIN EXCLUSIVE");
            fixture.interaction.expect(
                WindowFixture::failure(u"Ingredients"_s, locked(fixture.file)));
            if (isFirst)
                fixture.perform(utensils, u"cmdDone"_s);
            else
                fixture.open<frmUtensil>(); // thrown back: the ingredients are activated again
            fixture.interaction.checkAllCame();
            QVERIFY(list.hasFocus());
            for (const QString &name :
                 {u"txtIngredient"_s, u"cmbType"_s, u"txtShelfLife"_s, u"chkVegetarian"_s,
                  u"cmdPrevious"_s, u"cmdNext"_s, u"cmdNew"_s, u"cmdDelete"_s, u"cmdSave"_s})
                QVERIFY2(!control<QWidget>(window, name).isEnabled(), qUtf8Printable(name));
            auto &done = control<QPushButton>(window, u"cmdDone"_s);
            QVERIFY(done.isEnabled());
            done.setFocus(); // a list with the focus is never blank
            QVERIFY(!isBlank(list));
            other.exec("ROLLBACK");
            fixture.open<frmUtensil>();
            QCOMPARE(list.texts().size(), 4);
        }
        fixture.perform(window, u"cmdNew, txtIngredient Dill, cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT * FROM Ingredients WHERE IngredientID > 4"),
                 u"5|Dill|0|0|0"_s);
    }

    // One click on another row shows it once. A row without a name is shown, not the first such.
    void clicks()
    {
        CatalogFixture catalog(pantry
                               + ";INSERT INTO Ingredients VALUES (5, NULL, 8, 5, 0),"
                                 "(6, NULL, 8, 6, 0)"_ba);
        const QSignalSpy selections(&catalog.list, &ListBox::rowSelected);
        catalog.perform(u"lstIngredients 1"_s);
        QCOMPARE(selections.size(), 1);
        catalog.perform(u"lstIngredients 1"_s);
        QCOMPARE(selections.size(), 2);
        catalog.perform(u"lstIngredients 5"_s);
        QCOMPARE(catalog.shown(), u"Ingredients||Canned good|6|no"_s);
    }

    void failures_data()
    {
        QTest::addColumn<QByteArray>("cause");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown"); // name after it
        const QByteArray deleted = "DELETE FROM Ingredients WHERE IngredientID = 2";
        const QString deletedText =
            u"This entry has been deleted by another program. Nothing was stored."_s;
        QTest::newRow("save a deleted row")
            << deleted << u"cmdSave"_s << deletedText << u"Éclair"_s;
        QTest::newRow("delete a deleted row")
            << deleted << u"cmdDelete"_s << deletedText << u"Éclair"_s;
        QTest::newRow("database error")
            << QByteArray("CREATE TRIGGER t BEFORE UPDATE ON Ingredients"
                          " BEGIN SELECT RAISE(ABORT, 'the pantry is locked'); END")
            << u"cmdSave"_s << u"The recipe file %1 could not be used: the pantry is locked"_s
            << u"Apricot"_s;
    }
    // If the row is gone, the window shows the table as it is now; otherwise the edits are kept.
    void failures()
    {
        QFETCH(QByteArray, cause);
        QFETCH(QString, button);
        QFETCH(QString, text);
        QFETCH(QString, shown);
        CatalogFixture catalog(pantry);
        catalog.perform(u"lstIngredients 1, txtIngredient =Apricot"_s);
        catalog.sql(cause);
        const QString stored = catalog.stored();
        if (button == "cmdDelete"_L1)
            catalog.expectQuestion(catalog.window, button, u"Yes"_s);
        catalog.interaction.expect(
            WindowFixture::failure(u"Ingredients"_s, text.replace(u"%1"_s, catalog.file.path())));
        catalog.perform(button);
        QCOMPARE(catalog.stored(), stored);
        QCOMPARE(catalog.name.text(), shown);
        QCOMPARE(catalog.save.isEnabled(), shown == "Apricot"_L1);
    }

    void savesUtensils_data()
    {
        QTest::addColumn<QString>("typed"); // in the place of "pan"
        QTest::addColumn<QString>("stored");
        const QString long26 = u"12345678901234567890123456"_s;
        QTest::newRow("outer spaces") << u"  Ladle "_s << u"Ladle"_s;
        QTest::newRow("typed beyond the limit") << long26 << long26.first(25);
        QTest::newRow("spaces only") << u"  "_s << u"pan"_s;
        QTest::newRow("invalid character") << u"Cook's ladle"_s << u"pan"_s;
        QTest::newRow("name taken") << u" wHISK "_s << u"pan"_s;
        QTest::newRow("its own name") << u"PAN"_s << u"pan"_s;
    }
    // Stored or refused, Save is disabled.
    void savesUtensils()
    {
        QFETCH(QString, typed);
        QFETCH(QString, stored);
        WindowFixture fixture("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')");
        const auto &window = fixture.open<frmUtensil>();
        fixture.perform(window, u"txtUtensilName ="_s + typed + u", cmdSave"_s);
        QCOMPARE(fixture.stored("SELECT * FROM Utensils"), u"1|Whisk, 2|"_s + stored);
        QVERIFY(!control<QPushButton>(window, u"cmdSave"_s).isEnabled());
    }

    void leavesUtensils()
    {
        WindowFixture fixture("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')");
        const auto &window = fixture.open<frmUtensil>();
        // A refused save leaves the cursor on the row that has the name.
        fixture.perform(window,
                        u"txtUtensilName =whisk, cmdSave, txtUtensilName =Cleaver, "
                        "cmdNext?Yes, txtUtensilName s"_s);
        QCOMPARE(WindowFixture::shown(window), u"Utensils|Whisks"_s);
        fixture.perform(window, u"cmdDone"_s); // asks nothing
        QVERIFY(!fixture.frame.find<frmUtensil>());
        QCOMPARE(fixture.stored("SELECT * FROM Utensils"), u"1|Whisk, 2|Cleaver"_s);
    }
};

QTEST_MAIN(tst_Catalogs)
#include "tst_catalogs.moc"
