#include "CommandLine.h"
#include "DesktopSession.h"
#include "Drives.h"
#include "FileType.h"
#include "Paths.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheRegistryOfRecipeFiles();
    void takesThePathFromTheCommandLine();
    void startsLookingBesideTheProgram();
    void namesTheDrivesThatPeopleName();
    void findsADesktop();
};

void TestPaths::tellsTheRegistryOfRecipeFiles()
{
    QStringList lines;
    for (const auto &[directory, style] :
         {std::pair(u"C:\\Apps"_s, PathStyle::Windows), std::pair(u"/a b"_s, PathStyle::Unix)}) {
        for (const FileTypeEntry &e : fileTypeEntries(directory, u"Pantrywise"_s, style))
            lines += e.key + " -> "_L1 + e.defaultValue;
    }
    const QStringList windows = {
        u".srf -> srffile"_s,
        u"srffile -> Standard Recipe Format"_s,
        u"srffile\\DefaultIcon -> C:\\Apps\\Pantrywise.exe,0"_s,
        u"srffile\\Shell -> Import"_s,
        u"srffile\\Shell\\Import\\command -> \"C:\\Apps\\Pantrywise.exe\" %1"_s,
    };
    QCOMPARE(lines.mid(0, 5), windows);
    QCOMPARE(lines[7], u"srffile\\DefaultIcon -> /a b/Pantrywise,0"_s);
    QCOMPARE(lines[9], u"srffile\\Shell\\Import\\command -> \"/a b/Pantrywise\" %1"_s);
}

void TestPaths::takesThePathFromTheCommandLine()
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    const QByteArray here = QFile::encodeName(QDir::currentPath()) + '/';
    for (const QString &name : {u"\"quoted\""_s, u"plain"_s})
        QVERIFY(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
    const std::pair<std::vector<const char *>, QByteArray> table[] = {
        {{}, ""},
        {{""}, ""},
        {{"/a/Leek", "and", "", "Ham.srf"}, "/a/Leek and  Ham.srf"},
        {{"/a/../b//c.srf "}, "/a/../b//c.srf "},
        {{"../c.srf"}, here + "../c.srf"},
        {{"no text \xFC.srf"}, here + "no text \xFC.srf"},
        {{"\"quoted\""}, here + "\"quoted\""},
        {{"\"plain\""}, here + "plain"},
        {{"\"/no", "where\""}, "/no where"},
        {{"\""}, here + "\""},
    };
    for (const auto &[arguments, path] : table)
        QCOMPARE(QByteArray::fromStdString(commandLinePath(arguments).native()), path);
    QDir::setCurrent(before);
}

void TestPaths::startsLookingBesideTheProgram()
{
    const struct {
        QString program;
        PathStyle style;
        QString drive;
        QString directory;
    } table[] = {
        {u"D:\\Apps"_s, PathStyle::Windows, u"D:"_s, u"D:\\Apps\\recipes"_s},
        {u"\\\\server\\Apps"_s, PathStyle::Windows, u"c:"_s, u"c:\\"_s},
        {u"\\odd"_s, PathStyle::Windows, u"\\o"_s, u"\\odd\\recipes"_s},
        {u"/a b"_s, PathStyle::Unix, u""_s, u"/a b/recipes"_s},
    };
    for (const auto &[program, style, drive, directory] : table) {
        const StartingPlace place = startingPlace(program, u"recipes"_s, style);
        QCOMPARE(place.drive, drive);
        QCOMPARE(place.directory, directory);
    }
}

void TestPaths::namesTheDrivesThatPeopleName()
{
    const std::vector<MountedVolume> volumes = {
        {"/", "/dev/sda1", "ext4"},         {"/media/ann/STICK", "/dev/sdb1", "vfat"},
        {"/proc", "proc", "proc"},          {"/run/user/1000/doc", "portal", "fuse.portal"},
        {"/boot/efi", "/dev/sda2", "vfat"}, {"/snap/core/1", "/dev/loop0", "squashfs"},
        {"/home", "/dev/sda3", "ext4"},     {"/net/kitchen", "nas:/kitchen", "nfs4"},
        {"/tmp", "tmpfs", "tmpfs"},         {"/bootleg", "/dev/sdc1", "ext4"},
    };
    const std::vector<std::filesystem::path> expected = {
        "/", "/home/ann", "/bootleg", "/home", "/media/ann/STICK", "/net/kitchen",
    };
    QCOMPARE(drivesAmong(volumes, "/home/ann"), expected);
    QCOMPARE(driveOf("/media/ann/STICK/recipes", expected), 4U);
    QCOMPARE(driveOf("/media/ann/STICKS", expected), 0U);
}

void TestPaths::findsADesktop()
{
    const struct {
        const char *wayland;
        const char *x;
        const char *chosen;
        bool isDesktop;
    } table[] = {
        {"", "", "", false},
        {"wayland-0", "", "", true},
        {"", ":0", "", true},
        {"", "", "xcb", true},
        {"", ":0", "offscreen", false},
        {"", ":0", "minimal:x=1", false},
        {"", "", "minimalegl", true},
    };
    for (const auto &[wayland, x, chosen, isDesktop] : table) {
        qputenv("WAYLAND_DISPLAY", wayland);
        qputenv("DISPLAY", x);
        qputenv("QT_QPA_PLATFORM", chosen);
        QVERIFY2(hasDesktop() == isDesktop, chosen);
    }
}

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
