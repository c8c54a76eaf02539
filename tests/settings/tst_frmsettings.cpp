#include "data/settings/RegistryFunctions.h"
#include "frame/ErrorBoundary.h"
#include "settings/frmSettings.h"
#include "support/MockInteraction.h"
#include "support/TemporaryHome.h"

#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

struct StoredValue {
    QString key;
    QString name;
};

const StoredValue storedValues[] = {
    {u"Sorting"_s, u"Ingredients"_s},   {u"Sorting"_s, u"Recipes"_s},
    {u"HTML"_s, u"CategoryTemplate"_s}, {u"HTML"_s, u"MainMenuTemplate"_s},
    {u"HTML"_s, u"RecipeTemplate"_s},   {u"HTML"_s, u"HTMLStyle"_s},
};

QString keyPath(const StoredValue &value)
{
    return u"Software\\Quillmoor\\Pantrywise\\"_s + value.key;
}

// The values in the order above, each followed by a semicolon.
QString stored()
{
    QString text;
    for (const StoredValue &value : storedValues)
        text += ReadRegistryValue(HKEY_CURRENT_USER, keyPath(value), value.name).toString() + u';';
    return text;
}

void store(const QString &values)
{
    for (int i = 0; i < values.count(u';'); ++i) {
        const StoredValue &value = storedValues[i];
        CreateRegistryKey(HKEY_CURRENT_USER, keyPath(value));
        WriteRegistryValue(HKEY_CURRENT_USER, keyPath(value), value.name,
                           values.section(u';', i, i), REG_SZ);
    }
}

FileChooser templateChooser()
{
    return {u"Choose template file"_s,
            u"HTML Documents"_s,
            {u"*.htm"_s, u"*.html"_s},
            u"htm"_s,
            QCoreApplication::applicationDirPath()};
}

} // namespace

class tst_frmSettings : public QObject
{
    Q_OBJECT

    MockInteraction m_interaction;
    const ErrorBoundary m_boundary{m_interaction};
    const TemporaryHome m_home;
    std::unique_ptr<frmSettings> m_settings;

    void open(const QString &values)
    {
        store(values);
        m_settings = std::make_unique<frmSettings>(m_interaction, m_boundary);
        m_settings->Form_Load();
        m_settings->show();
    }
    template <class Control = QWidget>
    Control *control(const QString &name) const
    {
        return m_settings->findChild<Control *>(name);
    }
    void press(Qt::Key key) { QTest::keyClick(m_settings->windowHandle(), key); }
    void click(const QString &name) { QTest::mouseClick(control(name), Qt::LeftButton); }

private Q_SLOTS:
    void init() { QDir(m_home.config({})).removeRecursively(); }
    void cleanup()
    {
        m_settings.reset();
        m_interaction.checkAllCame();
    }

    void storesWhatItShows_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("afterOk");
        QTest::newRow("first start") << u""_s << u"0;0;;;;False;"_s;
        QTest::newRow("recipes by name") << u"0;7;a; ;"_s << u"0;1;a; ;;False;"_s;
        QTest::newRow("ingredients by name") << u"-1;x;;;;1;"_s << u"1;0;;;;True;"_s;
        QTest::newRow("style that makes no sense") << u"1;0;;;;x;"_s << u"1;0;;;;False;"_s;
    }

    void storesWhatItShows()
    {
        QFETCH(const QString, before);
        open(before);
        press(Qt::Key_Return);
        QTEST(stored(), "afterOk");
    }

    void choosesAndClearsATemplate_data()
    {
        QTest::addColumn<QString>("edit");
        QTest::addColumn<QString>("clearButton");
        QTest::addColumn<QString>("chosen"); // %1 is the chosen file
        QTest::addColumn<QString>("cleared");
        QTest::newRow("recipe categories")
            << u"txtCategoryTemplate"_s << u"cmdClearCategoryTemplate"_s << u"0;0;%1;b;c;False;"_s
            << u"0;0;;b;c;False;"_s;
        QTest::newRow("main menu") << u"txtMainMenuTemplate"_s << u"cmdClearMainMenuTemplate"_s
                                   << u"0;0;a;%1;c;False;"_s << u"0;0;a;;c;False;"_s;
        QTest::newRow("recipe") << u"txtRecipeTemplate"_s << u"cmdClearRecipeTemplate"_s
                                << u"0;0;a;b;%1;False;"_s << u"0;0;a;b;;False;"_s;
    }

    void choosesAndClearsATemplate()
    {
        QFETCH(const QString, edit);
        QFETCH(const QString, clearButton);
        QFETCH(const QString, chosen);
        const QString file = QCoreApplication::applicationFilePath();
        open(u"0;0;a;b;c;False;"_s);
        m_interaction.expect(templateChooser(), file);
        click(edit);
        m_interaction.expect(templateChooser(), QString()); // cancelled
        click(edit);
        click(u"cmdOk"_s);
        QCOMPARE(stored(), chosen.arg(file));
        open({});
        click(clearButton);
        click(u"cmdOk"_s);
        QTEST(stored(), "cleared");
    }

    void choosesATemplateByKey_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
        QTest::newRow("Space") << Qt::Key_Space;
    }

    void choosesATemplateByKey()
    {
        QFETCH(const Qt::Key, key);
        open({});
        m_interaction.expect(templateChooser(), u"/new.htm"_s);
        control(u"txtCategoryTemplate"_s)->setFocus();
        press(key);
        QCOMPARE(control<QLineEdit>(u"txtCategoryTemplate"_s)->text(), u"/new.htm"_s);
        QVERIFY(m_settings->isVisible()); // the key did not also press the default button
    }

    void marksAMissingTemplate()
    {
        const QString gone = u"/no/such/"_s + u"x"_s.repeated(200) + u"/menu.htm"_s;
        open(u"0;0;%1;%2;;False;"_s.arg(QCoreApplication::applicationFilePath(), gone));
        const auto *missing = control<QLineEdit>(u"txtMainMenuTemplate"_s);
        QCOMPARE(missing->cursorPosition(), gone.size()); // shows the end of the path
        auto *mark = missing->findChild<QToolButton *>();
        QVERIFY(mark->isVisible());
        QCOMPARE(QAccessible::queryAccessibleInterface(mark)->text(QAccessible::Name),
                 u"There is no such file."_s);
        QCOMPARE(missing->toolTip(), gone + u'\n' + missing->accessibleDescription());
        const auto *present = control<QLineEdit>(u"txtCategoryTemplate"_s);
        QVERIFY(!present->actions().constFirst()->isVisible());
        QCOMPARE(present->toolTip(), present->text());
    }

    void storesOnlyOnOk_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("after");
        QTest::newRow("Ok") << u"cmdOk"_s << u"0;1;;;;True;"_s;
        QTest::newRow("Cancel") << u"cmdCancel"_s << u"0;0;;;/old.htm;False;"_s;
        QTest::newRow("closed") << u""_s << u"0;0;;;/old.htm;False;"_s;
    }

    void storesOnlyOnOk()
    {
        QFETCH(const QString, button);
        open(u"0;0;;;/old.htm;False;"_s);
        click(u"cmdClearRecipeTemplate"_s);
        click(u"Image2"_s);
        control<QComboBox>(u"cmbRecipes"_s)->setCurrentIndex(1);
        QCOMPARE(stored(), u"0;0;;;/old.htm;False;"_s);
        button.isEmpty() ? void(m_settings->close()) : click(button);
        QTEST(stored(), "after");
    }

    void tabMovesThroughControlsWithNames()
    {
        open({});
        QStringList names;
        for (int i = 0; i < 10; ++i) {
            press(Qt::Key_Tab);
            auto *focused = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
            names += focused->text(QAccessible::Name);
        }
        QCOMPARE(names.removeAll({}) + names.removeDuplicates(), 0);
    }
};

QTEST_MAIN(tst_frmSettings)
#include "tst_frmsettings.moc"
