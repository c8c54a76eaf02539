#include "data/settings/FileTypeRegistration.h"
#include "data/settings/RegistryFunctions.h"
#include "data/settings/Settings.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"
#include "support/TemporaryHome.h"

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString sorting = u"Software\\Quillmoor\\Pantrywise\\Sorting"_s;
const QString html = u"Software\\Quillmoor\\Pantrywise\\HTML"_s;

void write(const QString &key, const QString &name, const QVariant &value)
{
    CreateRegistryKey(HKEY_CURRENT_USER, key);
    WriteRegistryValue(HKEY_CURRENT_USER, key, name, value,
                       value.typeId() == QMetaType::Int ? REG_DWORD : REG_SZ);
}

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

    const TemporaryHome m_home;

private Q_SLOTS:
    void init() { QDir(m_home.config({})).removeRecursively(); }

    void readsAnOrder_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("isByName");
        const auto row = [](const char *name, const QVariant &stored, bool isByName) {
            QTest::newRow(name) << stored << isByName;
        };
        row("negative zero", u"-0"_s, false);
        row("zero with decimals", u"0.0"_s, false);
        row("empty", u""_s, false);
        row("letter", u"1x"_s, false);
        row("hexadecimal", u"0x1"_s, false);
        row("exponent", u"1e1"_s, false);
        row("not a number", u"nan"_s, false);
        row("comma", u"1,5"_s, false);
        row("point without decimals", u"1."_s, false);
        row("true", u"True"_s, false);
        row("Arabic digit", u"\u0661"_s, false);
        row("one", u"1"_s, true);
        row("negative", u"-1"_s, true);
        row("sign and spaces", u" +1 "_s, true);
        row("decimals", u"0.5"_s, true);
        row("32-bit number", 1, true);
    }

    void readsAnOrder()
    {
        QFETCH(const QVariant, stored);
        QFETCH(const bool, isByName);
        write(sorting, u"Recipes"_s, stored);
        QCOMPARE(recipeOrderByClause(), isByName ? u" RecipeName"_s : u" RecipeType, RecipeName"_s);
        QCOMPARE(ingredientOrderByClause(), u" IngredientType, IngredientName"_s);
        write(sorting, u"Ingredients"_s, stored);
        QCOMPARE(ingredientOrderByClause(),
                 isByName ? u" IngredientName"_s : u" IngredientType, IngredientName"_s);
    }

    void readsAStyle_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<PageStyle>("style");
        QTest::newRow("missing") << QVariant() << PageStyle::PlainCard;
        QTest::newRow("False") << QVariant(u"False"_s) << PageStyle::PlainCard;
        QTest::newRow("True") << QVariant(u"True"_s) << PageStyle::Cookbook;
        QTest::newRow("number") << QVariant(u"1"_s) << PageStyle::Cookbook;
        QTest::newRow("other text") << QVariant(u"x"_s) << PageStyle::PlainCard;
    }

    void readsAStyle()
    {
        QFETCH(const QVariant, stored);
        QFETCH(const PageStyle, style);
        if (stored.isValid())
            write(html, u"HTMLStyle"_s, stored);
        QCOMPARE(Settings::load().pages.style, style);
    }

    void readsWhatItHasSaved()
    {
        const Settings saved{
            SortOrder::Name,
            SortOrder::CategoryThenName,
            {u"/menu.htm"_s, u"/category.htm "_s, u"/recipe.htm"_s, PageStyle::Cookbook}};
        saved.save();
        const Settings read = Settings::load();
        QCOMPARE(read.ingredientOrder, saved.ingredientOrder);
        QCOMPARE(read.recipeOrder, saved.recipeOrder);
        QCOMPARE(read.pages.mainMenuTemplate, saved.pages.mainMenuTemplate);
        QCOMPARE(read.pages.categoryTemplate, saved.pages.categoryTemplate);
        QCOMPARE(read.pages.recipeTemplate, saved.pages.recipeTemplate);
        QCOMPARE(read.pages.style, saved.pages.style);
    }

    void startsTheProgramForAFile_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::addColumn<PathStyle>("style");
        QTest::addColumn<QString>("command");
        QTest::newRow("Windows") << u"C:\\Apps"_s << PathStyle::Windows
                                 << u"\"C:\\Apps\\Pantrywise.exe\" %1"_s;
        QTest::newRow("Unix") << u"/opt/my apps"_s << PathStyle::Unix
                              << u"\"/opt/my apps/Pantrywise\" %1"_s;
    }

    void startsTheProgramForAFile()
    {
        QFETCH(const QString, directory);
        QFETCH(const PathStyle, style);
        const auto entries = fileTypeEntries(programPath(directory, u"Pantrywise"_s, style));
        QTEST(entries.back().defaultValue, "command");
    }
};

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
