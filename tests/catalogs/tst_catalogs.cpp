#include "catalogs/CatalogFixture.h"
#include "support/FormText.h"
#include "support/Rows.h"
#include "support/TemporaryHome.h"

#include <QLabel>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

// Whether the box has a red frame.
bool hasFrame(QLineEdit &edit)
{
    const QColor color = edit.grab().toImage().pixelColor(0, edit.height() / 2);
    return color.red() > 2 * color.blue();
}

} // namespace

class tst_Catalogs : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

private Q_SLOTS:
    void opens_data()
    {
        const QString types = u"Misc, Fruit, Vegetable, Seasoning, Meat, Poultry, Fish, Dairy, "
                              "Canned good, Grain, Staple, Legume\n"_s;
        const QString move = u"cmdPrevious: P&revious\ncmdNext: N&ext\ncmdNew: &New\n"_s;
        const QString leave = u"cmdSave: &Save, disabled\ncmdDone: D&one"_s;
        const QString labels = u"Ingredient, Type, Shelf Life, days\n"_s;
        addRows<QByteArray, bool, QString>({
            {"ingredients", pantry, false,
             u"Ingredients, "_s + labels
                 + u"> lstIngredients: *Éclair, Apple, Salt, beef\n"
                   "txtIngredient: Éclair\ncmbType: *"_s
                 + types + u"txtShelfLife: 1\nchkVegetarian: Ve&getarian, checked\n"_s + move
                 + u"cmdDelete: &Delete\n"_s + leave},
            {"no ingredients", "", false,
             u"Ingredients, New ingredient, not saved yet, "_s + labels
                 + u"lstIngredients: \n> txtIngredient: \ncmbType: "_s + types
                 + u"txtShelfLife: \nchkVegetarian: Ve&getarian\n"_s + move
                 + u"cmdDelete: &Delete\n"_s + leave},
            {"utensils", pantry, true,
             u"Utensils, Utensil\n> lstUtensils: *pan, Whisk\ntxtUtensilName: pan\n"_s + move
                 + leave},
            {"no utensils", "", true,
             u"Utensils, New utensil, not saved yet, Utensil\nlstUtensils: \n> txtUtensilName: \n"_s
                 + move + leave},
        });
    }
    void opens()
    {
        const auto [rows, ofUtensils, form] = fetchRow<QByteArray, bool, QString>();
        QCOMPARE(formText(CatalogFixture(rows, ofUtensils).window), form);
    }

    void order()
    {
        CatalogFixture catalog;
        for (const QString &seen : {u"Éclair"_s, u"Apple"_s, u"Salt"_s, u"beef"_s, u"beef"_s}) {
            QCOMPARE(catalog.name.text(), seen);
            QCOMPARE(catalog.list.selectedText(), seen);
            catalog.perform(u"cmdNext"_s);
            QVERIFY(catalog.name.hasFocus());
        }
    }

    void saves_data()
    {
        const QString long26 = u"12345678901234567890123456"_s;
        addRows<bool, QString, QString>({
            {"case changed", false, u"lstIngredients 2, txtIngredient =SALT, txtShelfLife =1.5"_s,
             u"1|SALT|3|1.5|1, "_s},
            {"spaces, no shelf life", false,
             u"lstIngredients 2, txtIngredient = Salt , txtShelfLife ="_s, u"1| Salt |3|0|1, "_s},
            {"typed beyond the limits", false,
             u"lstIngredients 2, txtShelfLife =1234, txtIngredient ="_s + long26,
             u"1|"_s + long26.first(25) + u"|3|123|1, "_s},
            {"utensil, spaces", true, u"txtUtensilName =  Ladle "_s, u"2|Ladle"_s},
            {"utensil typed beyond the limit", true, u"txtUtensilName ="_s + long26,
             u"2|"_s + long26.first(25)},
        });
    }
    void saves()
    {
        const auto [ofUtensils, steps, stored] = fetchRow<bool, QString, QString>();
        CatalogFixture catalog(pantry, ofUtensils);
        catalog.perform(steps);
        catalog.name.setFocus();
        QTest::keyClick(&catalog.name, Qt::Key_Return);
        QVERIFY2(catalog.stored().contains(stored), qPrintable(catalog.stored()));
        QVERIFY(!catalog.save.isEnabled() && catalog.list.hasFocus());
        QCOMPARE(catalog.list.selectedText(), catalog.name.text());
    }

    void refuses_data()
    {
        const QString noName = u"Not saved: type a name first."_s;
        const QString invalid =
            u"Not saved: a name cannot contain any of \\ / : * ? \" ' < > | ( )"_s;
        const QString taken = u"Not saved: another ingredient has this name."_s;
        const QString noNumber = u"Not saved: the shelf life must be a number, 0 or more."_s;
        const QString takenUtensil = u"Not saved: a utensil has this name. To change only its "
                                     "capital letters, save it under a different name first."_s;
        addRows<bool, QString, QString>({
            {"spaces only", false, u"txtIngredient =  "_s, noName},
            {"invalid character", false, u"txtIngredient x("_s, invalid},
            {"name taken", false, u"txtIngredient =Salt"_s, taken},
            {"name taken, in capitals", false, u"txtIngredient =éCLAIR"_s, taken},
            {"shelf life", false, u"txtShelfLife =x"_s, noNumber},
            {"negative shelf life", false, u"txtShelfLife =-1"_s, noNumber},
            {"utensil without a name", true, u"txtUtensilName ="_s, noName},
            {"utensil of spaces only", true, u"txtUtensilName =  "_s, noName},
            {"utensil, invalid character", true, u"txtUtensilName =Cook's whisk"_s, invalid},
            {"utensil, name taken", true, u"txtUtensilName = pAN "_s, takenUtensil},
            {"utensil in capitals", true, u"txtUtensilName =WHISK"_s, takenUtensil},
            {"the same utensil", true, u"txtUtensilName x, txtUtensilName =Whisk"_s, u""_s},
        });
    }
    // The fields stay as they are and, of an ingredient, can still be saved. The mark disappears
    // with the next change, and when another row is shown, even one that has what is refused.
    void refuses()
    {
        const auto [ofUtensils, steps, reason] = fetchRow<bool, QString, QString>();
        CatalogFixture catalog(
            pantry + "UPDATE Ingredients SET ShelfLife = 'x' WHERE IngredientID = 1"_ba,
            ofUtensils);
        const QString box = steps.section(u' ', 0, 0);
        auto &edit = control<QLineEdit>(catalog.window, box);
        const auto mark = [&edit] {
            return hasFrame(edit) && edit.accessibleDescription() == edit.toolTip() ? edit.toolTip()
                                                                                    : QString();
        };
        catalog.perform(ofUtensils ? u"lstUtensils 1"_s : u"lstIngredients 1"_s);
        const QString before = catalog.stored();
        catalog.perform(steps);
        const QString typed = catalog.shown();
        catalog.perform(u"cmdSave"_s);
        QCOMPARE(mark(), reason);
        QCOMPARE(catalog.shown(), typed);
        QCOMPARE(catalog.save.isEnabled(), !ofUtensils);
        catalog.perform(box + u" 1"_s);
        QCOMPARE(mark() + edit.toolTip(), QString());
        catalog.perform(
            steps
            + (ofUtensils ? u", cmdSave, lstUtensils 0"_s : u", cmdSave, lstIngredients 2"_s));
        QCOMPARE(mark() + edit.toolTip(), QString());
        QCOMPARE(catalog.stored(), before);
    }

    void noticesChanges_data()
    {
        addRows<bool, QString>({
            {"name", false, u"txtIngredient x"_s},
            {"shelf life", false, u"txtShelfLife 2"_s},
            {"flag", false, u"chkVegetarian"_s},
            {"type", false, u"cmbType 2"_s},
            {"same type again", false, u"select the same"_s},
            {"type without the list of types", false, u"select the next"_s},
            {"utensil", true, u"txtUtensilName x"_s},
        });
    }
    // Each change enables Save and makes Next ask.
    void noticesChanges()
    {
        const auto [ofUtensils, steps] = fetchRow<bool, QString>();
        CatalogFixture catalog(pantry, ofUtensils);
        if (steps.startsWith("select"_L1)) {
            auto &types = control<QComboBox>(catalog.window, u"cmbType"_s);
            if (steps == "select the same"_L1)
                Q_EMIT types.activated(types.currentIndex());
            else
                types.setCurrentIndex(types.currentIndex() + 1);
        } else {
            catalog.perform(steps);
        }
        QVERIFY(catalog.save.isEnabled());
        catalog.perform(u"cmdNext?No"_s);
    }

    // Esc presses Done in the ingredients alone.
    void escape()
    {
        for (const bool ofUtensils : {false, true}) {
            const CatalogFixture catalog(pantry, ofUtensils);
            QTest::keyClick(&catalog.name, Qt::Key_Escape);
            QCOMPARE(catalog.isOpen(), ofUtensils);
        }
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
        CatalogFixture catalog;
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
        CatalogFixture catalog(QByteArray{});
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
        addRows<QString, QString>({{"Next", u"cmdNext"_s, u"Salt"_s},
                                   {"Previous", u"cmdPrevious"_s, u"Éclair"_s},
                                   {"New", u"cmdNew"_s, u""_s},
                                   {"Done", u"cmdDone"_s, u"closed"_s}});
    }
    // The answer No drops what is typed, and Yes a name that is taken.
    void asksBeforeItLeaves()
    {
        const auto [button, next] = fetchRow<QString, QString>();
        for (const auto &[typed, answer, stored] :
             {std::tuple(u"Apricot"_s, u"Yes"_s, u"2|Apricot"_s),
              {u"Apricot"_s, u"No"_s, u"2|Apple"_s},
              {u"salt"_s, u"Yes"_s, u"2|Apple"_s}}) {
            CatalogFixture catalog;
            catalog.perform(
                u"lstIngredients 1, txtIngredient =%1, %2?%3"_s.arg(typed, button, answer));
            QCOMPARE(catalog.stored().section(u", "_s, 1, 1).section(u'|', 0, 1), stored);
            QCOMPARE(catalog.isOpen() ? catalog.name.text() : u"closed"_s, next);
        }
    }

    // A click on the selected row drops edits; No to the deletion keeps them.
    void dropsEdits()
    {
        CatalogFixture catalog;
        catalog.perform(u"txtIngredient x, lstIngredients 0"_s);
        QCOMPARE(catalog.name.text(), u"Éclair"_s);
        QVERIFY(!catalog.save.isEnabled());
        catalog.perform(u"txtIngredient x, cmdDelete?No"_s);
        QCOMPARE(catalog.name.text(), u"Éclairx"_s);
    }

    void deletes()
    {
        CatalogFixture catalog;
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

    // One click on another row shows it once. A row without a name is shown, not the first such.
    void clicks()
    {
        CatalogFixture catalog(pantry
                               + "INSERT INTO Ingredients VALUES (5, NULL, 8, 5, 0),"
                                 "(6, NULL, 8, 6, 0)"_ba);
        const QSignalSpy selections(&catalog.list, &ListBox::rowSelected);
        catalog.perform(u"lstIngredients 1"_s);
        QCOMPARE(selections.size(), 1);
        catalog.perform(u"lstIngredients 1"_s);
        QCOMPARE(selections.size(), 2);
        catalog.perform(u"lstIngredients 5"_s);
        QCOMPARE(catalog.shown(), u"Ingredients||Canned good|6|no"_s);
    }

    // The same rows are listed again, of which the first one was selected before.
    void readingAgain()
    {
        CatalogFixture catalog;
        const QString first = catalog.shown();
        catalog.perform(u"cmdNew"_s);
        QVERIFY(catalog.shown() != first);
        catalog.frame.show(catalog.window); // as its key in the menu does
        QCOMPARE(catalog.shown(), first);
    }

    void leavesUtensils()
    {
        CatalogFixture catalog(pantry, true);
        // A refused save leaves the cursor on the row that has the name.
        catalog.perform(u"txtUtensilName =whisk, cmdSave, txtUtensilName =Cleaver, cmdNext?Yes, "
                        "txtUtensilName s"_s);
        QCOMPARE(catalog.shown(), u"Utensils|Whisks"_s);
        catalog.perform(u"cmdDone"_s); // asks nothing
        QVERIFY(!catalog.isOpen());
        QCOMPARE(catalog.stored(), u"1|Whisk, 2|Cleaver"_s);
    }
};

QTEST_MAIN(tst_Catalogs)
#include "tst_catalogs.moc"
