#include "Kitchen.h"
#include "ListBox.h"
#include "RegistryFunctions.h"
#include "SettingsKeys.h"
#include "frmIngredient.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto pantry = "INSERT INTO Ingredients VALUES (1, 'Salt', 3, 999, 1),"
                        "(2, 'Apple', 1, 30, 1), (3, 'beef', 4, 2, 0), (4, 'Éclair', 0, 1, 1)";

// The catalog and its controls.
struct Catalog {
    explicit Catalog(const QByteArray &rows)
        : kitchen(rows)
    {
    }

    void select(int row)
    {
        const QRect place = list.visualRect(list.model()->index(row, 0));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place.center());
    }
    void expectDelete(Button answer)
    {
        kitchen.doorway.expect({u"Are you sure you want to delete this ingredient?"_s,
                                u"Confirm"_s,
                                Icon::Question,
                                {Button::Yes, Button::No},
                                Button::No},
                               answer);
    }
    void remove(Button answer)
    {
        expectDelete(answer);
        press(window, u"cmdDelete"_s);
    }
    // What stands in the fields: "Salt|Seasoning|999|veg".
    QString shown() const
    {
        return name.text() + u'|' + types.currentText() + u'|' + shelfLife.text()
            + (vegetarian.isChecked() ? u"|veg"_s : u"|"_s);
    }
    QString stored() const { return kitchen.stored("SELECT * FROM Ingredients ORDER BY 1"); }

    Kitchen kitchen;
    frmIngredient &window = kitchen.open<frmIngredient>();
    ListBox &list = control<ListBox>(window, u"lstIngredients"_s);
    QLineEdit &name = control<QLineEdit>(window, u"txtIngredient"_s);
    QComboBox &types = control<QComboBox>(window, u"cmbType"_s);
    QLineEdit &shelfLife = control<QLineEdit>(window, u"txtShelfLife"_s);
    QCheckBox &vegetarian = control<QCheckBox>(window, u"chkVegetarian"_s);
    QPushButton &save = control<QPushButton>(window, u"cmdSave"_s);
};

} // namespace

class tst_frmIngredient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void order()
    {
        CreateRegistryKey(platform::HKEY_CURRENT_USER, sortingKey());
        for (const auto &[setting, walk] : {std::pair(u"1"_s, u"Apple beef Éclair Salt"_s),
                                            {u"0"_s, u"Éclair Apple Salt beef"_s}}) {
            WriteRegistryValue(platform::HKEY_CURRENT_USER, sortingKey(), u"Ingredients"_s, setting,
                               1);
            const Catalog catalog(pantry);
            QCOMPARE(catalog.list.texts().join(u' '), walk);
            press(catalog.window, u"cmdPrevious"_s);
            QStringList seen{catalog.name.text()};
            for (int i = 0; i < 3; ++i) {
                press(catalog.window, u"cmdNext"_s);
                seen += catalog.name.text();
            }
            press(catalog.window, u"cmdNext"_s);
            QCOMPARE(seen.join(u' '), walk);
            QCOMPARE(catalog.list.selectedText(), seen.last());
            QVERIFY(catalog.name.hasFocus());
        }
    }

    // Refused without a word: what was typed stays, and can be saved.
    void saves()
    {
        const std::tuple<QString, QString, QString> rows[] = {
            // name and shelf life as entered, and what is stored of Salt
            {u"SALT"_s, u"1.5"_s, u"SALT|3|1.5|1"_s},
            {u" Salt "_s, u""_s, u" Salt |3|0|1"_s},
            {u"12345678901234567890123456"_s, u"1234"_s, u"1234567890123456789012345|3|123|1"_s},
            {u"   "_s, u"7"_s, u"refused"_s},
            {u"Cook's salt"_s, u"7"_s, u"refused"_s},
            {u"Salt (sea)"_s, u"7"_s, u"refused"_s},
            {u"éCLAIR"_s, u"7"_s, u"refused"_s},
            {u"Salt"_s, u"-1"_s, u"refused"_s},
            {u"Salt"_s, u"1w"_s, u"refused"_s},
        };
        for (const auto &[name, shelfLife, expected] : rows) {
            Catalog catalog(pantry);
            catalog.select(2);
            retype(catalog.name, name);
            retype(catalog.shelfLife, shelfLife);
            const QString typed = catalog.shown();
            QTest::keyClick(&catalog.shelfLife, Qt::Key_Return);
            const bool refused = expected == "refused"_L1;
            const QString stored = refused ? u"Salt|3|999|1"_s : expected;
            QVERIFY2(catalog.stored().startsWith(u"1|"_s + stored + u", 2|Apple"_s),
                     qPrintable(name + catalog.stored()));
            QCOMPARE(catalog.save.isEnabled(), refused);
            QVERIFY(catalog.list.hasFocus());
            QCOMPARE(refused ? catalog.shown() : catalog.list.selectedText(),
                     refused ? typed : catalog.name.text());
        }
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
        press(catalog.window, u"cmdNew"_s);
        QVERIFY(catalog.name.hasFocus());
        QVERIFY(!catalog.save.isEnabled());
        QTest::keyClicks(&catalog.name, u"Basil"_s);
        catalog.types.setCurrentIndex(3);
        catalog.vegetarian.click();
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Salt|-1|0|0, 2|Basil|3|0|1"_s);
        QCOMPARE(catalog.list.selectedText(), u"Basil"_s);
    }

    void asksBeforeItLeaves()
    {
        for (const auto &[button, next] : {std::pair(u"cmdNext"_s, u"Salt"_s),
                                           {u"cmdPrevious"_s, u"Éclair"_s},
                                           {u"cmdNew"_s, u""_s},
                                           {u"cmdDone"_s, u""_s}}) {
            for (const auto &[name, answer, stored] :
                 {std::tuple(u"Apricot"_s, Button::Yes, u"Apricot"_s),
                  {u"Apricot"_s, Button::No, u"Apple"_s},
                  {u"salt"_s, Button::Yes, u"Apple"_s}}) {
                Catalog catalog(pantry);
                catalog.select(1);
                retype(catalog.name, name);
                catalog.kitchen.doorway.expect(Kitchen::saveChanges("ingredient"), answer);
                press(catalog.window, button);
                QVERIFY(catalog.stored().contains(u", 2|"_s + stored));
                QCOMPARE(!catalog.kitchen.frame.find<frmIngredient>(), button == "cmdDone"_L1);
                QVERIFY(button == "cmdDone"_L1 || catalog.name.text() == next);
            }
        }
    }

    // A click on the selected row drops edits; a message box answered does not.
    void dropsEdits()
    {
        Catalog catalog(pantry);
        QTest::keyClicks(&catalog.name, u"x"_s);
        QVERIFY(catalog.save.isEnabled());
        catalog.select(0);
        QCOMPARE(catalog.name.text(), u"Éclair"_s);
        QVERIFY(!catalog.save.isEnabled());
        QTest::keyClicks(&catalog.name, u"x"_s);
        catalog.remove(Button::No);
        QCOMPARE(catalog.name.text(), u"xÉclair"_s);
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
        catalog.remove(Button::Yes);
        QCOMPARE(catalog.list.texts(), QStringList({u"Éclair"_s, u"Salt"_s, u"beef"_s}));
        QCOMPARE(catalog.shown(), u"Salt|Seasoning|999|veg"_s);
        catalog.select(2);
        catalog.remove(Button::Yes);
        QCOMPARE(catalog.shown(), u"Salt|Seasoning|999|veg"_s);

        press(catalog.window, u"cmdNew"_s);
        QTest::keyClicks(&catalog.name, u"given up"_s);
        press(catalog.window, u"cmdDelete"_s);
        press(catalog.window, u"cmdPrevious"_s);
        QCOMPARE(catalog.shown(), u"Éclair|Misc|1|veg"_s);
        catalog.remove(Button::Yes);
        catalog.remove(Button::Yes);
        QCOMPARE(catalog.stored() + catalog.name.text(), u""_s);
        QTest::keyClicks(&catalog.name, u"Salt"_s);
        press(catalog.window, u"cmdSave"_s);
        // A recipe that names the key of one that is gone does not get this one for it.
        QCOMPARE(catalog.kitchen.stored("SELECT IngredientID FROM Ingredients"), u"5"_s);
    }

    // What came in through an import or another program is shown whole, and what the user does not
    // touch stays as it is.
    void keepsWhatCameInOtherwise()
    {
        Catalog catalog("INSERT INTO Ingredients VALUES "
                        "(5, 'Old wine of the grand duke, in bottles', -7, -123456.5, NULL), "
                        "(6, 'Mama''s \"best\" (very old) sauce?', 99, 5, 1)");
        QCOMPARE(catalog.shown(), u"Old wine of the grand duke, in bottles||-123456.5|"_s);
        catalog.vegetarian.click();
        press(catalog.window, u"cmdSave"_s);
        QVERIFY(catalog.stored().startsWith(
            u"5|Old wine of the grand duke, in bottles|-7|-123456.5|1, 6|"_s));
        press(catalog.window, u"cmdNext"_s);
        QCOMPARE(catalog.shown(), u"Mama's \"best\" (very old) sauce?||5|veg"_s);
        catalog.remove(Button::Yes);
        QCOMPARE(catalog.list.count(), 1);
    }

    // Where the row is gone, the window comes back in step; else what was typed is kept.
    void failures()
    {
        const QByteArray gone = "DELETE FROM Ingredients WHERE IngredientID = 2";
        const QByteArray locked = "CREATE TRIGGER t BEFORE UPDATE ON Ingredients BEGIN "
                                  "SELECT RAISE(ABORT, 'the pantry is locked'); END";
        for (const auto &[cause, isDelete] :
             {std::pair(gone, false), {gone, true}, {locked, false}}) {
            Catalog catalog(pantry);
            catalog.select(1);
            retype(catalog.name, u"Apricot"_s);
            catalog.kitchen.sql(cause);
            const QString stored = catalog.stored();
            const MessageBox box = Kitchen::failure(
                u"Ingredients"_s,
                cause == gone
                    ? u"This entry has been deleted by another program. Nothing was stored."_s
                    : u"The recipe file %1 could not be used: the pantry is locked"_s.arg(
                        catalog.kitchen.file.path()));
            if (isDelete)
                catalog.expectDelete(Button::Yes);
            catalog.kitchen.doorway.expect(box);
            press(catalog.window, isDelete ? u"cmdDelete"_s : u"cmdSave"_s);
            QCOMPARE(catalog.stored(), stored);
            QCOMPARE(catalog.name.text(), cause == gone ? u"Éclair"_s : u"Apricot"_s);
            QCOMPARE(catalog.save.isEnabled(), cause != gone);
        }
    }
};

QTEST_MAIN(tst_frmIngredient)
#include "tst_frmingredient.moc"
