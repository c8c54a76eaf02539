#include "data/settings/RegistryFunctions.h"
#include "support/FileBytes.h"
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

// Returns whether the file is whole: it contains the text and ends with a complete line.
bool isWhole(QByteArrayView text)
{
    const QByteArray bytes = bytesOf(storeFile());
    return bytes.contains(text) && bytes.endsWith('\n');
}

// The other program: changes a value many times.
void writeManyTimes(const QString &name)
{
    for (int i = 0; i < 200; ++i)
        write(name, QString(i % 100, u'x'));
}

struct NamedValue {
    const char *row;
    QString name;
    QVariant value;
};

const NamedValue oddValues[] = {
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

class tst_Registry : public QObject
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

    void keepsValuesApart_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("value");
        for (const auto &[row, name, value] : oddValues)
            QTest::newRow(row) << name << value;
    }

    // All the values are stored, in keys whose names are also those of values.
    void keepsValuesApart()
    {
        QFETCH(const QString, name);
        QFETCH(const QVariant, value);
        const QStringList keys = {u"odd"_s, u"odd\\_default"_s, u"odd\\_key"_s};
        for (const QString &path : keys) {
            write(u"key"_s, path, path);
            for (const NamedValue &other : oddValues)
                write(other.name, other.value, path);
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
        QTest::addColumn<QVariant>("written");
        QTest::addColumn<quint32>("type");
        QTest::addColumn<QVariant>("expected");
        QTest::newRow("number as text") << QVariant(7) << REG_SZ << QVariant(u"7"_s);
        QTest::newRow("yes as text") << QVariant(true) << REG_SZ << QVariant(u"True"_s);
        QTest::newRow("no as text") << QVariant(false) << REG_SZ << QVariant(u"False"_s);
        QTest::newRow("text as number") << QVariant(u"-7"_s) << REG_DWORD << QVariant(-7);
        QTest::newRow("other type") << QVariant(7) << quint32{3} << QVariant();
    }

    void convertsToTheType()
    {
        QFETCH(const QVariant, written);
        QFETCH(const quint32, type);
        QFETCH(const QVariant, expected);
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
            for (int look = 0; look < 20; ++look)
                QVERIFY(isWhole("First=kept"));
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
        QTest::addColumn<QByteArray>("damaged");
        QTest::newRow("cut off") << sound.chopped(5);
        QTest::newRow("zeros at the end") << sound + QByteArray(30, '\0');
        QTest::newRow("open heading") << QByteArray("[HKEY_CURRENT_USER\nA=1\n");
        QTest::newRow("not UTF-8") << sound + "B=caf\xe9\n";
    }

    void keepsADamagedFileAside()
    {
        QFETCH(const QByteArray, damaged);
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
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains("--write"_L1)) {
        writeManyTimes(u"Ingredients"_s);
        return 0;
    }
    const TemporaryHome home;
    tst_Registry test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_registry.moc"
