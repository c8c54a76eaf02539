#include "RegistryFunctions.h"
#include "SettingsKeys.h"
#include "SortOrder.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

QString storeFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/Quillmoor/Pantrywise.ini"_L1;
}

// Settings remember what they wrote; a file that has grown they read again.
void touchStore()
{
    QFile file(storeFile());
    QVERIFY(file.open(QIODevice::Append) && file.write("\n") == 1);
}

QString sorting()
{
    return u"Software\\Quillmoor\\Pantrywise\\Sorting"_s;
}

} // namespace

class TestRegistryFunctions : public QObject
{
    Q_OBJECT

    const TemporaryHome home;

private Q_SLOTS:
    void init();
    void cleanup();
    void keepsEveryText_data();
    void keepsEveryText();
    void readsNoValueWhereThereIsNone();
    void convertsByValueType();
    void fetchLeavesTheValueItCannotRead();
    void choosesTheOrder_data();
    void choosesTheOrder();
};

void TestRegistryFunctions::init()
{
    QDir(QFileInfo(storeFile()).path()).removeRecursively();
}

// The lowest free handle is given next, so 1 means that every routine closed its key.
void TestRegistryFunctions::cleanup()
{
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, u"last"_s, 0, key), ERROR_SUCCESS);
    QCOMPARE(key, HKEY(1));
    RegCloseKey(key);
}

void TestRegistryFunctions::keepsEveryText_data()
{
    QTest::addColumn<QString>("text");
    const QChar zero = QChar::Null;
    const QStringList texts = {
        u""_s,
        u" "_s,
        u"1  "_s,
        u"  1"_s,
        u"\t"_s,
        u"\"a\""_s,
        u"\""_s,
        u"it's"_s,
        u"50%"_s,
        u"%20"_s,
        u"%1"_s,
        u"C:\\new\\x41\\"_s,
        u"\\\\host\\a"_s,
        u"a,b, c"_s,
        u","_s,
        u"a;b=c"_s,
        u"[General]"_s,
        u"@"_s,
        u"@@"_s,
        u"@Invalid()"_s,
        u"@ByteArray(a)"_s,
        u"@Variant(\\0)"_s,
        u"Crème"_s,
        u"Борщ"_s,
        u"味噌汁😀"_s,
        u"a\r\nb\nc\rd\n"_s,
        u"\x1f\x7f\u0085\u2028\u00a0"_s,
        u"\ufeffa"_s,
        u"\\\ufeff"_s,
        u"\ufffd\uffff"_s,
        u"dword:1"_s,
        u"dword: 1"_s,
        u"dword:x"_s,
        u"hex(1):00"_s,
        u"text:a"_s,
        u"true"_s,
        u"1"_s + zero,
        u"é"_s + zero + u"1"_s,
        QString(zero),
        QString(3000, u'\u00fc'),
    };
    for (const QString &text : texts)
        QTest::newRow(qUtf8Printable(text.left(30))) << text;
}

void TestRegistryFunctions::keepsEveryText()
{
    QFETCH(QString, text);
    CreateRegistryKey(HKEY_CURRENT_USER, htmlKey());
    for (const QString &name : {u"CategoryTemplate"_s, u""_s})
        WriteRegistryValue(HKEY_CURRENT_USER, htmlKey(), name, text, REG_SZ);
    touchStore();
    for (const QString &name : {u"CategoryTemplate"_s, u""_s}) {
        const QVariant read = ReadRegistryValue(HKEY_CURRENT_USER, htmlKey(), name);
        QCOMPARE(read.typeId(), int(QMetaType::QString));
        QCOMPARE(read.toString(), text);
    }
}

void TestRegistryFunctions::readsNoValueWhereThereIsNone()
{
    QVERIFY(!ReadRegistryValue(HKEY_CURRENT_USER, sorting(), u"Recipes"_s).isValid());
    WriteRegistryValue(HKEY_CURRENT_USER, sorting(), u"Recipes"_s, u"1"_s, REG_SZ);
    QVERIFY(!QFileInfo::exists(storeFile())); // writing makes no key
    CreateRegistryKey(HKEY_CURRENT_USER, sorting());
    QVERIFY(!ReadRegistryValue(HKEY_CURRENT_USER, sorting(), u"Recipes"_s).isValid());
    WriteRegistryValue(HKEY_CURRENT_USER, sorting(), u"Recipes"_s, u"1"_s, REG_SZ);
    CreateRegistryKey(HKEY_CURRENT_USER, sorting()); // makes nothing anew
    QCOMPARE(ReadRegistryValue(HKEY_CURRENT_USER, sorting(), u"Recipes"_s), QVariant(u"1"_s));
    QVERIFY(!ReadRegistryValue(HKEY_CLASSES_ROOT, sorting(), u"Recipes"_s).isValid());
}

void TestRegistryFunctions::convertsByValueType()
{
    CreateRegistryKey(HKEY_CURRENT_USER, sorting());
    const auto through = [](const QVariant &value, quint32 type) {
        WriteRegistryValue(HKEY_CURRENT_USER, sorting(), u"v"_s, value, type);
        touchStore();
        return ReadRegistryValue(HKEY_CURRENT_USER, sorting(), u"v"_s);
    };
    QCOMPARE(through(7, REG_SZ), QVariant(u"7"_s));
    QCOMPARE(through(true, REG_SZ), QVariant(u"True"_s));
    QCOMPARE(through(false, REG_SZ), QVariant(u"False"_s));
    QCOMPARE(through(7, 3), QVariant(u"False"_s)); // stores nothing
    QCOMPARE(through(u"-7"_s, REG_DWORD), QVariant(-7));
    QCOMPARE(through(std::numeric_limits<int>::min(), REG_DWORD),
             QVariant(std::numeric_limits<int>::min()));
    QCOMPARE(through(u"-7"_s, REG_SZ), QVariant(u"-7"_s));
}

void TestRegistryFunctions::fetchLeavesTheValueItCannotRead()
{
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, sorting(), 0x3F, key), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"bytes"_s, 3, "x"), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"long"_s, REG_DWORD, "12345"), ERROR_SUCCESS);
    QVariant value(u"before"_s);
    QCOMPARE(FetchKeyValue(key, u"none"_s, value), ERROR_FILE_NOT_FOUND);
    QCOMPARE(FetchKeyValue(key, u"bytes"_s, value), -1);
    QCOMPARE(FetchKeyValue(key, u"long"_s, value), ERROR_MORE_DATA);
    QCOMPARE(StoreKeyValue(key, u"none"_s, 3, u"x"_s), ERROR_SUCCESS);
    QCOMPARE(FetchKeyValue(key, u"none"_s, value), ERROR_FILE_NOT_FOUND);
    QCOMPARE(value, QVariant(u"before"_s));
    QCOMPARE(StoreKeyValue(key, u"none"_s, REG_SZ, u"x"_s), ERROR_SUCCESS);
    RegCloseKey(key);
    QCOMPARE(StoreKeyValue(key, u"none"_s, REG_SZ, u"x"_s), ERROR_INVALID_HANDLE);
}

void TestRegistryFunctions::choosesTheOrder_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("byName");
    QTest::newRow("absent") << QVariant() << false;
    for (const char *text : {"0", "00", "-0", "0.0", " 0 ", "", " ", "x", "1x", "0x1", "1e1", "nan",
                             "inf", "1,5", "1.", "Name", "True", "--1", "\xd9\xa1"})
        QTest::newRow(text) << QVariant(QString::fromUtf8(text)) << false;
    for (const char *text : {"1", "2", "-1", "+1", " 1 ", "0.5", "99999999999999999999"})
        QTest::newRow(text) << QVariant(QString::fromUtf8(text)) << true;
    QTest::newRow("number 0") << QVariant(0) << false;
    QTest::newRow("number 1") << QVariant(1) << true;
}

void TestRegistryFunctions::choosesTheOrder()
{
    QFETCH(QVariant, stored);
    QFETCH(bool, byName);
    const quint32 type = stored.typeId() == QMetaType::Int ? REG_DWORD : REG_SZ;
    const auto choose = [&](const QString &valueName) {
        if (!stored.isValid())
            return;
        CreateRegistryKey(HKEY_CURRENT_USER, sorting());
        WriteRegistryValue(HKEY_CURRENT_USER, sorting(), valueName, stored, type);
    };
    choose(u"Recipes"_s);
    QCOMPARE(recipeOrderSuffix(), byName ? u" RecipeName"_s : u" RecipeType, RecipeName"_s);
    QCOMPARE(ingredientOrderSuffix(), u" IngredientType, IngredientName"_s);
    choose(u"Ingredients"_s);
    QCOMPARE(ingredientOrderSuffix(),
             byName ? u" IngredientName"_s : u" IngredientType, IngredientName"_s);
    QCOMPARE(int(ingredientSortOrder()), int(byName));
}

QTEST_GUILESS_MAIN(TestRegistryFunctions)
#include "tst_registryfunctions.moc"
