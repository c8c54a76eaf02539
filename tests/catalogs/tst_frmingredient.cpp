#include "ListBox.h"
#include "RegistryFunctions.h"
#include "SettingsKeys.h"
#include "Stage.h"
#include "frmIngredient.h"

#include <QCheckBox>
#include <QComboBox>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString pantry =
    u"INSERT INTO Ingredients VALUES (1, 'Salt', 3, 999, 1), (2, 'Apple', 1, 30, 1),"
    "(3, 'beef', 4, 2, 0), (4, 'Éclair', 0, 1, 1);"_s;

constexpr QStringView deletedElsewhere =
    u"This entry has been deleted by another program. Nothing was stored.";

MessageBox saveChanges()
{
    return {u"Do you want to save changes to this ingredient"_s,
            u"Save Changes"_s,
            Icon::Question,
            {Button::Yes, Button::No},
            Button::Yes};
}

MessageBox confirmDelete()
{
    return {u"Are you sure you want to delete this ingredient?"_s,
            u"Confirm"_s,
            Icon::Question,
            {Button::Yes, Button::No},
            Button::No};
}

// The catalog on its stage, and its controls.
struct Catalog {
    explicit Catalog(const QString &rows)
        : stage(rows)
    {
    }

    void select(int row) { QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middle(row)); }
    QPoint middle(int row) const { return list.visualRect(list.model()->index(row, 0)).center(); }
    // What stands in the fields: "Salt|Seasoning|999|veg".
    QString shown() const
    {
        return name.text() + u'|' + types.currentText() + u'|' + shelfLife.text()
            + (vegetarian.isChecked() ? u"|veg"_s : u"|"_s);
    }
    QString stored() const { return stage.rowsOf("SELECT * FROM Ingredients ORDER BY 1"); }

    Stage stage;
    frmIngredient &window = stage.open<frmIngredient>();
    ListBox &list = control<ListBox>(window, u"lstIngredients"_s);
    QLineEdit &name = control<QLineEdit>(window, u"txtIngredient"_s);
    QComboBox &types = control<QComboBox>(window, u"cmbType"_s);
    QLineEdit &shelfLife = control<QLineEdit>(window, u"txtShelfLife"_s);
    QCheckBox &vegetarian = control<QCheckBox>(window, u"chkVegetarian"_s);
    QAbstractButton &save = control<QAbstractButton>(window, u"cmdSave"_s);
};

} // namespace

class tst_frmIngredient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        WriteRegistryValue(platform::HKEY_CURRENT_USER, sortingKey(), u"Ingredients"_s, u"0"_s, 1);
    }

    void showsInOrder()
    {
        Catalog catalog(pantry);
        QCOMPARE(catalog.list.texts(),
                 QStringList({u"Éclair"_s, u"Apple"_s, u"Salt"_s, u"beef"_s}));
        QCOMPARE(catalog.shown(), u"Éclair|Misc|1|veg"_s);
        QVERIFY(!catalog.save.isEnabled());

        press(catalog.window, u"cmdPrevious"_s);
        QCOMPARE(catalog.shown(), u"Éclair|Misc|1|veg"_s);
        QStringList seen;
        for (int i = 0; i < 4; ++i) {
            press(catalog.window, u"cmdNext"_s);
            QVERIFY(catalog.name.hasFocus());
            seen += catalog.shown();
        }
        QCOMPARE(seen,
                 QStringList({u"Apple|Fruit|30|veg"_s, u"Salt|Seasoning|999|veg"_s,
                              u"beef|Meat|2|"_s, u"beef|Meat|2|"_s}));
        press(catalog.window, u"cmdPrevious"_s);
        QCOMPARE(catalog.list.selectedText(), u"Salt"_s);

        CreateRegistryKey(platform::HKEY_CURRENT_USER, sortingKey());
        WriteRegistryValue(platform::HKEY_CURRENT_USER, sortingKey(), u"Ingredients"_s, u"1"_s, 1);
        press(catalog.window, u"cmdDone"_s);
        const auto &again = catalog.stage.open<frmIngredient>();
        QCOMPARE(control<ListBox>(again, u"lstIngredients"_s).texts(),
                 QStringList({u"Apple"_s, u"beef"_s, u"Éclair"_s, u"Salt"_s}));
    }

    // Refused without a word: what was typed stays, and can be saved.
    void saves_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shelfLife");
        QTest::addColumn<QString>("stored"); // of Salt; empty where it is refused

        QTest::newRow("another name") << u"Sea salt"_s << u"9"_s << u"Sea salt|3|9|1"_s;
        QTest::newRow("the same name") << u"Salt"_s << u"7"_s << u"Salt|3|7|1"_s;
        QTest::newRow("its name in another case") << u"SALT"_s << u"7"_s << u"SALT|3|7|1"_s;
        QTest::newRow("blanks stay") << u" Salt "_s << u"7"_s << u" Salt |3|7|1"_s;
        QTest::newRow("no shelf life") << u"Salt"_s << u""_s << u"Salt|3|0|1"_s;
        QTest::newRow("half a day") << u"Salt"_s << u"1.5"_s << u"Salt|3|1.5|1"_s;
        QTest::newRow("a name cut to 25")
            << u"12345678901234567890123456"_s << u"1"_s << u"1234567890123456789012345|3|1|1"_s;
        QTest::newRow("a shelf life cut to 3") << u"Salt"_s << u"1234"_s << u"Salt|3|123|1"_s;
        QTest::newRow("no name") << u""_s << u"7"_s << u""_s;
        QTest::newRow("blanks") << u"   "_s << u"7"_s << u""_s;
        QTest::newRow("apostrophe") << u"Cook's salt"_s << u"7"_s << u""_s;
        QTest::newRow("pattern") << u"S*"_s << u"7"_s << u""_s;
        QTest::newRow("parenthesis") << u"Salt (sea)"_s << u"7"_s << u""_s;
        QTest::newRow("a name that is taken") << u"APPLE"_s << u"7"_s << u""_s;
        QTest::newRow("taken beyond ASCII") << u"éCLAIR"_s << u"7"_s << u""_s;
        QTest::newRow("negative") << u"Salt"_s << u"-1"_s << u""_s;
        QTest::newRow("no number") << u"Salt"_s << u"1w"_s << u""_s;
    }

    void saves()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, shelfLife);
        QFETCH(const QString, stored);
        Catalog catalog(pantry);
        catalog.select(2);
        retype(catalog.name, name);
        retype(catalog.shelfLife, shelfLife);
        const QString typed = catalog.shown();
        QTest::keyClick(&catalog.shelfLife, Qt::Key_Return);

        const bool refused = stored.isEmpty();
        QCOMPARE(
            catalog.stage.rowsOf("SELECT IngredientName, IngredientType, ShelfLife, Vegetarian "
                                 "FROM Ingredients WHERE IngredientID = 1"),
            refused ? u"Salt|3|999|1"_s : stored);
        QCOMPARE(catalog.stage.rowsOf("SELECT count(*) FROM Ingredients"), u"4"_s);
        QCOMPARE(catalog.save.isEnabled(), refused);
        QVERIFY(catalog.list.hasFocus());
        if (refused)
            QCOMPARE(catalog.shown(), typed);
        else
            QCOMPARE(catalog.list.selectedText(), catalog.name.text());
    }

    void startsAnEmptyCatalog()
    {
        Catalog catalog({});
        QCOMPARE(catalog.shown(), u"|||"_s);
        QVERIFY(catalog.name.hasFocus());
        for (const QString &button : {u"cmdNext"_s, u"cmdPrevious"_s, u"cmdDelete"_s})
            press(catalog.window, button);
        QTest::keyClicks(&catalog.name, u"Salt"_s);
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Salt|-1|0|0"_s);
        QCOMPARE(catalog.list.selectedText(), u"Salt"_s);

        catalog.types.setCurrentIndex(3);
        press(catalog.window, u"cmdSave"_s);
        press(catalog.window, u"cmdNew"_s);
        QVERIFY(catalog.name.hasFocus());
        QCOMPARE(catalog.shown(), u"|Seasoning|0|"_s);
        QVERIFY(!catalog.save.isEnabled());
        QTest::keyClicks(&catalog.name, u"Basil"_s);
        catalog.vegetarian.click();
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Salt|3|0|0, 2|Basil|3|0|1"_s);
        QCOMPARE(catalog.list.selectedRow(), 0);
    }

    void asksBeforeItLeaves_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("name");
        QTest::addColumn<Button>("answer");
        QTest::addColumn<QString>("shown");
        for (const auto &[button, shown] : {std::pair(u"cmdNext"_s, u"Salt"_s),
                                            {u"cmdPrevious"_s, u"Éclair"_s},
                                            {u"cmdNew"_s, u""_s},
                                            {u"cmdDone"_s, u""_s}}) {
            QTest::addRow("%s, yes", qPrintable(button))
                << button << u"Apricot"_s << Button::Yes << shown;
            QTest::addRow("%s, no", qPrintable(button))
                << button << u"Apricot"_s << Button::No << shown;
            QTest::addRow("%s, refused", qPrintable(button))
                << button << u"salt"_s << Button::Yes << shown;
        }
    }

    void asksBeforeItLeaves()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, name);
        QFETCH(const Button, answer);
        QFETCH(const QString, shown);
        Catalog catalog(pantry);
        catalog.select(1);
        retype(catalog.name, name);
        catalog.stage.doorway.expect(saveChanges(), answer);
        press(catalog.window, button);
        const bool saved = answer == Button::Yes && name == u"Apricot"_s;
        QCOMPARE(
            catalog.stage.rowsOf("SELECT IngredientName FROM Ingredients WHERE IngredientID = 2"),
            saved ? name : u"Apple"_s);
        if (button == u"cmdDone"_s) {
            QVERIFY(!catalog.stage.frame.find<frmIngredient>());
            return;
        }
        QCOMPARE(catalog.name.text(), shown);
        QVERIFY(!catalog.save.isEnabled());
    }

    // A click on the selected row drops edits; a message box answered does not.
    void dropsEdits()
    {
        Catalog catalog(pantry);
        for (const int row : {0, 2}) {
            QTest::keyClicks(&catalog.name, u"x"_s);
            QVERIFY(catalog.save.isEnabled());
            catalog.select(row);
            QCOMPARE(catalog.name.text(), row == 0 ? u"Éclair"_s : u"Salt"_s);
            QVERIFY(!catalog.save.isEnabled());
        }
        QTest::keyClicks(&catalog.name, u"x"_s);
        catalog.stage.doorway.expect(confirmDelete(), Button::No);
        press(catalog.window, u"cmdDelete"_s);
        QCOMPARE(catalog.name.text(), u"xSalt"_s);
        QTest::keyClick(&catalog.list, Qt::Key_B);
        QCOMPARE(catalog.shown(), u"beef|Meat|2|"_s);
    }

    void deletes()
    {
        Catalog catalog(pantry);
        // After a refused save the cursor stands on another row than the one shown.
        catalog.select(1);
        retype(catalog.name, u"salt"_s);
        press(catalog.window, u"cmdSave"_s);
        const auto remove = [&catalog] {
            catalog.stage.doorway.expect(confirmDelete(), Button::Yes);
            press(catalog.window, u"cmdDelete"_s);
        };
        remove();
        QCOMPARE(catalog.list.texts(), QStringList({u"Éclair"_s, u"Salt"_s, u"beef"_s}));
        QCOMPARE(catalog.shown(), u"Salt|Seasoning|999|veg"_s);

        catalog.select(2);
        remove();
        QCOMPARE(catalog.shown(), u"Salt|Seasoning|999|veg"_s);

        press(catalog.window, u"cmdNew"_s);
        QTest::keyClicks(&catalog.name, u"given up"_s);
        press(catalog.window, u"cmdDelete"_s);
        QCOMPARE(catalog.name.text(), u"Éclair"_s);
        QCOMPARE(catalog.list.selectedText(), u"Salt"_s);
        press(catalog.window, u"cmdPrevious"_s);
        QCOMPARE(catalog.shown(), u"Éclair|Misc|1|veg"_s);

        remove();
        remove();
        QCOMPARE(catalog.stored(), u""_s);
        QCOMPARE(catalog.name.text(), u""_s);
        QTest::keyClicks(&catalog.name, u"Salt"_s);
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.list.texts(), QStringList(u"Salt"_s));
        // A recipe that names the key of one that is gone does not get this one for it.
        QCOMPARE(catalog.stage.rowsOf("SELECT IngredientID FROM Ingredients"), u"5"_s);
    }

    // What came in through an import or another program is shown whole, and what the user does not
    // touch stays as it is.
    void keepsWhatCameInOtherwise()
    {
        Catalog catalog(u"INSERT INTO Ingredients VALUES "
                        "(5, 'Old wine of the grand duke, in bottles', -7, -123456.5, NULL), "
                        "(6, 'Mama''s \"best\" (very old) sauce?', 99, 5, 1)"_s);
        QCOMPARE(catalog.shown(), u"Old wine of the grand duke, in bottles||-123456.5|"_s);
        QTest::keyClicks(&catalog.name, u"x"_s);
        QVERIFY(!catalog.save.isEnabled());
        catalog.vegetarian.click();
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.stage.rowsOf("SELECT * FROM Ingredients WHERE IngredientID = 5"),
                 u"5|Old wine of the grand duke, in bottles|-7|-123456.5|1"_s);

        press(catalog.window, u"cmdNext"_s);
        QCOMPARE(catalog.shown(), u"Mama's \"best\" (very old) sauce?||5|veg"_s);
        catalog.vegetarian.click();
        press(catalog.window, u"cmdSave"_s);
        QVERIFY(catalog.save.isEnabled());
        catalog.stage.doorway.expect(confirmDelete(), Button::Yes);
        press(catalog.window, u"cmdDelete"_s);
        QCOMPARE(catalog.stage.rowsOf("SELECT IngredientID FROM Ingredients"), u"5"_s);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("before"); // what another program does
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("isGone");
        const QString gone = u"DELETE FROM Ingredients WHERE IngredientID = 2"_s;
        QTest::newRow("save of a row that is gone") << gone << u"cmdSave"_s << true;
        QTest::newRow("delete of a row that is gone") << gone << u"cmdDelete"_s << true;
        const QString trigger = u"CREATE TRIGGER t BEFORE %1 ON Ingredients BEGIN "
                                "SELECT RAISE(ABORT, 'the pantry is locked'); END"_s;
        QTest::newRow("failing save") << trigger.arg(u"UPDATE"_s) << u"cmdSave"_s << false;
        QTest::newRow("failing delete") << trigger.arg(u"DELETE"_s) << u"cmdDelete"_s << false;
    }

    // Where the row is gone, the window comes back in step; else what was typed is kept.
    void failures()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, button);
        QFETCH(const bool, isGone);
        Catalog catalog(pantry);
        catalog.select(1);
        retype(catalog.name, u"Apricot"_s);
        catalog.stage.file.write(before);
        const QString stored = catalog.stored();
        if (button == u"cmdDelete"_s)
            catalog.stage.doorway.expect(confirmDelete(), Button::Yes);
        catalog.stage.expectFailure(u"Ingredients"_s,
                                    isGone ? deletedElsewhere.toString()
                                           : u"The recipe file %1 could not be used: the pantry is "
                                             "locked"_s.arg(DatabasePath));
        press(catalog.window, button);
        catalog.stage.doorway.checkAllCame();
        QCOMPARE(catalog.stored(), stored);
        QCOMPARE(catalog.name.text(), isGone ? u"Éclair"_s : u"Apricot"_s);
        QCOMPARE(catalog.save.isEnabled(), !isGone);
        QCOMPARE(catalog.list.count(), isGone ? 3 : 4);
    }
};

QTEST_MAIN(tst_frmIngredient)
#include "tst_frmingredient.moc"
