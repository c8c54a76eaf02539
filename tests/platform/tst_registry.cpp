#include "FileBytes.h"
#include "Registry.h"
#include "TemporaryHome.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint32 whole = 0x3F;
const QString path = u"Software\\Quillmoor\\Pantrywise\\Sorting"_s;

QString storeFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + "/Quillmoor/Pantrywise.ini"_L1;
}

HKEY created(const QString &path)
{
    HKEY key = 0;
    return RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key) == ERROR_SUCCESS ? key : 0;
}

QByteArray read(HKEY key, const QString &name)
{
    quint32 type = 0;
    qsizetype count = 0;
    if (RegQueryValueExA(key, name, type, count) != ERROR_SUCCESS)
        return "missing";
    QByteArray buffer(count, '~');
    return RegQueryValueExA(key, name, type, count, &buffer) == ERROR_SUCCESS ? buffer : "failed";
}

// What a second program does: changes a value of its own many times and looks after each change and
// a moment's wait whether the file still says so. Returns how often it did not.
int lostChanges(const QString &name)
{
    const HKEY key = created(path);
    int lost = 0;
    for (int i = 0; i < 400; ++i) {
        const QByteArray value = QByteArray::number(100000 + i);
        lost += RegSetValueExA(key, name, REG_SZ, value) != ERROR_SUCCESS;
        QTest::qSleep(int(QRandomGenerator::global()->bounded(1, 6)));
        lost += !bytesOf(storeFile()).contains(name.toLatin1() + '=' + value);
    }
    return lost;
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QDir(QFileInfo(storeFile()).path()).removeRecursively(); }
    void keepsValuesApart();
    void answersWithThePlatformsStatuses();
    void isAFileThatAPersonCanMend();
    void writesOnlyWhatDiffers();
    void losesNothingBetweenTwoPrograms();
    void goesOnAfterAKilledProgram();
    void setsAsideWhatItCannotRead();
    void staysSilentWhereItCannotWrite();
};

// Names for which the store has a use stand beside odd types and bytes, in keys that have those
// names too.
void TestRegistry::keepsValuesApart()
{
    const struct {
        QString name;
        quint32 type;
        QByteArray bytes;
    } table[] = {
        {u""_s, REG_SZ, "5"},
        {u"_default"_s, REG_DWORD, QByteArray("\x05\0\0\0", 4)},
        {u"_key"_s, REG_DWORD, "\xff\xff\xff\xff"},
        {u"__key"_s, REG_DWORD, "\xff"},
        {u"a/b"_s, REG_SZ, "dword:5"},
        {u"a\\b"_s, REG_SZ, "hex(3):00"},
        {u"a%2Fb"_s, REG_SZ, "text:"},
        {u"General"_s, REG_SZ, "caf\xe9"},
        {u"a=b;[c]#"_s, REG_SZ, ""},
        {u" a "_s, 3, QByteArray("\0\xff", 2)},
        {u"A"_s, 3, ""},
        {u"a"_s, REG_SZ, "a"},
        {u"日😀"_s, REG_SZ, "b"},
        {u"@"_s, REG_SZ, "c"},
        {u"\"a\", b"_s, REG_SZ, "d"},
        {u"\n"_s, REG_SZ, "e"},
    };
    const QStringList keys = {u"odd"_s, u"odd\\_default"_s, u"odd\\_key"_s, u"odd\\__key"_s};
    for (const QString &keyName : keys) {
        const HKEY key = created(keyName);
        for (const auto &[name, type, bytes] : table)
            QCOMPARE(RegSetValueExA(key, name, type, bytes), ERROR_SUCCESS);
        QCOMPARE(RegSetValueExA(key, u"key"_s, REG_SZ, keyName.toUtf8()), ERROR_SUCCESS);
        RegCloseKey(key);
    }
    setBytes(storeFile(), bytesOf(storeFile()) + "\n"); // so that it is read afresh
    for (const QString &keyName : keys) {
        HKEY key = 0;
        QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, keyName, whole, key), ERROR_SUCCESS);
        QCOMPARE(read(key, u"key"_s), keyName.toUtf8());
        for (const auto &[name, type, bytes] : table) {
            quint32 foundType = 0;
            qsizetype count = -1;
            QByteArray buffer(bytes.size() + 1, '~');
            QCOMPARE(RegQueryValueExA(key, name, foundType, count, &buffer), ERROR_SUCCESS);
            QCOMPARE(foundType, type);
            QCOMPARE(count, bytes.size());
            QCOMPARE(buffer, bytes + '~');
        }
        RegCloseKey(key);
    }
}

void TestRegistry::answersWithThePlatformsStatuses()
{
    HKEY key = 0;
    quint32 type = 0;
    qsizetype count = 0;
    QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_FILE_NOT_FOUND);
    QCOMPARE(RegOpenKeyExA(77, path, whole, key), ERROR_INVALID_HANDLE);
    QVERIFY(!QFileInfo::exists(storeFile()));

    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_SUCCESS);
    QCOMPARE(RegQueryValueExA(key, u""_s, type, count), ERROR_FILE_NOT_FOUND);
    QCOMPARE(RegSetValueExA(key, u""_s, REG_SZ, "long"), ERROR_SUCCESS);
    QByteArray small("abc");
    QCOMPARE(RegQueryValueExA(key, u""_s, type, count, &small), ERROR_MORE_DATA);
    QCOMPARE(count, 4);
    QCOMPARE(small, "abc");

    HKEY parent = 0;
    HKEY child = 0;
    QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, u"Software"_s, whole, parent), ERROR_SUCCESS);
    QCOMPARE(RegOpenKeyExA(parent, u"Quillmoor\\Pantrywise\\Sorting"_s, KEY_SET_VALUE, child),
             ERROR_SUCCESS);
    QCOMPARE(RegQueryValueExA(child, u""_s, type, count), ERROR_ACCESS_DENIED);
    QCOMPARE(RegOpenKeyExA(HKEY_CLASSES_ROOT, path, whole, child), ERROR_FILE_NOT_FOUND);
    for (const HKEY open : {key, parent, child})
        QCOMPARE(RegCloseKey(open), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u""_s, REG_SZ, "x"), ERROR_INVALID_HANDLE);
    QCOMPARE(RegCloseKey(key), ERROR_INVALID_HANDLE);
}

void TestRegistry::isAFileThatAPersonCanMend()
{
    const HKEY key = created(path);
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u""_s, REG_DWORD, QByteArray("\x2a\0\0\0", 4)), ERROR_SUCCESS);
    QCOMPARE(bytesOf(storeFile()),
             "[HKEY_CURRENT_USER]\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes=1\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\_default=dword:42\n");

    setBytes(storeFile(),
             "; mine\r\n# mine, too\r\n[HKEY_CURRENT_USER]\r\n\r\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes = 0\r\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\List=salt, pepper\r\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\Number=dword:-1\r\n");
    QCOMPARE(read(key, u"Recipes"_s), "0");
    QCOMPARE(read(key, u"List"_s), "salt, pepper");
    QCOMPARE(read(key, u"Number"_s), "\xff\xff\xff\xff");
    QCOMPARE(read(key, u""_s), "missing");
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QCOMPARE(read(key, u"List"_s), "salt, pepper");
    RegCloseKey(key);
}

void TestRegistry::writesOnlyWhatDiffers()
{
    const auto writeAll = [](const QByteArray &text) {
        const HKEY key = created(path);
        QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, text), ERROR_SUCCESS);
        QCOMPARE(read(key, u"Recipes"_s), text);
        RegCloseKey(key);
    };
    writeAll("1");
    const QByteArray before = bytesOf(storeFile());
    QFile watched(storeFile()); // the file itself is replaced by a change, so this one goes stale
    QVERIFY(watched.open(QIODevice::ReadWrite));
    QVERIFY(watched.setFileTime(QDateTime::fromSecsSinceEpoch(1000), QFile::FileModificationTime));
    writeAll("1");
    QCOMPARE(QFileInfo(storeFile()).lastModified().toSecsSinceEpoch(), 1000);
    writeAll("0");
    QVERIFY(QFileInfo(storeFile()).lastModified().toSecsSinceEpoch() > 1000);
    QCOMPARE(watched.readAll(), before);
    QCOMPARE(QDir(QFileInfo(storeFile()).path()).entryList(QDir::Files).size(), 1);
}

void TestRegistry::losesNothingBetweenTwoPrograms()
{
    QProcess other;
    other.start(QCoreApplication::applicationFilePath(), {u"--change"_s});
    QVERIFY(other.waitForStarted());
    QCOMPARE(lostChanges(u"Recipes"_s), 0);
    QVERIFY(other.waitForFinished());
    QCOMPARE(other.exitCode(), 0);
}

// The locks of a program that was killed before it had put its number into them.
void TestRegistry::goesOnAfterAKilledProgram()
{
    setBytes(storeFile() + ".writing"_L1, "");
    setBytes(storeFile() + ".lock"_L1, "");
    QElapsedTimer timer;
    timer.start();
    const HKEY key = created(path);
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QVERIFY(timer.elapsed() < 4000);
    RegCloseKey(key);
}

void TestRegistry::setsAsideWhatItCannotRead()
{
    const QByteArray sound = "[HKEY_CURRENT_USER]\nSoftware\\Quillmoor\\Pantrywise\\Sorting\\A=1\n";
    for (const QByteArray &damaged :
         {sound.chopped(5), QByteArray(300, '\0'), sound + QByteArray(30, '\0'),
          QByteArray("{ \"recipes\": 1 }\n"), QByteArray("[HKEY_CURRENT_USER\nA=1\n"),
          sound + "B=caf\xe9\n", QByteArray()}) { // the last one is a folder
        init();
        for (int i = 0; i < 2; ++i) {
            QFile::remove(storeFile());
            damaged.isEmpty() ? void(QDir().mkpath(storeFile() + "/inside"_L1))
                              : setBytes(storeFile(), damaged);
            const HKEY key = created(path);
            QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
            QCOMPARE(read(key, u"Recipes"_s), "1");
            QCOMPARE(read(key, u"A"_s), "missing");
            RegCloseKey(key);
        }
        for (const QString &kept : {storeFile() + ".damaged"_L1, storeFile() + ".damaged-2"_L1}) {
            QCOMPARE(bytesOf(kept), damaged);
            QCOMPARE(QFileInfo(kept + "/inside"_L1).isDir(), damaged.isEmpty());
        }
    }
}

void TestRegistry::staysSilentWhereItCannotWrite()
{
    // No directory can be made where a file lies, not even by the administrator.
    setBytes(QFileInfo(storeFile()).path(), "a file");
    HKEY key = 0;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_ACCESS_DENIED);
    QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_FILE_NOT_FOUND);
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(bytesOf(QFileInfo(storeFile()).path()), "a file");
    QFile::remove(QFileInfo(storeFile()).path());
}

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
