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

} // namespace

class tst_Catalogs : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

private Q_SLOTS:
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
        QTest::keyClick(&catalog.name, Qt::Key_Return);
        const bool refused = expected == "refused"_L1;
        const QString salt = refused ? u"Salt|3|999|1"_s : expected;
        QCOMPARE(catalog.stored().section(u", "_s, 0, 0), u"1|"_s + salt);
        QCOMPARE(catalog.save.isEnabled(), refused);
        QVERIFY(catalog.list.hasFocus());
        QCOMPARE(refused ? catalog.shown() : catalog.list.selectedText(),
                 refused ? typed : catalog.name.text());
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
