#include "ListFixture.h"
#include "support/Rows.h"
#include "widgets/FindBar.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

namespace {

// Counts the keys that the platform reports as released.
class ReleaseCounter final : public QObject
{
public:
    ReleaseCounter() { qApp->installEventFilter(this); }
    qsizetype count() const { return m_count; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (watched->isWindowType() && event->type() == QEvent::KeyRelease)
            ++m_count;
        return false;
    }

private:
    qsizetype m_count = 0;
};

constexpr auto recipes =
    "INSERT INTO Recipes (RecipeID, RecipeName, Description, RecipeType, Serves) VALUES"
    " (1, 'Bean Soup', 'Thick', 0, 9), (2, 'Curry', 'With beans', 0, 3),"
    " (3, 'Pea Soup', 'Green', 0, 1), (4, 'pea soup', 'Another', 0, 2), (5, 'Rice', '', 0, 4);"
    "INSERT INTO Ingredients VALUES (1, 'Leeks', 0, 0, 1);"
    "INSERT INTO RecipeIngredients VALUES (1, 1, ''), (5, 1, '')";

struct FindFixture : ListFixture {
    FindFixture()
        : ListFixture(recipes)
    {
    }

    // Presses keys on the X server, in one burst, and waits until the last one is handled.
    static void type(const QString &keys)
    {
        const ReleaseCounter released;
        const qsizetype expected = 1 + keys.count(u' ') + keys.count(u'+');
        if (QProcess::execute(u"xdotool"_s, QStringList(u"key"_s) + keys.split(u' ')) != 0)
            qFatal("xdotool failed");
        if (!QTest::qWaitFor([&] { return released.count() >= expected; }))
            qFatal("a key was not released");
        QCoreApplication::processEvents();
    }
    // Finds what is typed, with the bar open.
    void find(const QString &text)
    {
        bar.open();
        field.setText(text);
    }
    // Returns the titles with "*" after the selected one, the control that has the focus, the text
    // of the bar in brackets if it is open, and the count.
    QString state() const
    {
        QStringList titles;
        for (int row = 0; row < table.model()->rowCount(); ++row) {
            const QModelIndex title = table.model()->index(row, 0);
            titles += title.data().toString()
                + (table.selectionModel()->isSelected(title) ? u"*"_s : QString());
        }
        QStringList parts{titles.join(u'|'), focusWidget()->objectName()};
        if (bar.isVisible())
            parts += u'[' + field.text() + u"] "_s + control<QLabel>(bar, u"lblFound"_s).text();
        return parts.join(u", "_s).trimmed();
    }

    FindBar &bar = control<FindBar>(form, u"findBar"_s);
    QLineEdit &field = control<QLineEdit>(bar, u"txtFind"_s);
};

} // namespace

// The find bar of the recipe list. Keys are real ones on an X server.
class tst_FindingRecipes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keys_data()
    {
        const QString all = u"Bean Soup*|Curry|Pea Soup|pea soup|Rice, "_s;
        const QString none = u", %1, [x] None of 5"_s;
        addRows<QString, QString>({
            {"nothing", u"Tab"_s, all + u"cmdClose"_s},
            {"find", u"ctrl+f"_s, all + u"txtFind, []"_s},
            {"letters", u"ctrl+f p e a"_s, u"Pea Soup*|pea soup, txtFind, [pea] 2 of 5"_s},
            {"down", u"ctrl+f s o Down Down u"_s,
             u"Bean Soup|Pea Soup|pea soup*, txtFind, [sou] 3 of 5"_s},
            {"edges", u"ctrl+f o ctrl+End Up ctrl+Home Page_Down"_s,
             u"Bean Soup|Pea Soup|pea soup*, txtFind, [o] 3 of 5"_s},
            {"select again", u"ctrl+f p shift+Tab ctrl+f r i"_s, u"Rice*, txtFind, [ri] 1 of 5"_s},
            {"letters in the table", u"ctrl+f s o shift+Tab p"_s,
             u"Bean Soup|Pea Soup*|pea soup, lvwRecipes, [so] 3 of 5"_s},
            {"sort", u"ctrl+f s o ctrl+4"_s,
             u"Pea Soup|pea soup|Bean Soup*, txtFind, [so] 3 of 5"_s},
            {"title", u"Down ctrl+f b e a n"_s, u"Bean Soup*|Curry, txtFind, [bean] 2 of 5"_s},
            {"typing on", u"ctrl+f b e Down a n"_s, u"Bean Soup|Curry*, txtFind, [bean] 2 of 5"_s},
            {"choice filtered out", u"ctrl+f s o Down u p space h i"_s,
             u"Bean Soup*, txtFind, [soup hi] 1 of 5"_s},
            {"Ctrl+Enter", u"ctrl+f p e a ctrl+Return"_s,
             u"Pea Soup*|pea soup, txtFind, [pea] 2 of 5"_s},
            {"close", u"ctrl+f p e a Down Escape"_s,
             u"Bean Soup|Curry|Pea Soup|pea soup*|Rice, lvwRecipes"_s},
            {"close from the table", u"ctrl+f p e a shift+Tab Escape"_s,
             u"Bean Soup|Curry|Pea Soup*|pea soup|Rice, lvwRecipes"_s},
            {"close by its button", u"ctrl+f p e a Tab Return"_s,
             u"Bean Soup|Curry|Pea Soup*|pea soup|Rice, lvwRecipes"_s},
            {"nothing found", u"ctrl+f x"_s, none.arg(u"txtFind"_s)},
            {"close with nothing found", u"Down ctrl+f x Escape"_s,
             u"Bean Soup|Curry*|Pea Soup|pea soup|Rice, lvwRecipes"_s},
            {"no recipe opens", u"ctrl+f x Return"_s, none.arg(u"txtFind"_s)},
            {"clear", u"Down ctrl+f x shift+Tab space"_s,
             u"Bean Soup|Curry*|Pea Soup|pea soup|Rice, txtFind, []"_s},
            {"tab", u"ctrl+f x Tab Tab"_s, none.arg(u"cmdClose"_s)},
            {"read again", u"ctrl+f p e a Down F5"_s,
             u"Pea Soup|pea soup*, txtFind, [pea] 2 of 5"_s},
            {"blank", u"ctrl+f space"_s, all + u"txtFind, [ ]"_s},
        });
    }
    void keys()
    {
        const auto [keys, state] = fetchRow<QString, QString>();
        const FindFixture list;
        FindFixture::type(keys);
        QCOMPARE(list.state(), state);
    }

    void enterAndEsc()
    {
        FindFixture list;
        FindFixture::type(u"ctrl+f p e a Down Return"_s);
        QTRY_VERIFY(list.opened());
        QCOMPARE(list.opened()->recipeId(), 4); // not 3, whose title differs in case only
        press(*list.opened(), u"cmdDone"_s);
        QCOMPARE(list.state(), u"Pea Soup|pea soup*, txtFind, [pea] 2 of 5"_s);
        FindFixture::type(u"Escape Escape"_s);
        QTRY_VERIFY(!list.frame.find<frmRecipes>());
    }

    void changesElsewhere_data()
    {
        addRows<QByteArray, QString>({
            {"nothing", "", u"Bean Soup|Pea Soup*|pea soup, txtFind, [so] 3 of 5"_s},
            {"selected renamed", "UPDATE Recipes SET RecipeName = 'Puree' WHERE RecipeID = 3",
             u"Bean Soup|pea soup*, txtFind, [so] 2 of 5"_s},
            {"other renamed", "UPDATE Recipes SET RecipeName = 'Soda' WHERE RecipeID = 1",
             u"Pea Soup*|pea soup|Soda, txtFind, [so] 3 of 5"_s},
            {"imported", "INSERT INTO Recipes (RecipeName) VALUES ('A Soup')",
             u"A Soup|Bean Soup|Pea Soup*|pea soup, txtFind, [so] 4 of 6"_s},
            {"selected and all after it gone", "DELETE FROM Recipes WHERE RecipeID > 2",
             u"Bean Soup*, txtFind, [so] 1 of 2"_s},
            {"none left", "DELETE FROM Recipes WHERE RecipeID <> 5",
             u", txtFind, [so] None of 1"_s},
            {"empty", "DELETE FROM Recipes", u", txtFind, [so]"_s},
        });
    }
    void changesElsewhere()
    {
        const auto [change, state] = fetchRow<QByteArray, QString>();
        FindFixture list;
        list.find(u"so"_s);
        list.table.setCurrentIndex(list.table.model()->index(1, 0));
        list.open<frmRecipe>();
        list.sql(change);
        list.open<frmRecipes>();
        QCOMPARE(list.state(), state);
    }

    void removedIngredient()
    {
        FindFixture list;
        list.find(u"leek"_s);
        QCOMPARE(list.state(), u"Bean Soup*|Rice, txtFind, [leek] 2 of 5"_s);
        list.sql("DELETE FROM RecipeIngredients WHERE RecipeID = 1");
        list.field.setText(u"leeks"_s); // counts while one types, too
        QCOMPARE(list.state(), u"Rice*, txtFind, [leeks] 1 of 5"_s);
        list.sql("DELETE FROM Ingredients");
        list.open<frmRecipes>();
        QCOMPARE(list.state(), u", txtFind, [leeks] None of 5"_s);
        QVERIFY(list.table.placeholderText().startsWith("Nothing found."_L1));
        list.doubleClick({200, 200});
        QVERIFY(!list.opened());
        press(list.form, u"cmdPlaceholder"_s);
        QCOMPARE(list.state(), u"Bean Soup|Curry|Pea Soup|pea soup|Rice*, txtFind, []"_s);
    }

    // As without the bar: a press in a list behind another window hits the recipe under the mouse.
    void doubleClickInTheListBehind()
    {
        FindFixture list;
        list.resize(1500, 800);
        list.form.parentWidget()->resize(400, 500);
        list.find(u"so"_s);
        list.open<frmRecipe>().parentWidget()->move(700, 0);
        list.sql("UPDATE Recipes SET Description = 'Quick' WHERE RecipeID = 4");
        list.doubleClick(list.table.visualRect(list.table.model()->index(2, 0)).center());
        QVERIFY(list.opened());
        QCOMPARE(list.opened()->recipeId(), 4);
    }

    // The list remains if a letter cannot read it again. A list that cannot be read is read again
    // by F5, not at each letter.
    void failedRead()
    {
        FindFixture list;
        const QString all = u"Bean Soup*|Curry|Pea Soup|pea soup|Rice, txtFind, "_s;
        const auto expectFailure = [&list] {
            list.interaction.expect(WindowFixture::failure(
                u"Recipes"_s, lockedText(list.file, DatabaseError::Operation::Reading)));
        };
        SQLite::Database other = list.file.other();
        other.exec("BEGIN EXCLUSIVE");
        expectFailure();
        list.find(u"s"_s); // which would build the index
        QCOMPARE(list.state(), all + u"[s]"_s);
        list.field.clear();
        QCOMPARE(list.state(), all + u"[]"_s);
        other.exec("COMMIT");
        list.find(u"so"_s);

        other.exec("BEGIN EXCLUSIVE; DELETE FROM Recipes WHERE RecipeID = 3");
        expectFailure();
        list.field.setText(u"sou"_s);
        QCOMPARE(list.state(), u"Bean Soup*|Pea Soup|pea soup, txtFind, [sou] 3 of 5"_s);
        list.field.setText(u"soup pea"_s);
        QCOMPARE(list.state(), u"Pea Soup*|pea soup, txtFind, [soup pea] 2 of 5"_s);
        expectFailure();
        list.open<frmRecipes>();
        list.field.setText(u"soup"_s);
        QCOMPARE(list.state(), u", txtFind, [soup]"_s);
        QVERIFY(list.table.placeholderText().startsWith("The recipes could not be read."_L1));
        other.exec("COMMIT");
        list.open<frmRecipes>();
        QCOMPARE(list.state(), u"Bean Soup*|pea soup, txtFind, [soup] 2 of 4"_s);
    }

    // Screen readers say a changed description of the control that has the focus.
    void announcements()
    {
        const FindFixture list;
        QStringList said;
        for (const QString &keys :
             {u"ctrl+f"_s, u"s o"_s, u"Down"_s, u"p x"_s, u"ctrl+a Delete"_s, u"Down"_s}) {
            FindFixture::type(keys);
            const auto *focused = QAccessible::queryAccessibleInterface(list.focusWidget());
            said += focused->text(QAccessible::Name) + u": "_s
                + focused->text(QAccessible::Description);
        }
        const QString nothing = u"Find: Find by title, description, author, type or ingredient"_s;
        QCOMPARE(said,
                 (QStringList{nothing, u"Find: 3 of 5"_s, u"Find: 3 of 5, Pea Soup"_s,
                              u"Find: None of 5"_s, nothing, u"Find: pea soup"_s}));
    }

    // In the columns that are searched, on the selected row and on others.
    void marks_data()
    {
        addRows<QString, QColor, QString>({
            {"light", u"bean"_s, Qt::white, u"10 01"_s},
            {"dark", u"bean"_s, QColor(0x20, 0x20, 0x20), u"10 01"_s},
            {"number", u"3 bean"_s, Qt::white, u""_s},
            {"excluded", u"bean -thick"_s, Qt::white, u"01"_s},
        });
    }
    void marks()
    {
        const auto [text, base, expected] = fetchRow<QString, QColor, QString>();
        FindFixture list;
        QPalette palette = list.table.palette();
        palette.setColor(QPalette::Base, base);
        list.table.setPalette(palette);
        list.find(text);
        const QImage picture = list.table.viewport()->grab().toImage();
        const QRgb amber = QColor(0xff, 0xd5, 0x4f).rgb();
        QStringList rows;
        for (int row = 0; row < list.table.model()->rowCount(); ++row) {
            rows.append(QString());
            for (int column = 0; column < 2; ++column) {
                const QRect cell = list.table.visualRect(list.table.model()->index(row, column));
                int marked = 0;
                for (int x = cell.left(); x < cell.right(); ++x)
                    marked += picture.pixel(x, cell.center().y()) == amber ? 1 : 0;
                rows.last() += marked > 0 ? u'1' : u'0';
            }
        }
        QCOMPARE(rows.join(u' '), expected);
    }
};

QTEST_MAIN(tst_FindingRecipes)
#include "tst_findingrecipes.moc"
