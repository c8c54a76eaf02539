#include "data/settings/RegistryFunctions.h"
#include "data/settings/SortOrder.h"
#include "support/FileBytes.h"
#include "support/TemporaryHome.h"

#include <QProcess>
#include <QRandomGenerator>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

const QString sorting = u"Software\\Quillmoor\\Pantrywise\\Sorting"_s;

QString storeFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/Quillmoor/Pantrywise.ini"_L1;
}

void write(const QString &name, const QVariant &value, const QString &key = sorting)
{
    CreateRegistryKey(HKEY_CURRENT_USER, key);
    WriteRegistryValue(HKEY_CURRENT_USER, key, name, value,
                       value.typeId() == QMetaType::Int ? REG_DWORD : REG_SZ);
}

QVariant read(const QString &name, const QString &key = sorting)
{
    return ReadRegistryValue(HKEY_CURRENT_USER, key, name);
}

// What a second program does: changes a value of its own many times and looks after each change and
// a moment's wait whether the file still says so. Returns how often it did not.
int lostChanges(const QString &name)
{
    int lost = 0;
    for (int i = 0; i < 400; ++i) {
        write(name, QString::number(100000 + i));
        QTest::qSleep(int(QRandomGenerator::global()->bounded(1, 6)));
        lost += !bytesOf(storeFile()).contains((name + u"=%1"_s.arg(100000 + i)).toLatin1());
    }
    return lost;
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QDir(QFileInfo(storeFile()).path()).removeRecursively(); }

    // The lowest free handle is given next, so 1 means that every routine closed its key.
    void cleanup()
    {
        HKEY key = 0;
        RegCreateKeyExA(HKEY_CURRENT_USER, u"last"_s, 0, key);
        RegCloseKey(key);
        QVERIFY(key <= 1);
    }

    // Names for which the store has a use stand beside odd values, in keys that have those names
    // too.
    void keepsValuesApart()
    {
        const std::pair<QString, QVariant> table[] = {
            {u""_s, 5},
            {u"_default"_s, u"\ufeffa"_s},
            {u"_key"_s, INT_MIN},
            {u"__key"_s, u"hex(3):00"_s},
            {u"a/b"_s, u"dword:5"_s},
            {u"a\\b"_s, u"text:"_s},
            {u"a%2Fb"_s, u"é\0"_s},
            {u"a=b;[c]#"_s, u""_s},
            {u" a "_s, u"a\r\n\ufeffb\nc\rd\n\x1f\x7f\u0085\u2028 "_s},
            {u"\"a\", b\n"_s, QString(3000, u'\u00fc')},
            {u"[General]"_s, u"  C:\\new\\x41\\ \"a\" %20;"_s},
            {u"日😀"_s, u"@Invalid()"_s},
        };
        const QStringList keys = {u"odd"_s, u"odd\\_default"_s, u"odd\\_key"_s};
        for (const QString &key : keys) {
            write(u"key"_s, key, key);
            for (const auto &[name, value] : table)
                write(name, value, key);
        }
        setBytes(storeFile(), bytesOf(storeFile()) + "\n"); // so that it is read afresh
        for (const QString &key : keys) {
            QCOMPARE(read(u"key"_s, key), key);
            for (const auto &[name, value] : table) {
                QCOMPARE(read(name, key), value);
                QCOMPARE(read(name, key).typeId(), value.typeId());
            }
        }
    }

    void converts()
    {
        const std::tuple<QVariant, quint32, QVariant> table[] = {
            {7, REG_SZ, u"7"_s}, {true, REG_SZ, u"True"_s}, {u"-7"_s, REG_DWORD, -7}, {7, 3, {}}};
        for (const auto &[written, type, expected] : table) {
            init();
            WriteRegistryValue(HKEY_CURRENT_USER, sorting, u"v"_s, written, type); // makes no key
            CreateRegistryKey(HKEY_CURRENT_USER, sorting);
            QVERIFY(!read(u"v"_s).isValid());
            WriteRegistryValue(HKEY_CURRENT_USER, sorting, u"v"_s, written, type);
            QCOMPARE(read(u"v"_s), expected);
            QVERIFY(!ReadRegistryValue(HKEY_CLASSES_ROOT, sorting, u"v"_s).isValid());
        }
    }

    void answersWithThePlatformsStatuses()
    {
        HKEY key = 0;
        HKEY reader = 0;
        QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, sorting, 1, key), ERROR_FILE_NOT_FOUND);
        RegCreateKeyExA(HKEY_CURRENT_USER, sorting, KEY_SET_VALUE, key);
        RegSetValueExA(key, u"bytes"_s, 3, "x");
        RegSetValueExA(key, u"long"_s, REG_DWORD, "12345");
        RegOpenKeyExA(key, {}, KEY_QUERY_VALUE, reader);
        QVariant value(u"before"_s);
        QCOMPARE(FetchKeyValue(reader, u"none"_s, value), ERROR_FILE_NOT_FOUND);
        QCOMPARE(FetchKeyValue(reader, u"bytes"_s, value), -1);
        QCOMPARE(FetchKeyValue(reader, u"long"_s, value), ERROR_MORE_DATA);
        QCOMPARE(FetchKeyValue(key, u"long"_s, value), ERROR_ACCESS_DENIED);
        QCOMPARE(value, QVariant(u"before"_s));
        RegCloseKey(reader);
        RegCloseKey(key);
        QCOMPARE(StoreKeyValue(key, u"none"_s, REG_SZ, u"x"_s), ERROR_INVALID_HANDLE);
    }

    void takesWhatAPersonHasWritten()
    {
        setBytes(storeFile(),
                 "; mine\r\n# mine, too\r\n[HKEY_CURRENT_USER]\r\n\r\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes = 0\r\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\List=salt, pepper\r\n"
                 "Software\\Quillmoor\\Pantrywise\\Sorting\\_default=dword:-2\r\n");
        write(u"Recipes"_s, u"1"_s);
        QCOMPARE(read(u"List"_s), u"salt, pepper"_s);
        QCOMPARE(read({}), -2);
    }

    void losesNothingBetweenTwoPrograms()
    {
        QProcess other;
        other.start(QCoreApplication::applicationFilePath(), {u"--change"_s});
        QCOMPARE(lostChanges(u"Recipes"_s), 0);
        QVERIFY(other.waitForFinished());
        QCOMPARE(other.exitCode(), 0);
    }

    // The locks of a program that was killed before it had put its number into them.
    void goesOnAfterAKilledProgram()
    {
        setBytes(storeFile() + ".writing"_L1, "");
        setBytes(storeFile() + ".lock"_L1, "");
        QElapsedTimer timer;
        timer.start();
        write(u"Recipes"_s, u"1"_s);
        QVERIFY(read(u"Recipes"_s) == u"1"_s && timer.elapsed() < 4000);
    }

    void setsAsideWhatItCannotRead()
    {
        const QByteArray sound =
            "[HKEY_CURRENT_USER]\nSoftware\\Quillmoor\\Pantrywise\\Sorting\\A=1\n";
        for (const QByteArray &damaged :
             {sound.chopped(5), sound + QByteArray(30, '\0'),
              QByteArray("[HKEY_CURRENT_USER\nA=1\n"), sound + "B=caf\xe9\n"}) {
            init();
            for (const QString &aside : {u".damaged"_s, u".damaged-2"_s}) {
                setBytes(storeFile(), damaged);
                write(u"Recipes"_s, u"1"_s);
                QCOMPARE(read(u"Recipes"_s), u"1"_s);
                QVERIFY(!read(u"A"_s).isValid());
                QCOMPARE(bytesOf(storeFile() + aside), damaged);
            }
        }
    }

    // No directory can be made where a file lies, not even by the administrator.
    void staysSilentWhereItCannotWrite()
    {
        const QString folder = QFileInfo(storeFile()).path();
        setBytes(folder, "a file");
        QElapsedTimer timer;
        timer.start();
        HKEY key = 0;
        QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, sorting, 1, key), ERROR_ACCESS_DENIED);
        QVERIFY(timer.elapsed() < 1000);
        QCOMPARE(bytesOf(folder), "a file");
        QFile::remove(folder);
    }

    void choosesTheOrder()
    {
        for (const QString &byType : u"-0|0.0||1x|0x1|1e1|nan|1,5|1.|True|\u0661"_s.split(u'|'))
            QVERIFY2(sortOrderOf(byType) == SortOrder::CategoryThenName, qPrintable(byType));
        for (const QVariant &byName : QVariantList{u"-1"_s, u" +1 "_s, u"0.5"_s, 1})
            QVERIFY2(sortOrderOf(byName) == SortOrder::Name, qPrintable(byName.toString()));
        write(u"Recipes"_s, u"1"_s);
        QCOMPARE(recipeOrderByClause() + ingredientOrderByClause(),
                 u" RecipeName IngredientType, IngredientName"_s);
        write(u"Ingredients"_s, u"1"_s);
        QCOMPARE(ingredientOrderByClause(), u" IngredientName"_s);
    }
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains("--change"_L1))
        return lostChanges(u"Ingredients"_s) == 0 ? 0 : 1;
    const TemporaryHome home;
    TestRegistry test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_registry.moc"
