#include "catalogs/CatalogFixture.h"
#include "support/Rows.h"
#include "support/ShownRows.h"
#include "support/TemporaryHome.h"
#include "widgets/FindBar.h"

#include <QLabel>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString nothing = u"Nothing found.\nTo see all names again, press Esc."_s;

// The rows that a catalog shows, how many the find bar says that there are, and the name shown.
QString seen(const CatalogFixture &catalog)
{
    if (!catalog.isOpen())
        return u"closed"_s;
    const QString count = control<QLabel>(catalog.window, u"lblFound"_s).text();
    return u"%1 | %2 | %3"_s.arg(shownRows(catalog.list), count, catalog.name.text());
}

} // namespace

class tst_FindInCatalog : public QObject
{
    Q_OBJECT

    const TemporaryHome home; // with no settings yet

private Q_SLOTS:
    void finds_data()
    {
        const QString all = u"%1Éclair, %2Apple, %3Salt, %4beef |  | %5"_s;
        const auto whole = [&](int selected, const QString &name) {
            QString text = all;
            for (int row = 0; row < 4; ++row)
                text = text.replace(u"%"_s + QString::number(row + 1),
                                    row == selected ? u"*"_s : QString());
            return text.replace(u"%5"_s, name);
        };
        // The names are Éclair, Apple, Salt, beef, in this order; Éclair is shown.
        addRows<QString, QString, QString>({
            {"typing", u"sa"_s, u""_s, u"Salt | 1 of 4 | Éclair"_s},
            {"accent", u"ECL"_s, u""_s, u"*Éclair | 1 of 4 | Éclair"_s},
            {"nothing", u"x"_s, u"key Return, key Down"_s, nothing + u" | None of 4 | Éclair"_s},
            {"Enter", u"sa"_s, u"key Return"_s, u"*Salt | 1 of 4 | Salt"_s},
            {"Ctrl+Enter", u"sa"_s, u"key Ctrl+Return"_s, u"Salt | 1 of 4 | Éclair"_s},
            {"Enter twice", u"a"_s, u"key Return, key Return"_s,
             u"Éclair, *Apple, Salt | 3 of 4 | Apple"_s},
            {"Enter after Down", u"a"_s, u"key Down, key Down, key Return"_s,
             u"Éclair, Apple, *Salt | 3 of 4 | Salt"_s},
            {"Enter after Down and a letter", u"-x"_s, u"key Ctrl+End, txtFind =e, key Return"_s,
             u"*Éclair, Apple, beef | 3 of 4 | Éclair"_s},
            {"Enter after New", u"a"_s, u"lstIngredients 2, cmdNew, key Ctrl+F, key Return"_s,
             u"Éclair, Apple, *Salt | 3 of 4 | Salt"_s},
            {"Down", u"e"_s, u"key Down, key Down"_s, u"Éclair, Apple, *beef | 3 of 4 | beef"_s},
            {"Down from a row that is filtered out", u"-ec"_s, u"key Down"_s,
             u"*Apple, Salt, beef | 3 of 4 | Apple"_s},
            {"Up", u"e"_s, u"key Ctrl+End, key Up"_s, u"Éclair, *Apple, beef | 3 of 4 | Apple"_s},
            {"click", u"s"_s, u"lstIngredients 0"_s, u"*Salt | 1 of 4 | Salt"_s},
            {"Next", u"a"_s, u"lstIngredients 1, cmdNext"_s,
             u"Éclair, Apple, *Salt | 3 of 4 | Salt"_s},
            {"Next is filtered out", u"ap"_s, u"key Return, cmdNext"_s, whole(2, u"Salt"_s)},
            {"Previous is filtered out", u"ap"_s, u"key Return, cmdPrevious"_s,
             whole(0, u"Éclair"_s)},
            {"No previous", u"ec"_s, u"cmdPrevious"_s, u"*Éclair | 1 of 4 | Éclair"_s},
            {"Save, found", u"e"_s, u"txtIngredient =Cake, cmdSave"_s,
             u"*Cake, Apple, beef | 3 of 4 | Cake"_s},
            {"Save, filtered out", u"ec"_s, u"txtIngredient =Ham, cmdSave"_s,
             u"*Ham, Apple, Salt, beef |  | Ham"_s},
            {"New, found", u"be"_s, u"cmdNew, txtIngredient =Beer, cmdSave"_s,
             u"*Beer, beef | 2 of 5 | Beer"_s},
            {"New, filtered out", u"be"_s, u"cmdNew, txtIngredient =Ham, cmdSave"_s,
             u"Éclair, *Ham, Apple, Salt, beef |  | Ham"_s},
            {"Enter offers to save", u"sa"_s, u"txtIngredient =Ham, key Ctrl+F, key Return?Yes"_s,
             u"*Salt | 1 of 4 | Salt"_s},
            {"Down offers to save", u"-ec"_s, u"txtIngredient =Apricot, key Ctrl+F, key Down?Yes"_s,
             u"Apricot, *Apple, Salt, beef | 4 of 4 | Apple"_s},
            {"Enter drops edits", u"sa"_s, u"txtIngredient =Ham, key Ctrl+F, key Return?No"_s,
             u"*Salt | 1 of 4 | Salt"_s},
            {"Delete", u"a"_s, u"lstIngredients 1, cmdDelete?Yes"_s,
             u"Éclair, *Salt | 2 of 3 | Salt"_s},
            {"Delete the last one found", u"ap"_s, u"key Return, cmdDelete?Yes, key Down"_s,
             u"Éclair, *Salt, beef |  | Salt"_s},
            {"Esc", u"sa"_s, u"key Esc"_s, whole(0, u"Éclair"_s)},
            {"Esc after Enter", u"sa"_s, u"key Return, key Esc"_s, whole(2, u"Salt"_s)},
            {"Esc in the list", u"sa"_s, u"lstIngredients 0, key Esc"_s, whole(2, u"Salt"_s)},
            {"Esc in the name", u"e"_s, u"cmdNext, key Esc"_s, whole(1, u"Apple"_s)},
            {"Esc twice", u"sa"_s, u"key Esc, key Esc"_s, u"closed"_s},
        });
    }
    void finds()
    {
        const auto [text, steps, expected] = fetchRow<QString, QString, QString>();
        CatalogFixture catalog;
        catalog.perform(u"key Ctrl+F, txtFind ="_s + text);
        if (!steps.isEmpty())
            catalog.perform(steps);
        QCOMPARE(seen(catalog), expected);
    }

    // The list is narrowed again when it has been read again, even if that failed before.
    void readsAgain()
    {
        CatalogFixture catalog;
        catalog.perform(u"key Ctrl+F, txtFind =ap, key Return"_s);
        catalog.sql("INSERT INTO Ingredients VALUES (5, 'Grapes', 1, 5, 1)");
        catalog.open<frmIngredient>();
        QCOMPARE(seen(catalog), u"*Apple, Grapes | 2 of 5 | Apple"_s);

        SQLite::Database other = catalog.file.other();
        other.exec("BEGIN EXCLUSIVE; DELETE FROM Ingredients WHERE IngredientID = 2");
        catalog.expectLocked(DatabaseError::Operation::Reading);
        catalog.open<frmIngredient>();
        QCOMPARE(seen(catalog),
                 u"The ingredients could not be read. Press F6 to read them again. |  | "_s);
        catalog.perform(u"key Ctrl+F"_s);
        other.exec("COMMIT");
        catalog.open<frmIngredient>();
        QCOMPARE(seen(catalog), u"*Grapes | 1 of 4 | Grapes"_s);
    }

    // What was typed stays where it is if it could not be saved.
    void failsToSave()
    {
        CatalogFixture catalog;
        catalog.perform(u"txtIngredient =Cake, key Ctrl+F, txtFind =a"_s);
        SQLite::Database other = catalog.file.other();
        other.exec("BEGIN EXCLUSIVE");
        for (const QString &step : {u"key Down"_s, u"cmdNext"_s}) {
            catalog.expectQuestion(catalog.window, step, u"Yes"_s);
            catalog.expectLocked(DatabaseError::Operation::Writing);
            catalog.perform(step);
            QCOMPARE(seen(catalog), u"*Éclair, Apple, Salt | 3 of 4 | Cake"_s);
        }
    }
};

QTEST_MAIN(tst_FindInCatalog)
#include "tst_findincatalog.moc"
