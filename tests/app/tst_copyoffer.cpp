#include "app/CopyOffer.h"
#include "catalogs/frmUtensil.h"
#include "data/Database.h"
#include "export/ExportCommand.h"
#include "recipes/frmRecipe.h"
#include "recipes/frmRecipes.h"
#include "support/FileBytes.h"
#include "support/WindowFixture.h"

#include <QAbstractItemView>
#include <QDate>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace {

// Windows on a database of which there is a copy with the recipe Bread.
class CopyFixture : public WindowFixture
{
public:
    CopyFixture()
        : WindowFixture("INSERT INTO Recipes (RecipeName) VALUES ('Bread')")
    {
        setBytes(copy, bytesOf(file.path()));
        sql("INSERT INTO Recipes (RecipeName) VALUES ('Soup')");
    }

    void damage() const { setBytes(file.path(), bytesOf(file.path()).replace(0, 200, "bad")); }

    QString damagedText(const QString &window) const
    {
        return failure(window, file.path() + u" is not a recipe database."_s).text;
    }
    MessageBox offerBox(const QString &window, const QString &number = {}) const
    {
        return {
            damagedText(window)
                + u"\n\nPantrywise can put back its copy of 1 March 2026 with 1 recipe. What you have stored on that day or later is not in it. The file that is there now is kept as \"%1\". Do you want to put the copy back?"_s
                      .arg(keptName(number)),
            u"Error"_s,
            Icon::Exclamation,
            {Button::Yes, Button::No},
            Button::No};
    }
    static QString keptName(const QString &number = {})
    {
        return u"data damaged %1%2.rbk"_s.arg(QDate::currentDate().toString(Qt::ISODate), number);
    }

    static QString titles(const frmRecipes &list)
    {
        const auto *model = control<QAbstractItemView>(list, u"lvwRecipes"_s).model();
        QStringList titles;
        for (int row = 0; row < model->rowCount(); ++row)
            titles += model->index(row, 0).data().toString();
        return titles.join(u' ');
    }

    const QString copy = file.folder() + u"/copies/data 2026-03-01.rbk"_s;
    CopyOffer offer{frame};
};

} // namespace

class tst_CopyOffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The active window shows the copy at once, the other one when it is activated, and what is
    // saved then is in the copy.
    void goesOnWithTheCopy()
    {
        CopyFixture test;
        auto &list = test.open<frmRecipes>();
        QCOMPARE(test.titles(list), u"Bread Soup"_s);
        test.damage();
        const QByteArray bad = bytesOf(test.file.path());
        test.interaction.expect(test.offerBox(u"Recipes"_s), Button::No);
        test.frame.show(list);
        QCOMPARE(bytesOf(test.file.path()), bad);
        test.interaction.expect(test.offerBox(u"Recipes"_s), Button::Yes);
        test.frame.show(list);
        QCOMPARE(test.titles(list), u"Bread"_s);
        QCOMPARE(bytesOf(test.file.folder() + u'/' + test.keptName()), bad);

        auto &utensils = test.open<frmUtensil>();
        test.sql("INSERT INTO Recipes (RecipeName) VALUES ('Soup')");
        test.damage();
        test.interaction.expect(test.offerBox(u"Utensils"_s, u" 2"_s), Button::Yes);
        test.frame.show(utensils);
        test.perform(utensils, u"txtUtensilName Pan, cmdSave, cmdDone"_s);
        QCOMPARE(test.stored("SELECT RecipeName, UtensilName FROM Recipes, Utensils"),
                 u"Bread|Pan"_s);
        QCOMPARE(test.titles(list), u"Bread"_s);
    }

    // The record window is read again, but what has been typed stays and can be saved in the copy.
    void goesOnWithTheRecipe()
    {
        CopyFixture test;
        auto &recipe = test.open<frmRecipe>();
        QCOMPARE(recipe.title(), u"Bread"_s);
        test.perform(recipe, u"cmdEdit Bread, txtAuthor Ann"_s);
        test.damage();
        test.interaction.expect(test.offerBox(u"Bread"_s), Button::Yes);
        test.perform(recipe, u"cmdSave"_s);
        test.perform(recipe, u"cmdSave"_s);
        QCOMPARE(test.stored("SELECT RecipeName, Author FROM Recipes"), u"Bread|Ann"_s);
    }

    // The window is not loaded, but opens after the copy has been put back.
    void offersWhenAWindowOpens()
    {
        CopyFixture test;
        test.damage();
        test.interaction.expect(test.offerBox(u"Recipes"_s), Button::Yes);
        test.frame.boundary().run(u"Pantrywise"_s, [&] { test.open<frmRecipes>(); });
        QVERIFY(!test.frame.find<frmRecipes>());
        QCOMPARE(test.titles(test.open<frmRecipes>()), u"Bread"_s);
    }

    // A handler that refreshes another window finds the same damage as that window.
    void asksOnceInAHandler()
    {
        CopyFixture test;
        auto &list = test.open<frmRecipes>();
        const auto database = Database::open(test.file.path());
        test.damage();
        test.interaction.expect(test.offerBox(u"Recipes"_s), Button::No);
        test.frame.boundary().run(u"Soup"_s, [&] {
            test.frame.show(list);
            database->dataVersion();
        });
    }

    void offersInAnExport()
    {
        CopyFixture test;
        test.damage();
        const QString folder = test.file.folder();
        test.interaction.expect(
            FolderChooser{u"Choose a folder for the web pages"_s,
                          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)},
            folder);
        test.interaction.expect(test.offerBox(u"Pantrywise"_s), Button::No);
        test.frame.boundary().run(u"Pantrywise"_s, [&] { exportWebPages(test.interaction); });
        QVERIFY(!QFile::exists(folder + u"/Pantrywise"_s));
    }

    // Without a sound copy the message is the plain one.
    void offersNoBadCopy()
    {
        CopyFixture test;
        auto &list = test.open<frmRecipes>();
        test.damage();
        setBytes(test.copy, "bad");
        test.interaction.expect(
            test.warning(test.damagedText(u"Recipes"_s)
                             + u" Put your last copy of it in its place and try again."_s,
                         u"Error"_s));
        test.frame.show(list);
    }

    // The text comes after the handler, when the database is not locked any more.
    void tellsOnceThatThereIsNoCopy()
    {
        CopyFixture test;
        auto &utensils = test.open<frmUtensil>();
        QDir(test.file.folder() + u"/copies"_s).removeRecursively();
        setBytes(test.file.folder() + u"/copies"_s, "mine");
        test.interaction.expect(test.warning(
            u"Today's copy of your recipes could not be made in %1/copies: Not a directory.\nYou can go on working. Correct this, so that there is a copy of today if you ever need it."_s
                .arg(test.file.folder()),
            u"Copies"_s));
        test.perform(utensils,
                     u"txtUtensilName Pan, cmdSave, cmdNew, txtUtensilName Pot, cmdSave"_s);
        QCOMPARE(test.stored("SELECT UtensilName FROM Utensils"), u"Pan, Pot"_s);
    }
};

QTEST_MAIN(tst_CopyOffer)
#include "tst_copyoffer.moc"
