#include "Registry.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTest>

#include <array>

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

QByteArray contents(const QString &file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void write(const QString &file, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(file).path());
    QFile f(file);
    QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
}

QByteArray read(HKEY key, const QString &name)
{
    quint32 type = 0;
    qsizetype count = 0;
    QByteArray buffer;
    if (RegQueryValueExA(key, name, type, count) != ERROR_SUCCESS)
        return "missing";
    buffer.resize(count);
    return RegQueryValueExA(key, name, type, count, &buffer) == ERROR_SUCCESS ? buffer : "failed";
}

// What a second program does: changes a value of its own many times and looks after each change and
// a moment's wait whether the file still says so. Returns how often it did not.
int lostChanges(const QString &name, int changes)
{
    HKEY key = 0;
    if (RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key) != ERROR_SUCCESS)
        return changes;
    int lost = 0;
    for (int i = 0; i < changes; ++i) {
        const QByteArray value = QByteArray::number(100000 + i);
        lost += RegSetValueExA(key, name, REG_SZ, value) != ERROR_SUCCESS;
        QTest::qSleep(int(QRandomGenerator::global()->bounded(1, 6)));
        lost += !contents(storeFile()).contains(name.toLatin1() + '=' + value);
    }
    RegCloseKey(key);
    return lost;
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void keepsBytesAndTypesApart();
    void answersWithThePlatformsStatuses();
    void keepsOddNamesApart();
    void isAFileThatAPersonCanMend();
    void writesOnlyWhatDiffers();
    void losesNothingBetweenTwoPrograms();
    void goesOnAfterAKilledProgram();
    void setsAsideWhatItCannotRead_data();
    void setsAsideWhatItCannotRead();
    void staysSilentWhereItCannotWrite();
};

void TestRegistry::init()
{
    QDir(QFileInfo(storeFile()).path()).removeRecursively();
}

void TestRegistry::keepsBytesAndTypesApart()
{
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_SUCCESS);
    struct Case {
        quint32 type;
        QByteArray bytes;
    };
    const std::array cases = {
        Case{REG_SZ, "5"},
        Case{REG_DWORD, QByteArray("\x05\0\0\0", 4)},
        Case{REG_DWORD, "\xff\xff\xff\xff"},
        Case{REG_DWORD, "\xff"},
        Case{REG_SZ, "dword:5"},
        Case{REG_SZ, "hex(3):00"},
        Case{REG_SZ, "text:"},
        Case{REG_SZ, "caf\xe9"},
        Case{REG_SZ, ""},
        Case{3, QByteArray("\0\xff", 2)},
        Case{3, ""},
    };
    for (qsizetype i = 0; const Case &c : cases)
        QCOMPARE(RegSetValueExA(key, QString::number(i++), c.type, c.bytes), ERROR_SUCCESS);
    write(storeFile(), contents(storeFile()) + "\n"); // so that it is read afresh
    for (qsizetype i = 0; const Case &c : cases) {
        quint32 type = 0;
        qsizetype count = -1;
        QByteArray buffer(c.bytes.size() + 1, '~');
        QCOMPARE(RegQueryValueExA(key, QString::number(i++), type, count, &buffer), ERROR_SUCCESS);
        QCOMPARE(type, c.type);
        QCOMPARE(count, c.bytes.size());
        QCOMPARE(buffer, c.bytes + '~');
    }
    RegCloseKey(key);
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

void TestRegistry::keepsOddNamesApart()
{
    const std::array names = {
        u""_s,        u"_default"_s, u"_key"_s, u"__key"_s, u"a/b"_s, u"a\\b"_s, u"a%2Fb"_s, u"/"_s,
        u"General"_s, u"a=b;[c]#"_s, u" a "_s,  u"клад"_s,  u"日😀"_s, u"A"_s,    u"a"_s,     u"@"_s,
        u"a,b"_s,     u"\"a\""_s,    u"."_s,    u".srf"_s,  u"\n"_s,  u"%U"_s,
    };
    // Each name also names a key, made before and after the value.
    for (const QString &name : names) {
        HKEY key = 0;
        const QString keyPath = u"odd\\"_s + QString(name).replace(u'\\', u'|');
        QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, keyPath, whole, key), ERROR_SUCCESS);
        for (const QString &value : names)
            QCOMPARE(RegSetValueExA(key, value, REG_SZ, (name + value).toUtf8()), ERROR_SUCCESS);
        RegCloseKey(key);
        if (&name - names.data() == 3)
            break;
    }
    HKEY parent = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, u"odd"_s, whole, parent), ERROR_SUCCESS);
    for (const QString &value : names)
        QCOMPARE(RegSetValueExA(parent, value, REG_SZ, value.toUtf8()), ERROR_SUCCESS);
    write(storeFile(), contents(storeFile()) + "\n");
    for (const QString &value : names)
        QCOMPARE(read(parent, value), value.toUtf8());
    for (const QString &name : {names[1], names[2], names[3]}) {
        HKEY key = 0;
        QCOMPARE(RegOpenKeyExA(parent, name, whole, key), ERROR_SUCCESS);
        for (const QString &value : names)
            QCOMPARE(read(key, value), (name + value).toUtf8());
        RegCloseKey(key);
    }
    RegCloseKey(parent);
}

void TestRegistry::isAFileThatAPersonCanMend()
{
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u""_s, REG_DWORD, QByteArray("\x2a\0\0\0", 4)), ERROR_SUCCESS);
    QCOMPARE(contents(storeFile()),
             "[HKEY_CURRENT_USER]\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes=1\n"
             "Software\\Quillmoor\\Pantrywise\\Sorting\\_default=dword:42\n");

    write(storeFile(),
          "; mine\r\n# mine, too\r\n[HKEY_CURRENT_USER]\r\n\r\n"
          "Software\\Quillmoor\\Pantrywise\\Sorting\\Recipes = 0\r\n"
          "Software\\Quillmoor\\Pantrywise\\Sorting\\List=salt, pepper\r\n"
          "Software\\Quillmoor\\Pantrywise\\Sorting\\Empty=\r\n"
          "Software\\Quillmoor\\Pantrywise\\Sorting\\Number=dword:-1\r\n");
    QCOMPARE(read(key, u"Recipes"_s), "0");
    QCOMPARE(read(key, u"List"_s), "salt, pepper");
    QCOMPARE(read(key, u"Empty"_s), "");
    QCOMPARE(read(key, u"Number"_s), "\xff\xff\xff\xff");
    QCOMPARE(read(key, u""_s), "missing");
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QCOMPARE(read(key, u"List"_s), "salt, pepper");
    RegCloseKey(key);
}

void TestRegistry::writesOnlyWhatDiffers()
{
    const auto writeAll = [](const QByteArray &text) {
        HKEY key = 0;
        QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_SUCCESS);
        QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, text), ERROR_SUCCESS);
        QCOMPARE(read(key, u"Recipes"_s), text);
        RegCloseKey(key);
    };
    writeAll("1");
    const QByteArray before = contents(storeFile());
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
    QCOMPARE(lostChanges(u"Recipes"_s, 400), 0);
    QVERIFY(other.waitForFinished());
    QCOMPARE(other.exitStatus(), QProcess::NormalExit);
    QCOMPARE(other.exitCode(), 0);
}

// The locks of a program that was killed before it had put its number into them.
void TestRegistry::goesOnAfterAKilledProgram()
{
    write(storeFile() + ".writing"_L1, "");
    write(storeFile() + ".lock"_L1, "");
    QElapsedTimer timer;
    timer.start();
    HKEY key = 0;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QVERIFY(timer.elapsed() < 4000);
    RegCloseKey(key);
}

void TestRegistry::setsAsideWhatItCannotRead_data()
{
    QTest::addColumn<QByteArray>("damaged");
    const QByteArray sound = "[HKEY_CURRENT_USER]\nSoftware\\Quillmoor\\Pantrywise\\Sorting\\A=1\n";
    QTest::newRow("cut off") << sound.chopped(5);
    QTest::newRow("zeros") << QByteArray(300, '\0');
    QTest::newRow("zeros at the end") << sound + QByteArray(30, '\0');
    QTest::newRow("no text") << QByteArray("\x7f\x45\x4c\x46=\x80\xff");
    QTest::newRow("another file") << QByteArray("{ \"recipes\": 1 }\n");
    QTest::newRow("broken heading") << QByteArray("[HKEY_CURRENT_USER\nA=1\n");
    QTest::newRow("older letters") << sound + "B=caf\xe9\n";
    QTest::newRow("a directory") << QByteArray();
}

void TestRegistry::setsAsideWhatItCannotRead()
{
    QFETCH(QByteArray, damaged);
    const QString aside = storeFile() + ".damaged"_L1;
    const auto putInPlace = [&] {
        if (damaged.isEmpty())
            QVERIFY(QDir().mkpath(storeFile() + "/inside"_L1));
        else
            write(storeFile(), damaged);
    };
    HKEY key = 0;
    putInPlace();
    QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_FILE_NOT_FOUND);
    putInPlace();
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_SUCCESS);
    QCOMPARE(RegSetValueExA(key, u"Recipes"_s, REG_SZ, "1"), ERROR_SUCCESS);
    QCOMPARE(read(key, u"Recipes"_s), "1");
    QCOMPARE(read(key, u"A"_s), "missing");
    RegCloseKey(key);
    for (const QString &kept : {aside, aside + "-2"_L1}) {
        QCOMPARE(contents(kept), damaged);
        QCOMPARE(QFileInfo(kept + "/inside"_L1).isDir(), damaged.isEmpty());
    }
}

void TestRegistry::staysSilentWhereItCannotWrite()
{
    // No directory can be made where a file lies, not even by the administrator.
    write(QFileInfo(storeFile()).path(), "a file");
    HKEY key = 0;
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_ACCESS_DENIED);
    QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, path, whole, key), ERROR_FILE_NOT_FOUND);
    QVERIFY(timer.elapsed() < 1000);
    QCOMPARE(contents(QFileInfo(storeFile()).path()), "a file");
    QFile::remove(QFileInfo(storeFile()).path());
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains("--change"_L1))
        return lostChanges(u"Ingredients"_s, 400) == 0 ? 0 : 1;
    const TemporaryHome home;
    TestRegistry test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_registry.moc"
