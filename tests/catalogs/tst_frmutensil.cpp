#include "Kitchen.h"
#include "ListBox.h"
#include "frmUtensil.h"

#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

class tst_frmUtensil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Whether it is stored or refused, nothing is left to save.
    void saves()
    {
        const QString long26 = u"12345678901234567890123456"_s;
        const std::tuple<QString, QString, QString> rows[] = {
            // as typed, what the pan is called then, and what stands there as a new one
            {u"  Ladle "_s, u"Ladle"_s, u"Ladle"_s}, {long26, long26.first(25), long26.first(25)},
            {u"  "_s, u"pan"_s, u"none"_s},          {u"Cook's ladle"_s, u"pan"_s, u"none"_s},
            {u" wHISK "_s, u"pan"_s, u"none"_s},     {u"PAN"_s, u"pan"_s, u"none"_s},
        };
        for (const auto &[typed, renamed, added] : rows) {
            for (const bool isNew : {false, true}) {
                Kitchen kitchen("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')");
                const auto &window = kitchen.open<frmUtensil>();
                if (isNew)
                    press(window, u"cmdNew"_s);
                auto &name = control<QLineEdit>(window, u"txtUtensilName"_s);
                retype(name, typed);
                QTest::keyClick(&name, Qt::Key_Return);
                QString expected = u"1|Whisk, 2|"_s + (isNew ? u"pan"_s : renamed);
                if (isNew && added != "none"_L1)
                    expected += u", 3|"_s + added;
                QCOMPARE(kitchen.stored("SELECT * FROM Utensils ORDER BY 1"), expected);
                QVERIFY(!control<QPushButton>(window, u"cmdSave"_s).isEnabled());
            }
        }
    }

    void asksBeforeItLeaves()
    {
        Kitchen kitchen("INSERT INTO Utensils VALUES (1, 'Whisk'), (2, 'pan')");
        const auto &window = kitchen.open<frmUtensil>();
        auto &name = control<QLineEdit>(window, u"txtUtensilName"_s);
        auto &list = control<ListBox>(window, u"lstUtensils"_s);
        QTest::keyClick(&list, Qt::Key_End);
        press(window, u"cmdNext"_s);
        QCOMPARE(name.text(), u"Whisk"_s);
        press(window, u"cmdPrevious"_s);
        QCOMPARE(list.selectedText(), u"pan"_s);
        // After a refused save the cursor stands on the row that holds the name.
        retype(name, u"whisk"_s);
        press(window, u"cmdSave"_s);
        retype(name, u"Cleaver"_s);
        kitchen.doorway.expect(Kitchen::saveChanges("utensil"), Button::Yes);
        press(window, u"cmdNext"_s);
        QCOMPARE(name.text(), u"Whisk"_s);
        retype(name, u"Pot"_s);
        kitchen.doorway.expect(Kitchen::saveChanges("utensil"), Button::No);
        press(window, u"cmdNew"_s);
        kitchen.doorway.checkAllCame();
        QTest::keyClicks(&name, u"Spoon"_s);
        press(window, u"cmdDone"_s); // at once
        QVERIFY(!kitchen.frame.find<frmUtensil>());
        QCOMPARE(kitchen.stored("SELECT * FROM Utensils ORDER BY 1"), u"1|Whisk, 2|Cleaver"_s);
    }
};

QTEST_MAIN(tst_frmUtensil)
#include "tst_frmutensil.moc"
