#include "RegistryFunctions.h"
#include "SettingsKeys.h"
#include "SortOrder.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class TestRegistryFunctions : public QObject
{
    Q_OBJECT

    const TemporaryHome home;
    const QString sorting = u"Software\\Quillmoor\\Pantrywise\\Sorting"_s;

private Q_SLOTS:
    void init() { QDir(home.config({})).removeRecursively(); }
    void cleanup();
    void keepsWhatIsWritten();
    void readsNoValueWhereThereIsNone();
    void fetchLeavesTheValueItCannotRead();
    void choosesTheOrder();
};

// The lowest free handle is given next, so 1 means that every routine closed its key.
void TestRegistryFunctions::cleanup()
{
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, u"last"_s, 0, key), ERROR_SUCCESS);
    QCOMPARE(key, HKEY(1));
    RegCloseKey(key);
}

void TestRegistryFunctions::keepsWhatIsWritten()
{
    struct Row {
        QVariant written;
        quint32 type;
        QVariant read;
    };
    QList<Row> table = {
        {7, REG_SZ, u"7"_s},      {true, REG_SZ, u"True"_s},  {7, 3, {}},
        {u"-7"_s, REG_DWORD, -7}, {u"-7"_s, REG_SZ, u"-7"_s}, {INT_MIN, REG_DWORD, INT_MIN},
    };
    const QString texts =
        u"|1  |  1|\t|\"a\"|it's|%20|C:\\new\\x41\\|a,b; c=d|[General]|@@|@Invalid()|"
        "@ByteArray(a)|味噌汁😀|a\r\nb\nc\rd\n|\x1f\x7f\u0085\u2028\u00a0|\ufeffa|"
        "\ufffd\uffff|dword:1|hex(1):00|text:a|true|é\0001|\0"_s;
    for (const QString &text : texts.split(u'|') + QStringList(QString(3000, u'\u00fc')))
        table += {text, REG_SZ, text};
    CreateRegistryKey(HKEY_CURRENT_USER, sorting);
    for (qsizetype i = 0; i < table.size(); ++i)
        WriteRegistryValue(HKEY_CURRENT_USER, sorting, i == 0 ? QString() : QString::number(i),
                           table[i].written, table[i].type);
    // Settings remember what they wrote; a file that has grown they read again.
    QFile file(home.config(u"Quillmoor/Pantrywise.ini"_s));
    QVERIFY(file.open(QIODevice::Append) && file.write("\n") == 1);
    file.close();
    for (qsizetype i = 0; i < table.size(); ++i) {
        const QVariant value =
            ReadRegistryValue(HKEY_CURRENT_USER, sorting, i == 0 ? QString() : QString::number(i));
        QCOMPARE(value, table[i].read);
        QCOMPARE(value.typeId(), table[i].read.typeId());
    }
}

void TestRegistryFunctions::readsNoValueWhereThereIsNone()
{
    const auto read = [this](HKEY root) { return ReadRegistryValue(root, sorting, u"v"_s); };
    WriteRegistryValue(HKEY_CURRENT_USER, sorting, u"v"_s, u"1"_s, REG_SZ); // makes no key
    QVERIFY(!read(HKEY_CURRENT_USER).isValid());
    CreateRegistryKey(HKEY_CURRENT_USER, sorting);
    QVERIFY(!read(HKEY_CURRENT_USER).isValid());
    WriteRegistryValue(HKEY_CURRENT_USER, sorting, u"v"_s, u"1"_s, REG_SZ);
    CreateRegistryKey(HKEY_CURRENT_USER, sorting); // makes nothing anew
    QCOMPARE(read(HKEY_CURRENT_USER), QVariant(u"1"_s));
    QVERIFY(!read(HKEY_CLASSES_ROOT).isValid());
}

void TestRegistryFunctions::fetchLeavesTheValueItCannotRead()
{
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, sorting, 0x3F, key), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"bytes"_s, 3, "x"), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"long"_s, REG_DWORD, "12345"), ERROR_SUCCESS);
    QVariant value(u"before"_s);
    QCOMPARE(FetchKeyValue(key, u"none"_s, value), ERROR_FILE_NOT_FOUND);
    QCOMPARE(FetchKeyValue(key, u"bytes"_s, value), -1);
    QCOMPARE(FetchKeyValue(key, u"long"_s, value), ERROR_MORE_DATA);
    QCOMPARE(value, QVariant(u"before"_s));
    RegCloseKey(key);
    QCOMPARE(StoreKeyValue(key, u"none"_s, REG_SZ, u"x"_s), ERROR_INVALID_HANDLE);
}

void TestRegistryFunctions::choosesTheOrder()
{
    const auto choose = [this](const QString &name, const QVariant &stored) {
        const quint32 type = stored.typeId() == QMetaType::Int ? REG_DWORD : REG_SZ;
        WriteRegistryValue(HKEY_CURRENT_USER, sorting, name, stored, type);
    };
    QCOMPARE(recipeOrderSuffix(), u" RecipeType, RecipeName"_s);
    CreateRegistryKey(HKEY_CURRENT_USER, sorting);
    for (const QString &byType :
         u"0|-0|0.0| 0 ||1x|0x1|1e1|nan|1,5|1.|True|--1|\u0661"_s.split(u'|')) {
        choose(u"Ingredients"_s, byType);
        QCOMPARE(ingredientOrderSuffix(), u" IngredientType, IngredientName"_s);
    }
    for (const QVariant &byName :
         QVariantList{u"-1"_s, u" +1 "_s, u"0.5"_s, u"9"_s.repeated(20), 1}) {
        choose(u"Ingredients"_s, byName);
        QCOMPARE(ingredientOrderSuffix(), u" IngredientName"_s);
    }
    QCOMPARE(recipeOrderSuffix(), u" RecipeType, RecipeName"_s);
    choose(u"Recipes"_s, u"1"_s);
    QCOMPARE(recipeOrderSuffix(), u" RecipeName"_s);
}

QTEST_GUILESS_MAIN(TestRegistryFunctions)
#include "tst_registryfunctions.moc"
