#include "app/frmMain.h"
#include "data/DatabasePath.h"
#include "support/MockInteraction.h"
#include "support/Rows.h"
#include "support/TestDatabase.h"

#include <QAbstractItemView>
#include <QAction>
#include <QDesktopServices>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

class tst_frmMain : public QObject
{
    Q_OBJECT

    QUrl m_opened;

public Q_SLOTS:
    void open(const QUrl &url) { m_opened = url; } // instead of a browser

private Q_SLOTS:
    void opensWithoutARecipeFile();
    void hasUniqueShortcuts();
    void hasUniqueAccessKeys();
    void disablesWhatHasNoAction_data();
    void disablesWhatHasNoAction();
    void startPage_data();
    void startPage();
    void keepsTheFocus();
    void exportsWebPages();
    void readsAgain_data();
    void readsAgain();
    void quits_data();
    void quits();
};

void tst_frmMain::opensWithoutARecipeFile()
{
    TestDatabase file;
    DatabasePath = file.folder() + "/none.rbk"_L1;
    MockInteraction interaction;
    frmMain window(interaction);
    interaction.expect(
        {u"Something went wrong in \"Pantrywise\":\nThe recipe database %1 is missing. Put "
         u"your last copy of it in its place and try again."_s.arg(DatabasePath),
         u"Error"_s, Icon::Exclamation});
    QVERIFY(!window.MDIForm_Load({}));
    QVERIFY(!QFile::exists(DatabasePath));
}

void tst_frmMain::hasUniqueShortcuts()
{
    MockInteraction interaction;
    const frmMain window(interaction);
    QSet<QKeySequence> shortcuts;
    for (const QAction *action : window.findChildren<QAction *>()) {
        if (action->shortcut().isEmpty())
            continue;
        QVERIFY2(!shortcuts.contains(action->shortcut()), qPrintable(action->objectName()));
        shortcuts.insert(action->shortcut());
    }
    QCOMPARE(shortcuts.size(), 12);
}

void tst_frmMain::hasUniqueAccessKeys()
{
    MockInteraction interaction;
    const frmMain window(interaction);
    const QList<QMenu *> menus = window.findChild<QMenuBar *>()->findChildren<QMenu *>();
    QCOMPARE(menus.size(), 4);
    for (const QMenu *menu : menus) {
        QSet<QKeySequence> keys;
        for (const QAction *action : menu->actions()) {
            const QKeySequence key = QKeySequence::mnemonic(action->text());
            QVERIFY2(key.isEmpty() || !keys.contains(key), qPrintable(action->objectName()));
            keys.insert(key);
        }
    }
}

void tst_frmMain::disablesWhatHasNoAction_data()
{
    QTest::addColumn<bool>("isEnabled");
    for (const char *name : {"mnuImport", "mnuExport", "mnuSettings", "mnuExit", "mnuRecipes",
                             "mnuIngredient", "mnuUtensil", "mnuAbout"})
        QTest::newRow(name) << true;
    for (const char *name :
         {"mnuShopingList", "mnuSearchRecipes", "mnuIndex", "mnuTips", "mnuTutorials"})
        QTest::newRow(name) << false;
}

void tst_frmMain::disablesWhatHasNoAction()
{
    MockInteraction interaction;
    const frmMain window(interaction);
    QVERIFY(!window.findChild<QMenu *>(u"mnuSearch"_s)->menuAction()->isEnabled());
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    QTEST(window.findChild<QAction *>(name)->isEnabled(), "isEnabled");
}

void tst_frmMain::startPage_data()
{
    using Keys = QList<Qt::Key>;
    // The window opened is null for the folder chooser of the export.
    addRows<Keys, QString>({
        {"Enter", Keys{Qt::Key_Return}, u"frmRecipes"_s},
        {"Down", Keys{Qt::Key_Down, Qt::Key_Return}, u"frmImport"_s},
        {"Tab and Space", Keys{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space}, u"frmIngredient"_s},
        {"Up", Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Enter}, u"frmImport"_s},
        {"last", Keys{Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}, QString()},
        {"shortcut", Keys{Qt::Key_F7}, u"frmUtensil"_s},
    });
}

// The page is there at first and after the last child window is closed, with the focus on its first
// link.
void tst_frmMain::startPage()
{
    const auto [keys, opened] = fetchRow<QList<Qt::Key>, QString>();
    TestDatabase file;
    DatabasePath = file.path();
    MockInteraction interaction;
    if (opened.isNull()) {
        interaction.expect(
            FolderChooser{u"Choose a folder for the web pages"_s,
                          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)},
            {});
    }
    frmMain window(interaction);
    QVERIFY(!window.MDIForm_Load({}));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto *page = window.findChild<QWidget *>(u"StartPage"_s);
    const auto *area = window.findChild<QMdiArea *>();
    const auto isReady = [&] {
        return page->isVisible() && page->hasFocus() && page->size() == area->size();
    };
    QVERIFY(isReady());
    for (const Qt::Key key : keys)
        QTest::keyClick(QApplication::focusWidget(), key);
    QCoreApplication::processEvents();
    if (opened.isNull())
        return;
    QVERIFY(!page->isVisible());
    window.resize(800, 500);
    QCOMPARE(area->activeSubWindow()->widget()->objectName(), opened);
    area->activeSubWindow()->close();
    QVERIFY(isReady());
}

// The first folder chosen contains files of the user, so that the user must choose another one.
// The start page takes the focus at first; it must not lose that of a window afterwards.
void tst_frmMain::keepsTheFocus()
{
    TestDatabase file;
    DatabasePath = file.path();
    MockInteraction interaction;
    frmMain window(interaction);
    QVERIFY(!window.MDIForm_Load({}));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto focusAfter = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        QCoreApplication::processEvents();
        return QApplication::focusWidget()->objectName();
    };
    QCOMPARE(focusAfter(Qt::Key_F5), u"lvwRecipes"_s);
    QCOMPARE(focusAfter(Qt::Key_F9), u"drvRecipes"_s);
    QCOMPARE(focusAfter(Qt::Key_Escape), u"lvwRecipes"_s);
}

void tst_frmMain::exportsWebPages()
{
    TestDatabase file;
    DatabasePath = file.path();
    const QDir place(file.folder());
    QVERIFY(place.mkpath(u"Pantrywise/mine"_s) && place.mkdir(u"other"_s));
    QDesktopServices::setUrlHandler(u"file"_s, this, "open");
    MockInteraction interaction;
    const auto expectChoice = [&interaction](const QString &from, const QString &answer) {
        interaction.expect(FolderChooser{u"Choose a folder for the web pages"_s, from}, answer);
    };
    expectChoice(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), place.path());
    interaction.expect(
        {place.filePath(u"Pantrywise was not made by an export, so nothing was exported "
                        "there. Move it away, or choose another place."_s),
         u"Export"_s, Icon::Exclamation});
    expectChoice(place.path(), place.filePath(u"other"_s));
    interaction.expect({u"0 recipes were written to "_s + place.filePath(u"other/Pantrywise."_s),
                        u"Export"_s,
                        Icon::Information,
                        {Button::Open, Button::Close},
                        Button::Open},
                       Button::Open);
    frmMain window(interaction);
    window.findChild<QAction *>(u"mnuExport"_s)->trigger();
    QDesktopServices::unsetUrlHandler(u"file"_s);
    QCOMPARE(m_opened, QUrl::fromLocalFile(place.filePath(u"other/Pantrywise/index.html"_s)));
}

void tst_frmMain::readsAgain_data()
{
    // The third value is the edit whose changes are not saved.
    addRows<Qt::Key, QString, QString, QString>({
        {"Recipes", Qt::Key_F5, u"lvwRecipes"_s, QString(), u"Salt"_s},
        {"Ingredients", Qt::Key_F6, u"lstIngredients"_s, QString(), u"Salt"_s},
        {"Ingredients, unsaved", Qt::Key_F6, u"lstIngredients"_s, u"txtIngredient"_s, QString()},
        {"Utensils", Qt::Key_F7, u"lstUtensils"_s, QString(), u"Salt"_s},
        {"Utensils, unsaved", Qt::Key_F7, u"lstUtensils"_s, u"txtUtensilName"_s, QString()},
    });
}

// The key of a window that is in front shows what another program has written, unless that would
// lose unsaved changes.
void tst_frmMain::readsAgain()
{
    const auto [key, list, edit, shown] = fetchRow<Qt::Key, QString, QString, QString>();
    TestDatabase file;
    DatabasePath = file.path();
    MockInteraction interaction;
    frmMain window(interaction);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(window.windowHandle(), key);
    QCoreApplication::processEvents();
    if (!edit.isEmpty())
        window.findChild<QLineEdit *>(edit)->insert(u"Pepper"_s);
    file.write(u"INSERT INTO Recipes (RecipeName) VALUES ('Salt');"
               "INSERT INTO Ingredients (IngredientName) VALUES ('Salt');"
               "INSERT INTO Utensils (UtensilName) VALUES ('Salt')"_s);
    QTest::keyClick(window.windowHandle(), key);
    const auto *view = window.findChild<QAbstractItemView *>(list);
    QCOMPARE(view->model()->index(0, 0).data().toString(), shown);
    if (!edit.isEmpty())
        QCOMPARE(window.findChild<QLineEdit *>(edit)->text(), u"Pepper"_s);
}

void tst_frmMain::quits_data()
{
    addRows<bool>({{"File, Exit", true}, {"closed", false}});
}

// A catalog with unsaved changes, which keeps the activation, neither asks nor stays open.
void tst_frmMain::quits()
{
    const auto [byMenu] = fetchRow<bool>();
    TestDatabase file;
    DatabasePath = file.path();
    MockInteraction interaction;
    frmMain window(interaction);
    QVERIFY(!window.MDIForm_Load({}));
    window.show();
    window.findChild<QAction *>(u"mnuIngredient"_s)->trigger();
    window.findChild<QAction *>(u"mnuUtensil"_s)->trigger();
    window.findChild<QLineEdit *>(u"txtIngredient"_s)->insert(u"Salt"_s);
    QTimer::singleShot(5000, &window, [] { QCoreApplication::exit(1); });
    const auto *exit = window.findChild<QAction *>(u"mnuExit"_s);
    byMenu ? QTimer::singleShot(0, exit, &QAction::trigger)
           : QTimer::singleShot(0, &window, &QWidget::close);
    QCOMPARE(QCoreApplication::exec(), 0);
}

QTEST_MAIN(tst_frmMain)
#include "tst_frmmain.moc"
