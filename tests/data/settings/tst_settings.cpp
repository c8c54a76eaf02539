#include "data/settings/FileTypeRegistration.h"
#include "data/settings/RegistryFunctions.h"
#include "data/settings/Settings.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"
#include "support/Rows.h"
#include "support/TemporaryHome.h"

#include <QProcess>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString key = u"Software\\Quillmoor\\Pantrywise\\Sorting"_s;

QString storeFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/Quillmoor/Pantrywise.ini"_L1;
}

void write(const QString &name, const QVariant &value, const QString &path = key)
{
    CreateRegistryKey(HKEY_CURRENT_USER, path);
    WriteRegistryValue(HKEY_CURRENT_USER, path, name, value,
                       value.typeId() == QMetaType::Int ? REG_DWORD : REG_SZ);
}

QVariant read(const QString &name, const QString &path = key)
{
    return ReadRegistryValue(HKEY_CURRENT_USER, path, name);
}

// Names and values.
const QList<std::tuple<QByteArray, QString, QVariant>> oddValues{
    {"number, default value", u""_s, 5},
    {"byte order mark, name of the default value", u"_default"_s, u"\ufeffa"_s},
    {"smallest number, name of the mark of a key", u"_key"_s, INT_MIN},
    {"text that looks like bytes, underscores", u"__key"_s, u"hex(3):00"_s},
    {"text that looks like a number, slash", u"a/b"_s, u"dword:5"_s},
    {"text that looks like a marked text, backslash", u"a\\b"_s, u"text:"_s},
    {"zero character, encoded slash", u"a%2Fb"_s, u"é\0"_s},
    {"empty text, special characters", u"a=b;[c]#"_s, u""_s},
    {"control characters, spaces", u" a "_s, u"a\r\n\ufeffb\nc\rd\n\x1f\x7f\u0085\u2028 "_s},
    {"long text, quotes and comma", u"\"a\", b\n"_s, QString(3000, u'\u00fc')},
    {"spaces and escapes, name of a group", u"[General]"_s, u"  C:\\new\\x41\\ \"a\" %20;"_s},
    {"notation of QSettings, letters outside Latin", u"日😀"_s, u"@Invalid()"_s},
};

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QDir(QFileInfo(storeFile()).path()).removeRecursively(); }

    // A new key gets the lowest free handle, so that 1 means that every routine has closed its key.
    void cleanup()
    {
        HKEY last = 0;
        RegCreateKeyExA(HKEY_CURRENT_USER, u"last"_s, 0, last);
        RegCloseKey(last);
        QVERIFY(last <= 1);
    }

    void keepsValuesApart_data() { addRows(oddValues); }

    // All the values are stored, in keys whose names are also those of values.
    void keepsValuesApart()
    {
        const auto [name, value] = fetchRow<QString, QVariant>();
        const QStringList keys = {u"odd"_s, u"odd\\_default"_s, u"odd\\_key"_s};
        for (const QString &path : keys) {
            write(u"key"_s, path, path);
            for (const auto &[row, otherName, otherValue] : oddValues)
                write(otherName, otherValue, path);
        }
        setBytes(storeFile(), bytesOf(storeFile()) + "\n"); // makes QSettings read it again
        for (const QString &path : keys) {
            QCOMPARE(read(u"key"_s, path), path);
            QCOMPARE(read(name, path), value);
            QCOMPARE(read(name, path).typeId(), value.typeId());
        }
    }

    void convertsToTheType_data()
    {
        addRows<QVariant, quint32, QVariant>({{"number as text", 7, REG_SZ, u"7"_s},
                                              {"yes as text", true, REG_SZ, u"True"_s},
                                              {"no as text", false, REG_SZ, u"False"_s},
                                              {"text as number", u"-7"_s, REG_DWORD, -7},
                                              {"other type", 7, 3, {}}});
    }

    void convertsToTheType()
    {
        const auto [written, type, expected] = fetchRow<QVariant, quint32, QVariant>();
        CreateRegistryKey(HKEY_CURRENT_USER, key);
        WriteRegistryValue(HKEY_CURRENT_USER, key, u"v"_s, written, type);
        QCOMPARE(read(u"v"_s), expected);
        QVERIFY(!ReadRegistryValue(HKEY_CLASSES_ROOT, key, u"v"_s).isValid());
    }

    void writesOnlyIntoAnExistingKey()
    {
        WriteRegistryValue(HKEY_CURRENT_USER, key, u"v"_s, u"x"_s, REG_SZ);
        CreateRegistryKey(HKEY_CURRENT_USER, key);
        QVERIFY(!read(u"v"_s).isValid());
    }

    void returnsThePlatformsStatuses()
    {
        HKEY writer = 0;
        HKEY reader = 0;
        QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, key, 1, writer), ERROR_FILE_NOT_FOUND);
        RegCreateKeyExA(HKEY_CURRENT_USER, key, KEY_SET_VALUE, writer);
        RegSetValueExA(writer, u"bytes"_s, 3, "x");
        RegSetValueExA(writer, u"long"_s, REG_DWORD, "12345");
        RegOpenKeyExA(writer, {}, KEY_QUERY_VALUE, reader);
        QVariant value(u"before"_s);
        QCOMPARE(FetchKeyValue(reader, u"none"_s, value), ERROR_FILE_NOT_FOUND);
        QCOMPARE(FetchKeyValue(reader, u"bytes"_s, value), -1);
        QCOMPARE(FetchKeyValue(reader, u"long"_s, value), ERROR_MORE_DATA);
        QCOMPARE(FetchKeyValue(writer, u"long"_s, value), ERROR_ACCESS_DENIED);
        QCOMPARE(value, QVariant(u"before"_s));
        RegCloseKey(reader);
        RegCloseKey(writer);
        QCOMPARE(StoreKeyValue(writer, u"none"_s, REG_SZ, u"x"_s), ERROR_INVALID_HANDLE);
    }

    void writesAFileThatPeopleCanRead()
    {
        CreateRegistryKey(HKEY_CLASSES_ROOT, u"empty"_s);
        write(u"Recipes"_s, u"1"_s);
        write({}, 5);
        QCOMPARE(bytesOf(storeFile()),
                 "[HKEY_CLASSES_ROOT]\nempty\\_key=\n\n[HKEY_CURRENT_USER]\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes=1\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\_default=dword:5\n");
    }

    void readsAFileWrittenByHand()
    {
        setBytes(storeFile(),
                 "; mine\r\n[HKEY_CURRENT_USER]\r\n\r\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes = 0\r\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\List=salt, pepper\r\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\_default=dword:-2\r\n");
        write(u"Recipes"_s, u"1"_s);
        QCOMPARE(read(u"List"_s), u"salt, pepper"_s);
        QCOMPARE(read({}), -2);
    }

    // Of two changes within the same few milliseconds one may be lost, but never the file.
    void isNotTornByTwoPrograms()
    {
        write(u"First"_s, u"kept"_s);
        write(u"Long"_s, QString(20'000, u'x')); // makes writing slow enough to be observed
        QProcess other;
        other.start(QCoreApplication::applicationFilePath(), {u"--write"_s});
        constexpr int writes = 20; // more would keep the other program waiting
        for (int i = 1; !other.waitForFinished(0); ++i) {
            if (i <= writes)
                write(u"Recipes"_s, QString::number(i));
            for (int look = 0; look < 20; ++look) {
                const QByteArray bytes = bytesOf(storeFile());
                QVERIFY(bytes.contains("First=kept") && bytes.endsWith('\n'));
            }
        }
        QCOMPARE(other.exitCode(), 0);
        QVERIFY(read(u"Recipes"_s).isValid());
        QCOMPARE(read(u"Ingredients"_s).toString().size(), 99);
        const QStringList files = QDir(QFileInfo(storeFile()).path()).entryList(QDir::Files);
        QCOMPARE(files, QStringList(u"Pantrywise.ini"_s));
    }

    void keepsADamagedFileAside_data()
    {
        const QByteArray sound =
            "[HKEY_CURRENT_USER]\nSoftware\\Quillmoor\\Pantrywise\\Sorting\\A=1\n";
        addRows<QByteArray>({{"cut off", sound.chopped(5)},
                             {"zeros at the end", sound + QByteArray(30, '\0')},
                             {"open heading", "[HKEY_CURRENT_USER\nA=1\n"},
                             {"not UTF-8", sound + "B=caf\xe9\n"}});
    }

    void keepsADamagedFileAside()
    {
        const auto [damaged] = fetchRow<QByteArray>();
        for (const QString &aside : {u".damaged"_s, u".damaged-2"_s}) {
            setBytes(storeFile(), damaged);
            write(u"Recipes"_s, u"1"_s);
            QCOMPARE(read(u"Recipes"_s), u"1"_s);
            QVERIFY(!read(u"A"_s).isValid());
            QCOMPARE(bytesOf(storeFile() + aside), damaged);
        }
    }

    // A file in the place of the folder stops even the administrator.
    void staysSilentIfItCannotWrite()
    {
        const QString folder = QFileInfo(storeFile()).path();
        setBytes(folder, "a file");
        HKEY unset = 0;
        QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, key, 1, unset), ERROR_ACCESS_DENIED);
        QCOMPARE(unset, 0U);
        QCOMPARE(bytesOf(folder), "a file");
        QFile::remove(folder);
    }

    void readsAnOrder_data()
    {
        addRows<QVariant, bool>({{"negative zero", u"-0"_s, false},
                                 {"zero with decimals", u"0.0"_s, false},
                                 {"empty", u""_s, false},
                                 {"hexadecimal", u"0x1"_s, false},
                                 {"exponent", u"1e1"_s, false},
                                 {"not a number", u"nan"_s, false},
                                 {"point without decimals", u"1."_s, false},
                                 {"Arabic digit", u"\u0661"_s, false},
                                 {"one", u"1"_s, true},
                                 {"negative", u"-1"_s, true},
                                 {"sign and spaces", u" +1 "_s, true},
                                 {"decimals", u"0.5"_s, true},
                                 {"32-bit number", 1, true}});
    }

    void readsAnOrder()
    {
        const auto [stored, isByName] = fetchRow<QVariant, bool>();
        write(u"Recipes"_s, stored);
        QCOMPARE(recipeOrderByClause(), isByName ? u" RecipeName"_s : u" RecipeType, RecipeName"_s);
        QCOMPARE(ingredientOrderByClause(), u" IngredientType, IngredientName"_s);
        write(u"Ingredients"_s, stored);
        QCOMPARE(ingredientOrderByClause(),
                 isByName ? u" IngredientName"_s : u" IngredientType, IngredientName"_s);
    }

    void startsTheProgramForAFile_data()
    {
        addRows<QString, PathStyle, QString>(
            {{"Windows", u"C:\\Apps"_s, PathStyle::Windows, u"\"C:\\Apps\\Pantrywise.exe\" %1"_s},
             {"Unix", u"/opt/my apps"_s, PathStyle::Unix, u"\"/opt/my apps/Pantrywise\" %1"_s}});
    }

    void startsTheProgramForAFile()
    {
        const auto [directory, style, command] = fetchRow<QString, PathStyle, QString>();
        const auto entries = fileTypeEntries(programPath(directory, u"Pantrywise"_s, style));
        QCOMPARE(entries.back().defaultValue, command);
    }
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains("--write"_L1)) {
        for (int i = 0; i < 200; ++i)
            write(u"Ingredients"_s, QString(i % 100, u'x'));
        return 0;
    }
    const TemporaryHome home;
    tst_Settings test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_settings.moc"
