#include "data/settings/RegistryFunctions.h"
#include "frame/ErrorBoundary.h"
#include "settings/frmSettings.h"
#include "support/Rows.h"
#include "support/TemporaryHome.h"
#include "support/WindowFixture.h"

#include <QAccessible>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QToolButton>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

// The keys and the names of the stored values.
const std::pair<QString, QString> storedValues[] = {
    {u"Sorting"_s, u"Ingredients"_s},   {u"Sorting"_s, u"Recipes"_s},
    {u"HTML"_s, u"CategoryTemplate"_s}, {u"HTML"_s, u"MainMenuTemplate"_s},
    {u"HTML"_s, u"RecipeTemplate"_s},   {u"HTML"_s, u"HTMLStyle"_s},
};
const QString keyPath = u"Software\\Quillmoor\\Pantrywise\\"_s;

// The values in the order above, each followed by a semicolon.
QString stored()
{
    QString text;
    for (const auto &[key, name] : storedValues)
        text += ReadRegistryValue(HKEY_CURRENT_USER, keyPath + key, name).toString() + u';';
    return text;
}

void store(const QString &values)
{
    for (int i = 0; i < values.count(u';'); ++i) {
        const auto &[key, name] = storedValues[i];
        CreateRegistryKey(HKEY_CURRENT_USER, keyPath + key);
        WriteRegistryValue(HKEY_CURRENT_USER, keyPath + key, name, values.section(u';', i, i),
                           REG_SZ);
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
    void press(Qt::Key key) { QTest::keyClick(m_settings->windowHandle(), key); }
    void click(const QString &name)
    {
        QTest::mouseClick(&control<QWidget>(*m_settings, name), Qt::LeftButton);
    }

private Q_SLOTS:
    void init() { QDir(m_home.config({})).removeRecursively(); }
    void cleanup()
    {
        m_settings.reset();
        m_interaction.checkAllCame();
    }

    void storesWhatItShows_data()
    {
        addRows<QString, QString>(
            {{"first start", u""_s, u"0;0;;;;False;"_s},
             {"recipes by name", u"0;7;a; ;;True;"_s, u"0;1;a; ;;True;"_s},
             {"ingredients by name", u"-1;x;;;;1;"_s, u"1;0;;;;True;"_s},
             {"style that makes no sense", u"1;0;;;;x;"_s, u"1;0;;;;False;"_s}});
    }

    void storesWhatItShows()
    {
        const auto [before, afterOk] = fetchRow<QString, QString>();
        open(before);
        press(Qt::Key_Return);
        QCOMPARE(stored(), afterOk);
    }

    void choosesAndClearsATemplate_data()
    {
        // Whose template it is, and what is stored after choosing file %1 and after clearing.
        addRows<QString, QString, QString>(
            {{"recipe categories", u"Category"_s, u"0;0;%1;b;c;False;"_s, u"0;0;;b;c;False;"_s},
             {"main menu", u"MainMenu"_s, u"0;0;a;%1;c;False;"_s, u"0;0;a;;c;False;"_s},
             {"recipe", u"Recipe"_s, u"0;0;a;b;%1;False;"_s, u"0;0;a;b;;False;"_s}});
    }

    void choosesAndClearsATemplate()
    {
        const auto [page, chosen, cleared] = fetchRow<QString, QString, QString>();
        const QString edit = u"txt%1Template"_s.arg(page);
        const QString file = QCoreApplication::applicationFilePath();
        open(u"0;0;a;b;c;False;"_s);
        m_interaction.expect(templateChooser(), file);
        click(edit);
        m_interaction.expect(templateChooser(), QString()); // cancelled
        click(edit);
        click(u"cmdOk"_s);
        QCOMPARE(stored(), chosen.arg(file));
        open({});
        click(u"cmdClear%1Template"_s.arg(page));
        click(u"cmdOk"_s);
        QCOMPARE(stored(), cleared);
    }

    void choosesATemplateByKey_data()
    {
        addRows<Qt::Key>(
            {{"Return", Qt::Key_Return}, {"Enter", Qt::Key_Enter}, {"Space", Qt::Key_Space}});
    }

    void choosesATemplateByKey()
    {
        const auto [key] = fetchRow<Qt::Key>();
        open({});
        m_interaction.expect(templateChooser(), u"/new.htm"_s);
        control<QLineEdit>(*m_settings, u"txtCategoryTemplate"_s).setFocus();
        press(key);
        QCOMPARE(control<QLineEdit>(*m_settings, u"txtCategoryTemplate"_s).text(), u"/new.htm"_s);
        QVERIFY(m_settings->isVisible()); // the key did not also press the default button
    }

    void marksAMissingTemplate()
    {
        const QString gone = u"/no/such/"_s + u"x"_s.repeated(200) + u"/menu.htm"_s;
        open(u"0;0;%1;%2;;False;"_s.arg(QCoreApplication::applicationFilePath(), gone));
        const auto &missing = control<QLineEdit>(*m_settings, u"txtMainMenuTemplate"_s);
        QCOMPARE(missing.cursorPosition(), gone.size()); // shows the end of the path
        auto *mark = missing.findChild<QToolButton *>();
        QVERIFY(mark->isVisible());
        QCOMPARE(QAccessible::queryAccessibleInterface(mark)->text(QAccessible::Name),
                 u"There is no such file."_s);
        QCOMPARE(missing.toolTip(), gone + u'\n' + missing.accessibleDescription());
        const auto &present = control<QLineEdit>(*m_settings, u"txtCategoryTemplate"_s);
        QVERIFY(!present.actions().constFirst()->isVisible());
        QCOMPARE(present.toolTip(), present.text());
    }

    void storesOnlyOnOk_data()
    {
        addRows<QString, QString>({{"Ok", u"cmdOk"_s, u"0;1;;;;True;"_s},
                                   {"Cancel", u"cmdCancel"_s, u"0;0;;;/old.htm;False;"_s},
                                   {"closed", u""_s, u"0;0;;;/old.htm;False;"_s}});
    }

    void storesOnlyOnOk()
    {
        const auto [button, after] = fetchRow<QString, QString>();
        open(u"0;0;;;/old.htm;False;"_s);
        click(u"cmdClearRecipeTemplate"_s);
        click(u"Image2"_s);
        control<QComboBox>(*m_settings, u"cmbRecipes"_s).setCurrentIndex(1);
        QCOMPARE(stored(), u"0;0;;;/old.htm;False;"_s);
        button.isEmpty() ? void(m_settings->close()) : click(button);
        QCOMPARE(stored(), after);
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
