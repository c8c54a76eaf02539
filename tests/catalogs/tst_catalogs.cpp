#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "support/TemporaryHome.h"
#include "support/WindowFixture.h"
#include "widgets/ListBox.h"

#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto pantry = "INSERT INTO Ingredients VALUES (1, 'Salt', 3, 999, 1),"
                        "(2, 'Apple', 1, 30, 1), (3, 'beef', 4, 2, 0), (4, 'Éclair', 0, 1, 1)";

// A kitchen with the catalog and its controls.
struct Catalog : WindowFixture {
    explicit Catalog(const QByteArray &rows)
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

} // namespace

class tst_Catalogs : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

private Q_SLOTS:
    void order()
    {
        Catalog catalog(pantry);
        for (const QString &seen : {u"Éclair"_s, u"Apple"_s, u"Salt"_s, u"beef"_s, u"beef"_s}) {
            QCOMPARE(catalog.name.text(), seen);
            QCOMPARE(catalog.list.selectedText(), seen);
            catalog.perform(u"cmdNext"_s);
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
            {u"Salt (sea)"_s, u"7"_s, u"refused"_s},
            {u"éCLAIR"_s, u"7"_s, u"refused"_s},
            {u"Salt"_s, u"-1"_s, u"refused"_s},
        };
        for (const auto &[name, shelfLife, expected] : rows) {
            Catalog catalog(pantry);
            catalog.perform(
                u"lstIngredients 2, txtIngredient =%1, txtShelfLife =%2"_s.arg(name, shelfLife));
            const QString typed = catalog.shown();
            QTest::keyClick(&catalog.name, Qt::Key_Return);
            const bool refused = expected == "refused"_L1;
            QVERIFY(catalog.stored().startsWith(u"1|"_s + (refused ? u"Salt|3|999|1"_s : expected)
                                                + u", 2|Apple"_s));
            QCOMPARE(catalog.save.isEnabled(), refused);
            QVERIFY(catalog.list.hasFocus());
            QCOMPARE(refused ? catalog.shown() : catalog.list.selectedText(),
                     refused ? typed : catalog.name.text());
        }
    }

    void startsAnEmptyCatalog()
    {
        Catalog catalog({});
        catalog.perform(u"cmdNext, cmdPrevious, cmdDelete"_s);
        QCOMPARE(catalog.shown(), u"Ingredients||||no"_s);
        catalog.perform(u"txtIngredient Salt, cmdSave, cmdNew"_s);
        QVERIFY(catalog.name.hasFocus() && !catalog.save.isEnabled());
        catalog.perform(u"txtIngredient Basil, cmbType 3, chkVegetarian, cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Salt|-1|0|0, 2|Basil|3|0|1"_s);
        QCOMPARE(catalog.list.selectedText(), u"Basil"_s);
    }

    void asksBeforeItLeaves()
    {
        for (const auto &[button, next] : {std::pair(u"cmdNext"_s, u"Salt"_s),
                                           {u"cmdPrevious"_s, u"Éclair"_s},
                                           {u"cmdNew"_s, u""_s},
                                           {u"cmdDone"_s, u"gone"_s}}) {
            for (const auto &[typed, stored] : {std::pair(u"Apricot, %1?Yes"_s, u"Apricot"_s),
                                                {u"Apricot, %1?No"_s, u"Apple"_s},
                                                {u"salt, %1?Yes"_s, u"Apple"_s}}) {
                Catalog catalog(pantry);
                catalog.perform(u"lstIngredients 1, txtIngredient ="_s + typed.arg(button));
                QVERIFY(catalog.stored().contains(u", 2|"_s + stored));
                const bool isOpen = catalog.frame.find<frmIngredient>();
                QCOMPARE(isOpen ? catalog.name.text() : u"gone"_s, next);
            }
        }
    }

    // A click on the selected row drops edits; a message box answered does not.
    void dropsEdits()
    {
        Catalog catalog(pantry);
        catalog.perform(u"txtIngredient x, lstIngredients 0"_s);
        QCOMPARE(catalog.name.text(), u"Éclair"_s);
        QVERIFY(!catalog.save.isEnabled());
        catalog.perform(u"txtIngredient x, cmdDelete?No"_s);
        QCOMPARE(catalog.name.text(), u"Éclairx"_s);
    }

    void deletes()
    {
        Catalog catalog(pantry);
        // After a refused save the cursor stands on another row than the one shown.
        catalog.perform(u"lstIngredients 1, txtIngredient =salt, cmdSave, cmdDelete?Yes"_s);
        QCOMPARE(catalog.list.texts(), QStringList({u"Éclair"_s, u"Salt"_s, u"beef"_s}));
        catalog.perform(u"lstIngredients 2, cmdDelete?Yes"_s);
        QCOMPARE(catalog.shown(), u"Ingredients|Salt|Seasoning|999|yes"_s);
        catalog.perform(u"cmdNew, txtIngredient given up, cmdDelete, cmdPrevious"_s);
        QCOMPARE(catalog.shown(), u"Ingredients|Éclair|Misc|1|yes"_s);
        catalog.perform(u"cmdDelete?Yes, cmdDelete?Yes, txtIngredient Salt, cmdSave"_s);
        // A recipe that names the key of one that is gone does not get this one for it.
        QVERIFY(catalog.stored().startsWith(u"5|Salt|"_s));
    }

    // What came in through an import or another program is shown whole, and what the user does not
    // touch stays as it is.
    void keepsWhatCameInOtherwise()
    {
        Catalog catalog("INSERT INTO Ingredients VALUES "
                        "(5, 'Mama''s \"best\" (very old) sauce?', -7, 'a while', NULL)");
        QCOMPARE(catalog.shown(), u"Ingredients|Mama's \"best\" (very old) sauce?||a while|no"_s);
        catalog.perform(u"txtIngredient =Old wine, chkVegetarian, cmdSave"_s);
        QCOMPARE(catalog.stored(), u"5|Old wine|-7|a while|1"_s);
    }

    // Where the row is gone, the window comes back in step; else what was typed is kept.
    void failures()
    {
        const QByteArray gone = "DELETE FROM Ingredients WHERE IngredientID = 2";
        const QByteArray locked = "CREATE TRIGGER t BEFORE UPDATE ON Ingredients BEGIN "
                                  "SELECT RAISE(ABORT, 'the pantry is locked'); END";
        for (const auto &[cause, act] :
             {std::pair(gone, u"cmdSave"_s), {gone, u"cmdDelete"_s}, {locked, u"cmdSave"_s}}) {
            Catalog catalog(pantry);
            catalog.perform(u"lstIngredients 1, txtIngredient =Apricot"_s);
            catalog.sql(cause);
            const QString stored = catalog.stored();
            if (act == "cmdDelete"_L1)
                catalog.expectQuestion(catalog.window, act, u"Yes"_s);
            catalog.interaction.expect(WindowFixture::failure(
                u"Ingredients"_s,
                cause == gone
                    ? u"This entry has been deleted by another program. Nothing was stored."_s
                    : u"The recipe file %1 could not be used: the pantry is locked"_s.arg(
                        catalog.file.path())));
            catalog.perform(act);
            QCOMPARE(catalog.stored(), stored);
            QCOMPARE(catalog.name.text(), cause == gone ? u"Éclair"_s : u"Apricot"_s);
            QCOMPARE(catalog.save.isEnabled(), cause != gone);
        }
    }

    // Whether it is stored or refused, nothing is left to save.
    void savesUtensils()
    {
        const QString long26 = u"12345678901234567890123456"_s;
        const std::pair<QString, QString> rows[] = {
            // as typed, and what the pan is called then
            {u"  Ladle "_s, u"Ladle"_s},   {long26, long26.first(25)}, {u"  "_s, u"pan"_s},
            {u"Cook's ladle"_s, u"pan"_s}, {u" wHISK "_s, u"pan"_s},   {u"PAN"_s, u"pan"_s},
        };
        for (const auto &[typed, renamed] : rows) {
            WindowFixture kitchen("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')");
            const auto &window = kitchen.open<frmUtensil>();
            kitchen.perform(window, u"txtUtensilName ="_s + typed + u", cmdSave"_s);
            QCOMPARE(kitchen.stored("SELECT * FROM Utensils"), u"1|Whisk, 2|"_s + renamed);
            QVERIFY(!control<QPushButton>(window, u"cmdSave"_s).isEnabled());
        }
    }

    void leavesUtensils()
    {
        WindowFixture kitchen("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')");
        const auto &window = kitchen.open<frmUtensil>();
        // After a refused save the cursor stands on the row that holds the name.
        kitchen.perform(window,
                        u"txtUtensilName =whisk, cmdSave, txtUtensilName =Cleaver, "
                        "cmdNext?Yes, txtUtensilName s"_s);
        QCOMPARE(WindowFixture::shown(window), u"Utensils|Whisks"_s);
        kitchen.perform(window, u"cmdDone"_s); // at once
        QVERIFY(!kitchen.frame.find<frmUtensil>());
        QCOMPARE(kitchen.stored("SELECT * FROM Utensils"), u"1|Whisk, 2|Cleaver"_s);
    }
};

QTEST_MAIN(tst_Catalogs)
#include "tst_catalogs.moc"
