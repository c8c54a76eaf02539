#include "data/settings/RegistryFunctions.h"
#include "data/settings/SettingsKeys.h"
#include "frame/ErrorBoundary.h"
#include "settings/frmSettings.h"
#include "support/MockInteraction.h"
#include "support/TemporaryHome.h"

#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class tst_frmSettings : public QObject
{
    Q_OBJECT

    MockInteraction m_interaction;
    const ErrorBoundary m_boundary{m_interaction};
    const TemporaryHome m_home;
    std::unique_ptr<frmSettings> m_settings;

    const QList<std::pair<QString, QString>> m_places = {
        {sortingKey(), u"Ingredients"_s},   {sortingKey(), u"Recipes"_s},
        {htmlKey(), u"CategoryTemplate"_s}, {htmlKey(), u"MainMenuTemplate"_s},
        {htmlKey(), u"RecipeTemplate"_s},   {htmlKey(), u"HTMLStyle"_s}};

    // The values in the order above, each with a semicolon behind it.
    QString stored() const
    {
        QString text;
        for (const auto &[key, value] : m_places)
            text += ReadRegistryValue(HKEY_CURRENT_USER, key, value).toString() + u';';
        return text;
    }
    void open(const QString &values)
    {
        for (int i = 0; i < values.count(u';'); ++i) {
            const auto &[key, value] = m_places[i];
            CreateRegistryKey(HKEY_CURRENT_USER, key);
            WriteRegistryValue(HKEY_CURRENT_USER, key, value, values.section(u';', i, i), REG_SZ);
        }
        m_settings = std::make_unique<frmSettings>(m_interaction, m_boundary);
        m_settings->Form_Load();
        m_settings->show();
    }
    template <class Control = QWidget>
    Control *control(const char *name) const
    {
        return m_settings->findChild<Control *>(QLatin1StringView(name));
    }
    void press(Qt::Key key) { QTest::keyClick(m_settings->windowHandle(), key); }
    void click(const char *name) { QTest::mouseClick(control(name), Qt::LeftButton); }

private Q_SLOTS:
    void whatIsStoredIsShownAndStoredAgain()
    {
        const std::pair<QString, QString> rows[] = {
            // stored, stored after OK
            {u""_s, u"0;0;;;;False;"_s}, // the first start
            {u"0;7;a; ;"_s, u"0;1;a; ;;False;"_s},
            {u"-1;x;;;;1;"_s, u"1;0;;;;True;"_s},
            {u"1;0;;;;x;"_s, u"1;0;;;;False;"_s},
        };
        for (const auto &[before, after] : rows) {
            open(before);
            press(Qt::Key_Return);
            QCOMPARE(stored(), after);
        }
    }

    void changesAreStoredOnOkAlone()
    {
        const QString gone = u"/no/such/"_s + u"x"_s.repeated(200) + u"/menu.htm"_s;
        const QString before = u"0;0;;%1;/old.htm;False;"_s.arg(gone);
        const QString chosen = QCoreApplication::applicationFilePath();
        const FileChooser chooser{u"Choose template file"_s,
                                  u"HTML Documents"_s,
                                  {u"*.htm"_s, u"*.html"_s},
                                  u"htm"_s,
                                  QCoreApplication::applicationDirPath()};
        for (const char *end : {"", "cmdCancel", "cmdOk"}) {
            open(before);
            const auto *box = control<QLineEdit>("txtMainMenuTemplate");
            QCOMPARE(box->cursorPosition(), gone.size()); // so that the end is seen
            QCOMPARE(box->toolTip(), gone + u'\n' + box->accessibleDescription());
            QVERIFY(box->actions().constFirst()->isVisible()); // the mark
            m_interaction.expect(chooser, chosen);
            click("txtCategoryTemplate");
            for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
                m_interaction.expect(chooser, QString()); // cancelled
                press(key);
            }
            QCOMPARE(control<QLineEdit>("txtCategoryTemplate")->toolTip(), chosen);
            click("cmdClearRecipeTemplate");
            click("Image2");
            control<QComboBox>("cmbRecipes")->setCurrentIndex(1);
            QCOMPARE(stored(), before);
            *end ? click(end) : void(m_settings->close());
        }
        QCOMPARE(stored(), u"0;1;%1;%2;;True;"_s.arg(chosen, gone));
    }

    void tabGoesThroughControlsWithNames()
    {
        open({});
        QStringList names;
        for (int i = 0; i < 10; ++i) {
            press(Qt::Key_Tab);
            auto *face = QAccessible::queryAccessibleInterface(QApplication::focusWidget());
            names += face->text(QAccessible::Name);
        }
        QCOMPARE(names.removeAll({}) + names.removeDuplicates(), 0);
    }
};

QTEST_MAIN(tst_frmSettings)
#include "tst_frmsettings.moc"
