#include "app/frmMain.h"
#include "data/DatabasePath.h"
#include "support/MockInteraction.h"
#include "support/TemporaryHome.h"
#include "support/TestDatabase.h"
#include "widgets/ComboBox.h"
#include "widgets/DesktopInteraction.h"
#include "widgets/LineEdit.h"

#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

// Returns the controls that can have the focus but that a screen reader cannot name.
static QString namelessControls(const QWidget &window)
{
    QString found;
    for (QWidget *control : window.findChildren<QWidget *>()) {
        if (control->focusPolicy() == Qt::NoFocus || control->focusProxy() || !control->isVisible())
            continue;
        const QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(control);
        if (interface->text(QAccessible::Name).isEmpty() || interface->role() == QAccessible::NoRole
            || interface->role() == QAccessible::Client)
            found += window.objectName() + u'/' + control->objectName() + u' ';
    }
    return found;
}

// Returns the combo boxes that the wheel changes although they do not have the focus, and the edits
// into which line breaks can be pasted.
static QString plainControls(const QWidget &window)
{
    QString found;
    for (const QWidget *control : window.findChildren<QWidget *>()) {
        const auto *edit = qobject_cast<const QLineEdit *>(control);
        if ((edit && !edit->isReadOnly() && !qobject_cast<const LineEdit *>(edit))
            || (control->inherits("QComboBox") && !qobject_cast<const ComboBox *>(control)))
            found += window.objectName() + u'/' + control->objectName() + u' ';
    }
    return found;
}

class tst_AccessibleNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controlsOfAllWindows();
};

void tst_AccessibleNames::controlsOfAllWindows()
{
    const TemporaryHome home; // without settings
    const TestDatabase file;
    file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Soup')"_s);
    DatabasePath = file.path();
    MockInteraction interaction;
    frmMain window(interaction);
    QVERIFY(!window.MDIForm_Load({}));
    window.show();

    QString found = namelessControls(*window.findChild<QWidget *>(u"StartPage"_s));
    QSet<QString> seen;
    const auto *area = window.findChild<QMdiArea *>();
    for (const QString &step : {u"mnuIngredient"_s, u"cmdDone"_s, u"mnuUtensil"_s, u"cmdDone"_s,
                                u"mnuImport"_s, u"mnuRecipes"_s, u"cmdView"_s,
                                u"cmdChangeIngredients"_s, u"cmdDone"_s, u"cmdChangeUtensils"_s}) {
        if (auto *item = window.findChild<QAction *>(step))
            item->trigger();
        else
            area->activeSubWindow()->findChild<QPushButton *>(step)->click();
        QCoreApplication::processEvents();
        if (const QMdiSubWindow *child = area->activeSubWindow()) {
            found += namelessControls(*child->widget()) + plainControls(*child->widget());
            seen += child->widget()->objectName();
        }
    }
    QCOMPARE(seen.size(), 7);

    for (const QString &step : {u"mnuSettings"_s, u"mnuAbout"_s}) {
        QTimer::singleShot(0, &window, [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            auto *tabs = dialog->findChild<QTabWidget *>();
            for (int page = 0; page < (tabs ? tabs->count() : 1); ++page) {
                if (tabs)
                    tabs->setCurrentIndex(page);
                found += namelessControls(*dialog);
            }
            found += plainControls(*dialog);
            dialog->close();
        });
        window.findChild<QAction *>(step)->trigger();
    }

    const auto progress = DesktopInteraction().startProgress(u"Work"_s);
    for (qsizetype done = 0; !QApplication::activeModalWidget(); ++done) {
        QTest::qSleep(50); // until the work has lasted long enough for the box to appear
        QVERIFY(progress->update(done, 100, u"Soup"_s));
    }
    QCOMPARE(found + namelessControls(*QApplication::activeModalWidget()), QString());
}

QTEST_MAIN(tst_AccessibleNames)
#include "tst_accessiblenames.moc"
