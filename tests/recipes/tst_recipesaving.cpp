#include "Database.h"
#include "DatabaseFailure.h"
#include "DatabasePath.h"
#include "RecipeHands.h"

#include <QClipboard>
#include <QMimeData>
#include <QPlainTextEdit>

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

// What a save leaves in the file, and what it leaves on the screen where it fails.
class tst_RecipeSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void untouched_data()
    {
        QTest::addColumn<QByteArray>("values"); // of name, description, author, type, instructions,
                                                // serves, as SQL
        const auto row = [](const char *name, const QByteArray &instructions) {
            QTest::newRow(name) << "' a ', 'd', ' e ', -1, " + instructions + ", 'a few'";
        };
        row("white space",
            "'  a\xC2\xA0\t' || x'0A' || 'b' || x'0D' || 'c' || x'0D0A0AE280A8E280A9' || ' '");
        row("any character", "'\U0001F370 e\u0301 \uFEFF' || x'0001071B' || 'b'");
        row("a megabyte",
            "replace(hex(zeroblob(12000)), '00', '" + QByteArray(80, 'a') + "' || x'0A')");
        row("no UTF-8", "CAST(x'61FF62' AS TEXT)");
        row("a blob", "x'610A62'");
        QTest::newRow("beyond the limits")
            << QByteArray("'Tom''s (\"best\") [*]', 'two' || x'0A' || 'lines ', "
                          "'12345678901234567890123456789 ', 70000, 'x', -4.5");
    }
    void untouched()
    {
        QFETCH(const QByteArray, values);
        const QByteArray all = "SELECT hex(RecipeName), hex(Description), hex(Author), RecipeType,"
                               " hex(Instructions), typeof(Instructions), Serves FROM Recipes";
        RecipeHands hands("INSERT INTO Recipes (RecipeName, Description, Author, RecipeType,"
                          " Instructions, Serves) VALUES ("
                          + values + ")");
        const QString before = hands.stored(all);
        hands.open(1);
        hands.perform(u"cmbRating 2, cmdSave"_s);
        QVERIFY(hands.stored(all) == before);
        QCOMPARE(hands.stored("SELECT Rating FROM Recipes"), u"2"_s);
    }

    void edited()
    {
        const QString old = u"1|soup|d|null|16|a\nb\u00A0|9|null"_s;
        const std::pair<QString, QString> rows[] = {
            {u"cmdEdit soup, cmbRating 1, cmdSave"_s, u"1|soup|d||16|a\nb\u00A0|1|0"_s},
            {u"cmdEdit soup, txtInstruction c, cmdSave"_s, u"1|soup|d||16|a\r\nb\u00A0c|9|0"_s},
            {u"cmdEdit Soup, txtAuthor 12345678901234567890123456, cmbRecipeType 2, "
             "txtServes 123, cmdSave"_s,
             u"1|Soup|d|1234567890123456789012345|2|a\nb\u00A0|9|12"_s},
            {u"cmdEdit s, txtAuthor Ann, cmdNext?No, cmdDone?No"_s, old},
            {u"cmdNew b, cmbRecipeType 1, txtServes 5, cmdDone?Yes"_s, old + u", 2|b|||1||5|5"_s},
        };
        for (const auto &[steps, stored] : rows) {
            RecipeHands hands("INSERT INTO Recipes VALUES"
                              " (1, 'soup', 'd', NULL, 16, 'a' || x'0A62C2A0', 9, NULL)");
            hands.open(1);
            hands.perform(steps);
            QCOMPARE(hands.stored("SELECT * FROM Recipes"), stored);
        }
    }

    void plainTextIsPasted()
    {
        RecipeHands hands("INSERT INTO Recipes (RecipeName) VALUES ('a')");
        auto &edit = control<QPlainTextEdit>(hands.open(1), u"txtInstruction"_s);
        hands.perform(u"cmdEdit a"_s);
        auto *clip = new QMimeData;
        clip->setHtml(u"<b>bold</b>"_s);
        clip->setText(u"<i>plain</i>\nsecond"_s);
        QApplication::clipboard()->setMimeData(clip);
        edit.paste();
        hands.perform(u"cmdSave"_s);
        QCOMPARE(hands.stored("SELECT Instructions FROM Recipes"), u"<i>plain</i>\r\nsecond"_s);
    }

    void serves()
    {
        for (const QString &typed : {u"x"_s, u"-1"_s, u"1,"_s, u"1e"_s, u" "_s}) {
            RecipeHands hands("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b')");
            const frmRecipe &form = hands.open(1);
            hands.perform(u"cmdEdit a, txtAuthor Ann, txtServes "_s + typed);
            for (const QString &leave :
                 {u"cmdSave"_s, u"cmdNext"_s, u"cmdDone"_s, u"cmdChangeIngredients"_s}) {
                if (leave == "cmdNext"_L1 || leave == "cmdDone"_L1)
                    hands.doorway.expect(Kitchen::saveChanges("recipe"), Button::Yes);
                hands.doorway.expect(Kitchen::error(
                    u"Serves must be a number, 0 or more. \"%1\" is not."_s.arg(typed)));
                hands.perform(leave);
                QCOMPARE(form.title(), u"a"_s);
                QCOMPARE(hands.state(), u"open dontsave save"_s);
                QCOMPARE(QApplication::focusWidget()->objectName(), u"txtServes"_s);
            }
            QCOMPARE(hands.stored("SELECT Author FROM Recipes"), u"null, null"_s);
        }
    }

    void failures_data()
    {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("leave");
        for (const auto *cause : {"read-only", "full", "name taken", "deleted"}) {
            for (const auto *leave : {"cmdSave", "cmdNext", "cmdDone", "cmdChangeIngredients"})
                QTest::addRow("%s, %s", cause, leave)
                    << QString::fromLatin1(cause) << QString::fromLatin1(leave);
        }
    }
    // Everything stays as it was, and once the cause is gone it can be saved.
    void failures()
    {
        QFETCH(const QString, cause);
        QFETCH(const QString, leave);
        RecipeHands hands("INSERT INTO Recipes (RecipeName, Rating, RecipeType)"
                          " VALUES ('a', 0, 0), ('b', 0, 0), ('c', 0, 0)");
        frmRecipe &form = hands.open(2);
        hands.perform(u"cmdEdit b2, txtAuthor Ann, txtServes 4"_s);
        control<QPlainTextEdit>(form, u"txtInstruction"_s).insertPlainText(QString(9000, u'x'));
        const QString entered = hands.shown();

        const auto pragma = [](const char *text) {
            Database::open(DatabasePath)->connection().exec(text);
        };
        if (leave == "cmdNext"_L1 || leave == "cmdDone"_L1)
            hands.doorway.expect(Kitchen::saveChanges("recipe"), Button::Yes);
        if (cause == "name taken"_L1) {
            hands.sql("INSERT INTO Recipes (RecipeName) VALUES ('B2')");
            hands.doorway.expect(Kitchen::error(u"Recipe Name must be unique"_s));
        } else if (cause == "deleted"_L1) {
            hands.sql("DELETE FROM Recipes WHERE RecipeID = 2");
            hands.doorway.expect(Kitchen::failure(
                u"b2"_s,
                u"This recipe has been deleted by another program. Nothing was stored."_s));
        } else {
            const bool full = cause == "full"_L1;
            pragma(full ? "PRAGMA max_page_count = 1" : "PRAGMA query_only = ON");
            hands.doorway.expect(Kitchen::failure(
                u"b2"_s,
                databaseFailureText(DatabasePath, full ? SQLITE_FULL : SQLITE_READONLY, {})));
        }
        const QString before = hands.stored("SELECT * FROM Recipes");
        hands.perform(leave);
        hands.doorway.checkAllCame();
        QCOMPARE(hands.shown(), entered);
        QCOMPARE(form.CurrentRecipeID, 2);
        QCOMPARE(hands.state(), u"open dontsave save"_s);
        QCOMPARE(hands.stored("SELECT * FROM Recipes"), before);

        if (cause == "deleted"_L1)
            return;
        pragma("PRAGMA query_only = OFF; PRAGMA max_page_count = 1000000");
        hands.sql("DELETE FROM Recipes WHERE RecipeName = 'B2'");
        hands.perform(u"cmdSave"_s);
        QCOMPARE(hands.shown(), entered);
        QCOMPARE(hands.stored("SELECT RecipeName FROM Recipes WHERE Author = 'Ann'"), u"b2"_s);
        hands.perform(u"cmdNext"_s);
        QCOMPARE(form.title(), u"c"_s);
    }

    void othersChangesStay()
    {
        RecipeHands hands("INSERT INTO Recipes (RecipeName, Author) VALUES ('a', 'Ann')");
        const frmRecipe &form = hands.open(1);
        hands.sql("UPDATE Recipes SET RecipeName = 'b', Author = 'Eve'");
        hands.perform(u"cmbRating 3, cmdSave"_s);
        QCOMPARE(hands.stored("SELECT RecipeName, Author, Rating FROM Recipes"), u"b|Eve|3"_s);
        QCOMPARE(form.title(), u"b"_s);
    }
};

QTEST_MAIN(tst_RecipeSaving)
#include "tst_recipesaving.moc"
