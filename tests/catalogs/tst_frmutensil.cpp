#include "ListBox.h"
#include "Stage.h"
#include "frmUtensil.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString drawer = u"INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan'), (3, 'Knife')"_s;

// The catalog on its stage, and its controls.
struct Catalog {
    explicit Catalog(const QString &rows)
        : stage(rows)
    {
    }

    QString stored() const { return stage.rowsOf("SELECT * FROM Utensils ORDER BY 1"); }

    Stage stage;
    frmUtensil &window = stage.open<frmUtensil>();
    ListBox &list = control<ListBox>(window, u"lstUtensils"_s);
    QLineEdit &name = control<QLineEdit>(window, u"txtUtensilName"_s);
    QAbstractButton &save = control<QAbstractButton>(window, u"cmdSave"_s);
};

} // namespace

class tst_frmUtensil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsInOrder()
    {
        Catalog catalog(drawer);
        QCOMPARE(catalog.list.texts(), QStringList({u"Knife"_s, u"pan"_s, u"Whisk"_s}));
        QCOMPARE(catalog.name.text(), u"Knife"_s);
        QTest::keyClick(&catalog.list, Qt::Key_End);
        QCOMPARE(catalog.name.text(), u"Whisk"_s);
        press(catalog.window, u"cmdNext"_s);
        QCOMPARE(catalog.name.text(), u"Whisk"_s);
        press(catalog.window, u"cmdPrevious"_s);
        QCOMPARE(catalog.name.text(), u"pan"_s);
        QVERIFY(catalog.name.hasFocus());
        QTest::keyClick(&catalog.name, Qt::Key_Escape);
        QVERIFY(catalog.window.isVisible());
    }

    // Whether it is stored or refused, nothing is left to save.
    void saves_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("stored"); // for the new one; empty where it is refused
        QTest::addColumn<QString>("renamed"); // the pan

        QTest::newRow("a name") << u"Ladle"_s << u"Ladle"_s << u"Ladle"_s;
        QTest::newRow("without blanks") << u"  Ladle "_s << u"Ladle"_s << u"Ladle"_s;
        QTest::newRow("cut to 25")
            << u"12345678901234567890123456"_s << u"1234567890123456789012345"_s
            << u"1234567890123456789012345"_s;
        QTest::newRow("no name") << u""_s << u""_s << u"pan"_s;
        QTest::newRow("blanks") << u"  "_s << u""_s << u"pan"_s;
        QTest::newRow("apostrophe") << u"Cook's ladle"_s << u""_s << u"pan"_s;
        QTest::newRow("taken") << u"wHISK"_s << u""_s << u"pan"_s;
        QTest::newRow("taken but for blanks") << u" Whisk "_s << u""_s << u"pan"_s;
        QTest::newRow("its own in another case") << u"PAN"_s << u""_s << u"pan"_s;
    }

    void saves()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, stored);
        QFETCH(const QString, renamed);
        Catalog catalog(drawer);
        press(catalog.window, u"cmdNext"_s);
        retype(catalog.name, name);
        QTest::keyClick(&catalog.name, Qt::Key_Return);
        QCOMPARE(catalog.stored(), u"1|Whisk, 2|%1, 3|Knife"_s.arg(renamed));
        QVERIFY(!catalog.save.isEnabled());
        QVERIFY(catalog.list.hasFocus());

        catalog.stage.file.write(u"UPDATE Utensils SET UtensilName = 'pan' WHERE UtensilID = 2"_s);
        press(catalog.window, u"cmdDone"_s);
        const auto &again = catalog.stage.open<frmUtensil>();
        press(again, u"cmdNew"_s);
        auto &edit = control<QLineEdit>(again, u"txtUtensilName"_s);
        QCOMPARE(edit.text(), u""_s);
        QVERIFY(edit.hasFocus());
        QTest::keyClicks(&edit, name);
        press(again, u"cmdSave"_s);
        QCOMPARE(catalog.stored(),
                 u"1|Whisk, 2|pan, 3|Knife"_s + (stored.isEmpty() ? u""_s : u", 4|"_s + stored));
        const QString selected = control<ListBox>(again, u"lstUtensils"_s).selectedText();
        QCOMPARE(selected, stored.isEmpty() ? u"Knife"_s : stored);
    }

    void asksBeforeItLeaves()
    {
        Catalog catalog(drawer);
        const MessageBox question = {u"Do you want to save changes to this utensil"_s,
                                     u"Save Changes"_s,
                                     Icon::Question,
                                     {Button::Yes, Button::No},
                                     Button::Yes};
        retype(catalog.name, u"Cleaver"_s);
        catalog.stage.doorway.expect(question, Button::Yes);
        press(catalog.window, u"cmdNext"_s);
        QCOMPARE(catalog.name.text(), u"pan"_s);
        retype(catalog.name, u"Pot"_s);
        catalog.stage.doorway.expect(question, Button::No);
        press(catalog.window, u"cmdNew"_s);
        catalog.stage.doorway.checkAllCame();
        QTest::keyClicks(&catalog.name, u"Spoon"_s);
        press(catalog.window, u"cmdDone"_s); // at once
        QVERIFY(!catalog.stage.frame.find<frmUtensil>());
        QCOMPARE(catalog.stored(), u"1|Whisk, 2|pan, 3|Cleaver"_s);
    }

    // After a refused save the cursor stands on the row that holds the name.
    void savesWhatIsShown()
    {
        Catalog catalog(drawer);
        retype(catalog.name, u"whisk"_s);
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.name.text(), u"whisk"_s);
        retype(catalog.name, u"Cleaver"_s);
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.stored(), u"1|Whisk, 2|pan, 3|Cleaver"_s);

        retype(catalog.name, u"Axe"_s);
        catalog.stage.file.write(u"DELETE FROM Utensils"_s);
        catalog.stage.expectFailure(
            u"Utensils"_s,
            u"This entry has been deleted by another program. Nothing was stored."_s);
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.name.text(), u""_s);
        QTest::keyClicks(&catalog.name, u"Axe"_s);
        press(catalog.window, u"cmdSave"_s);
        QCOMPARE(catalog.list.texts(), QStringList(u"Axe"_s));
    }
};

QTEST_MAIN(tst_frmUtensil)
#include "tst_frmutensil.moc"
