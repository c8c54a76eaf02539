#include "Database.h"
#include "DatabaseFailure.h"
#include "DatabasePath.h"
#include "RecipeHands.h"

#include <QClipboard>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTest>

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

// What a save leaves in the file, and what it leaves on the screen where it fails.
class tst_RecipeSaving : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Kitchen> m_kitchen;
    std::unique_ptr<RecipeHands> m_hands;

    void expectFailure(const QString &window, const QString &text)
    {
        m_kitchen->doorway.expect(
            {.text = u"Something went wrong in \"%1\":\n%2"_s.arg(window, text),
             .title = u"Error"_s,
             .icon = Icon::Exclamation});
    }

private Q_SLOTS:
    void init()
    {
        m_kitchen = std::make_unique<Kitchen>();
        m_hands = std::make_unique<RecipeHands>(*m_kitchen);
    }
    void cleanup() { m_kitchen->doorway.checkAllCame(); }

    void untouched_data()
    {
        QTest::addColumn<QByteArray>("values"); // of name, description, author, type, instructions,
                                                // serves, as SQL
        const auto instructions = [](const QByteArray &text) {
            return "'a', 'd', 'e', 1, " + text + ", 4";
        };
        QTest::newRow("line ends")
            << instructions("'a' || x'0A' || 'b' || x'0D' || 'c' || x'0D0A0A'");
        QTest::newRow("blanks") << instructions("'  a"
                                                "\xC2\xA0"
                                                "b\t' || x'E280A8E280A9' || ' '");
        QTest::newRow("beyond the first plane") << instructions("'\U0001F370 e\u0301 \uFEFF'");
        QTest::newRow("controls") << instructions("'a' || x'0001071B' || 'b'");
        QTest::newRow("a megabyte") << instructions("replace(hex(zeroblob(12000)), '00', '"
                                                    + QByteArray(80, 'a') + "' || x'0A')");
        QTest::newRow("no UTF-8") << instructions("CAST(x'61FF62' AS TEXT)");
        QTest::newRow("a blob") << instructions("x'610A62'");
        QTest::newRow("beyond the limits")
            << QByteArray("'Tom''s (\"best\") [*]', 'two' || x'0A' || 'lines ', "
                          "'12345678901234567890123456789 ', 16, 'x', 120");
        QTest::newRow("odd numbers") << QByteArray("' a ', ' ', ' e ', 70000, 'x', -4.5");
        QTest::newRow("a text for a number") << QByteArray("'a', 'd', 'e', -1, 'x', 'a few'");
    }
    void untouched()
    {
        QFETCH(const QByteArray, values);
        const QByteArray all = "SELECT hex(RecipeName), hex(Description), hex(Author), RecipeType,"
                               " hex(Instructions), typeof(Instructions), Serves FROM Recipes";
        m_kitchen->sql(
            "INSERT INTO Recipes (RecipeName, Description, Author, RecipeType, Instructions,"
            " Serves) VALUES ("
            + values + ")");
        const QString before = m_kitchen->stored(all);
        m_hands->open(1);
        m_hands->perform(u"rate 2, save"_s);
        QVERIFY(m_kitchen->stored(all) == before);
        QCOMPARE(m_kitchen->stored("SELECT Rating FROM Recipes"), u"2"_s);
    }

    void edited_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("stored");
        const QString old = u"1|'soup'|'d'|null|16|'a%0Ab%C2%A0'|9|null"_s;
        QTest::newRow("nulls get what is shown")
            << u"edit soup, rate 1, save"_s << u"1|'soup'|'d'|''|16|'a%0Ab%C2%A0'|1|0"_s;
        QTest::newRow("line ends") << u"edit soup, instructions c, save"_s
                                   << u"1|'soup'|'d'|''|16|'a%0D%0Ab%C2%A0c'|9|0"_s;
        QTest::newRow("all") << u"edit Soup, author Ann, type 2, serves 12, rate 0, save"_s
                             << u"1|'Soup'|'d'|'Ann'|2|'a%0Ab%C2%A0'|0|12"_s;
        QTest::newRow("limits")
            << u"edit soup, author 12345678901234567890123456, serves 123, save"_s
            << u"1|'soup'|'d'|'1234567890123456789012345'|16|'a%0Ab%C2%A0'|9|12"_s;
        QTest::newRow("not saved") << u"edit s, author Ann, next?No, done?No"_s << old;
        QTest::newRow("new") << u"new b, instructions c, serves 5, save"_s
                             << old + u"|2|'b'|''|''|0|'c'|5|5"_s;
        QTest::newRow("new, saved on leaving")
            << u"new b, type 1, done?Yes"_s << old + u"|2|'b'|''|''|1|''|5|0"_s;
    }
    void edited()
    {
        QFETCH(const QString, steps);
        m_kitchen->sql(
            "INSERT INTO Recipes VALUES (1, 'soup', 'd', NULL, 16, 'a' || x'0A62C2A0', 9,"
            " NULL)");
        m_hands->open(1);
        m_hands->perform(steps);
        QTEST(m_kitchen->stored("SELECT * FROM Recipes"), "stored");
    }

    void plainTextIsPasted()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('a')");
        auto *edit = control<QPlainTextEdit>(m_hands->open(1), "txtInstruction");
        m_hands->perform(u"edit a"_s);
        auto *clip = new QMimeData;
        clip->setHtml(u"<b>bold</b>"_s);
        clip->setText(u"<i>plain</i>\nsecond"_s);
        QApplication::clipboard()->setMimeData(clip);
        edit->paste();
        m_hands->perform(u"save"_s);
        QCOMPARE(m_kitchen->stored("SELECT Instructions FROM Recipes"),
                 u"'%3Ci%3Eplain%3C%2Fi%3E%0D%0Asecond'"_s);
    }

    void serves_data()
    {
        QTest::addColumn<QString>("typed");
        for (const auto *text : {"x", "-1", "1,", "+", "1e", " "})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void serves()
    {
        QFETCH(const QString, typed);
        m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b')");
        const frmRecipe &form = m_hands->open(1);
        m_hands->perform(u"edit a, author Ann, serves "_s + typed);
        for (const auto *leave : {"save", "next?Yes", "done?Yes", "ingredients", "utensils"}) {
            const QString steps = QString::fromLatin1(leave);
            if (steps.contains(u'?'))
                m_kitchen->doorway.expect(RecipeHands::savePrompt(), Button::Yes);
            m_kitchen->doorway.expect(RecipeHands::error(
                u"Serves must be a number, 0 or more. \"%1\" is not."_s.arg(typed)));
            m_hands->perform(steps.section(u'?', 0, 0));
            QCOMPARE(form.title(), u"a"_s);
            QCOMPARE(m_hands->state(), u"open dontsave save"_s);
            QCOMPARE(QApplication::focusWidget(), control<QWidget>(form, "txtServes"));
        }
        QCOMPARE(m_kitchen->stored("SELECT Author FROM Recipes"), u"null|null"_s);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("cause");
        QTest::addColumn<QString>("steps");
        for (const auto *cause : {"read-only", "full", "name taken", "deleted"}) {
            for (const auto *leave : {"save", "next", "done", "ingredients"}) {
                QTest::addRow("%s, %s", cause, leave)
                    << QString::fromLatin1(cause)
                    << u"edit b2, author Ann, serves 4, "_s + QString::fromLatin1(leave);
            }
        }
        QTest::addRow("name taken, new")
            << u"name taken"_s << u"new b2, author Ann, serves 4, save"_s;
        QTest::addRow("read-only, new")
            << u"read-only"_s << u"new b2, author Ann, serves 4, next"_s;
    }
    void failures()
    {
        QFETCH(const QString, cause);
        QFETCH(const QString, steps);
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Rating, RecipeType)"
                       " VALUES ('a', 0, 0), ('b', 0, 0), ('c', 0, 0)");
        frmRecipe &form = m_hands->open(2);
        const qsizetype lastStep = steps.lastIndexOf(u", "_s);
        const QString leave = steps.sliced(lastStep + 2);
        m_hands->perform(steps.first(lastStep));
        control<QPlainTextEdit>(form, "txtInstruction")->insertPlainText(QString(9000, u'x'));
        const QString entered = m_hands->shown();
        const qint64 key = form.CurrentRecipeID;

        const auto pragma = [](const char *text) {
            Database::open(DatabasePath)->connection().exec(text);
        };
        if (leave == "next"_L1 || leave == "done"_L1)
            m_kitchen->doorway.expect(RecipeHands::savePrompt(), Button::Yes);
        if (cause == "name taken"_L1) {
            m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('B2')");
            m_kitchen->doorway.expect(RecipeHands::error(u"Recipe Name must be unique"_s));
        } else if (cause == "deleted"_L1) {
            m_kitchen->sql("DELETE FROM Recipes WHERE RecipeID = 2");
            expectFailure(u"b2"_s,
                          u"This recipe has been deleted by another program. Nothing was "
                          "stored."_s);
        } else if (cause == "full"_L1) {
            pragma("PRAGMA max_page_count = 1");
            expectFailure(u"b2"_s, databaseFailureText(DatabasePath, SQLITE_FULL, {}));
        } else {
            pragma("PRAGMA query_only = ON");
            expectFailure(u"b2"_s, databaseFailureText(DatabasePath, SQLITE_READONLY, {}));
        }
        const QString before = m_kitchen->stored("SELECT * FROM Recipes");
        m_hands->perform(leave);
        m_kitchen->doorway.checkAllCame();
        QCOMPARE(m_hands->shown(), entered);
        QCOMPARE(form.CurrentRecipeID, key);
        QCOMPARE(m_hands->state(), u"open dontsave save"_s);
        QCOMPARE(m_kitchen->stored("SELECT * FROM Recipes"), before);

        if (cause == "deleted"_L1)
            return;
        // Nothing is lost: once the cause is gone, it can be saved.
        pragma("PRAGMA query_only = OFF; PRAGMA max_page_count = 1000000");
        m_kitchen->sql("DELETE FROM Recipes WHERE RecipeName = 'B2'");
        m_hands->perform(u"save"_s);
        QCOMPARE(m_hands->shown(),
                 key == 0 ? QString(entered).replace(u"meat"_s, u"vegetarian"_s) : entered);
        QCOMPARE(m_kitchen->stored("SELECT RecipeName FROM Recipes WHERE Author = 'Ann'"),
                 u"'b2'"_s);
        m_hands->perform(u"previous"_s);
        QCOMPARE(form.title(), key == 0 ? u"b"_s : u"a"_s);
    }

    void afterAFailureTheNeighboursAreStillThere()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName) VALUES ('a'), ('b'), ('c')");
        const frmRecipe &form = m_hands->open(2);
        m_hands->perform(u"edit B, author Ann"_s);
        m_kitchen->sql("UPDATE Recipes SET RecipeName = 'B' WHERE RecipeID = 1");
        m_kitchen->doorway.expect(RecipeHands::error(u"Recipe Name must be unique"_s));
        m_hands->perform(u"save, next?No"_s);
        QCOMPARE(form.title(), u"c"_s);
    }

    void othersChangesStay()
    {
        m_kitchen->sql("INSERT INTO Recipes (RecipeName, Author) VALUES ('a', 'Ann')");
        const frmRecipe &form = m_hands->open(1);
        m_kitchen->sql("UPDATE Recipes SET RecipeName = 'b', Author = 'Eve'");
        m_hands->perform(u"rate 3, save"_s);
        QCOMPARE(m_kitchen->stored("SELECT RecipeName, Author, Rating FROM Recipes"),
                 u"'b'|'Eve'|3"_s);
        QCOMPARE(form.title(), u"b"_s);
    }
};

QTEST_MAIN(tst_RecipeSaving)
#include "tst_recipesaving.moc"
