#include "composition/ComposingFixture.h"
#include "composition/frmChangeUtensils.h"
#include "support/Rows.h"
#include "support/ShownRows.h"
#include "widgets/FindBar.h"
#include "widgets/ListBox.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>

using namespace Qt::Literals::StringLiterals;

class tst_FindAndAdd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data()
    {
        const QString first = u"Cook's spice (as much as a large spoon holds)"_s;
        const auto whole = [](const QString &rest) {
            return u"Beans (white), Cook's spice, *Salt, Beans |  | "_s + rest;
        };
        addRows<bool, QString, QString>({
            {"typing", false, u"txtFind =s"_s,
             u"Beans (white), Cook's spice, *Salt, Beans | 4 of 4 | "_s + first},
            {"typing a whole name", false, u"txtFind =beans"_s,
             u"Beans (white), *Beans | 2 of 4 | "_s + first},
            {"typing on", false, u"txtFind =a, key Down, txtFind n"_s,
             u"*Beans (white), Beans | 2 of 4 | "_s + first},
            {"typing what filters the row out", false, u"txtFind =k"_s,
             u"*Cook's spice | 1 of 4 | "_s + first},
            {"Enter", false, u"txtFind =sal, key Return"_s, u"*Salt | 1 of 4 | Salt (1 tsp)"_s},
            {"Down, Enter", false,
             u"txtFind =bea -wh, key Return, txtFind =a, key Down, key Return"_s,
             u"Beans (white), *Salt, Beans | 3 of 4 | Salt (1 tsp)"_s},
            {"Add", false, u"txtFind =lt, cmbAmount 0, cmdAdd"_s, u"*Salt | 1 of 4 | Salt (tsp)"_s},
            {"double click", false, u"txtFind =lt, lstIngredients 0 twice"_s,
             u"*Salt | 1 of 4 | Salt (1 tsp)"_s},
            {"nothing, Enter", false, u"txtFind =x, key Down, key Return"_s,
             u"Nothing found.\nTo see all names again, press Esc. | None of 4 | "_s + first},
            {"Remove", false, u"txtFind =lt, cmdRemove"_s, u"*Salt | 1 of 4 | "_s + first},
            {"Delete twice", false, u"txtFind =lt, lstRecipeIngredients 1, key Del, key Del"_s,
             u"*Salt | 1 of 4 | Beans (white) (1 (large) can)"_s},
            {"Esc", false, u"txtFind =lt, key Esc"_s, whole(first)},
            {"Esc in the list", false, u"txtFind =lt, lstIngredients 0, key Esc"_s, whole(first)},
            {"Esc in the amount", false, u"txtFind =lt, key Tab, key Tab, key Esc"_s, whole(first)},
            {"Esc in the lines", false, u"txtFind =lt, lstRecipeIngredients 0, key Esc"_s,
             whole(first)},
            {"Esc in nothing", false, u"txtFind =lt, txtFind =x, key Esc"_s, whole(first)},
            {"Esc twice", false, u"txtFind =lt, key Esc, key Esc"_s, u"closed"_s},
            {"utensils, typing", true, u"txtFind =e"_s, u"*Knife, Large pot | 2 of 3 | Whisk"_s},
            {"utensils, Enter", true, u"txtFind =e, key Down, key Return"_s,
             u"Knife, *Large pot | 2 of 3 | Large pot"_s},
            {"utensils, double click", true, u"txtFind =e, lstUtensils 1 twice"_s,
             u"Knife, *Large pot | 2 of 3 | Large pot"_s},
            {"utensils, Esc", true, u"txtFind =kn, key Esc"_s,
             u"*Knife, Large pot, Whisk |  | Whisk"_s},
        });
    }
    // Expected are the rows of the catalog, the count in the find bar, and the last line. Beans are
    // the last ingredient, since their type is.
    void finds()
    {
        const auto [ofUtensils, steps, expected] = fetchRow<bool, QString, QString>();
        WindowFixture fixture(dishes
                              + "UPDATE Ingredients SET IngredientType = 1 WHERE IngredientID = 3");
        const QPointer<ChildWindow> editor = openEditor(fixture, ofUtensils);
        fixture.perform(*editor, u"key Ctrl+F, "_s + steps);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(seen(editor), expected);
    }

    // The next name can be typed at once, also if the ingredient cannot be added.
    void typesOn_data()
    {
        addRows<QString>({{"Enter", u"key Return"_s},
                          {"button", u"cmdAdd"_s},
                          {"double click", u"lstIngredients 0 twice"_s}});
    }
    void typesOn()
    {
        const auto [step] = fetchRow<QString>();
        WindowFixture fixture(dishes);
        const ChildWindow &editor = *openEditor(fixture, false);
        fixture.perform(editor, u"key Ctrl+F, txtFind =lt"_s);
        for (const bool isNew : {true, false}) {
            if (!isNew)
                fixture.interaction.expect(WindowFixture::warning(
                    u"Ingredient is already in the ingredient box"_s, u"Can't add"_s));
            fixture.perform(editor, step);
            const auto &field = control<QLineEdit>(editor, u"txtFind"_s);
            QVERIFY(field.hasFocus());
            QCOMPARE(field.selectedText(), u"lt"_s);
        }
    }

    // A click on a window that cannot be activated reads the catalog again.
    void keepsTheChosenRow()
    {
        WindowFixture fixture(dishes);
        const ChildWindow &editor = *openEditor(fixture, false);
        fixture.perform(editor, u"key Ctrl+F, txtFind =a, key Down"_s);
        fixture.open<frmRecipe>();
        QVERIFY(seen(&editor).startsWith(u"Beans, *Beans (white), Salt | 3 of 4"_s));
        fixture.sql("DELETE FROM Ingredients WHERE IngredientName = 'Beans (white)'");
        fixture.open<frmRecipe>();
        QVERIFY(seen(&editor).startsWith(u"*Beans, Salt | 2 of 3"_s));
    }

    // What the find bar filters out is not selected.
    void addsNothing()
    {
        WindowFixture fixture(dishes);
        const ChildWindow &editor = *openEditor(fixture, false);
        fixture.interaction.expect(WindowFixture::warning(
            u"No item was selected in the ingredients box.  Try selecting the item you want to add "
            "and then hit add again"_s,
            u"No item selected"_s));
        fixture.perform(editor, u"key Ctrl+F, txtFind =x, cmdAdd"_s);
    }

    // An entry that is added to the catalog is found as soon as the editor is active again.
    void returnsFromTheCatalog()
    {
        WindowFixture fixture(dishes);
        for (const bool ofUtensils : {false, true}) {
            ChildWindow *editor = openEditor(fixture, ofUtensils);
            fixture.perform(*editor, u"key Ctrl+F, txtFind =bas"_s);
            fixture.perform(*editor, ofUtensils ? u"cmdAddUtensil"_s : u"cmdAddIngredient"_s);
            fixture.perform(*fixture.frame.activeChild(),
                            ofUtensils ? u"cmdNew, txtUtensilName =Basin, cmdSave, cmdDone"_s
                                       : u"cmdNew, txtIngredient =Basil, cmdSave, cmdDone"_s);
            QCOMPARE(fixture.frame.activeChild(), editor);
            fixture.perform(*editor, u"key Return"_s);
            QCOMPARE(seen(editor),
                     ofUtensils ? u"*Basin | 1 of 4 | Basin"_s
                                : u"*Basil | 1 of 5 | Basil (1 tsp)"_s);
            fixture.perform(*editor, u"cmdCancel"_s);
        }
    }

private:
    static ChildWindow *openEditor(WindowFixture &fixture, bool ofUtensils)
    {
        if (ofUtensils)
            return &compose<frmChangeUtensils>(fixture);
        return &compose<frmChangeIngredients>(fixture);
    }

    static QString seen(const ChildWindow *editor)
    {
        if (!editor)
            return u"closed"_s;
        const bool ofUtensils = editor->objectName() == "frmChangeUtensils"_L1;
        const auto &list =
            control<ListBox>(*editor, ofUtensils ? u"lstUtensils"_s : u"lstIngredients"_s);
        const auto &lines = control<ListBox>(
            *editor, ofUtensils ? u"lstRecipeUtensils"_s : u"lstRecipeIngredients"_s);
        return u"%1 | %2 | %3"_s.arg(shownRows(list),
                                     control<QLabel>(*editor, u"lblFound"_s).text(),
                                     lines.texts().value(lines.count() - 1));
    }
};

QTEST_MAIN(tst_FindAndAdd)
#include "tst_findandadd.moc"
