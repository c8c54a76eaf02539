#include "platform/CommandLine.h"
#include "platform/Drives.h"
#include "platform/FileType.h"
#include "platform/Paths.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesThePathFromTheCommandLine()
    {
        const QTemporaryDir folder;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(folder.path()));
        const QByteArray here = QFile::encodeName(QDir::currentPath()) + '/';
        QVERIFY(QFile(folder.filePath(u"\"quoted\""_s)).open(QIODevice::WriteOnly));
        const std::pair<std::vector<const char *>, QByteArray> table[] = {
            {{""}, ""},
            {{"/a/../Leek", "and", "", "Ham.srf "}, "/a/../Leek and  Ham.srf "},
            {{"no text \xFC.srf"}, here + "no text \xFC.srf"},
            {{"\"quoted\""}, here + "\"quoted\""},
            {{"\"/no", "where\""}, "/no where"},
        };
        for (const auto &[arguments, path] : table)
            QCOMPARE(QByteArray::fromStdString(commandLinePath(arguments).native()), path);
        QDir::setCurrent(before);
    }

    void knowsThePlatformsPaths()
    {
        const QString share = u"\\\\server\\Apps"_s;
        QCOMPARE(startingPlace(share, u"recipes"_s, PathStyle::Windows).directory, u"c:\\"_s);
        QCOMPARE(startingPlace(u"D:\\Apps"_s, u"recipes"_s, PathStyle::Windows).drive, u"D:"_s);
        const auto entries = fileTypeEntries(u"C:\\Apps"_s, u"Pantrywise"_s, PathStyle::Windows);
        QCOMPARE(entries.back().defaultValue, u"\"C:\\Apps\\Pantrywise.exe\" %1"_s);
    }

    void namesTheDrivesThatPeopleName()
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
};

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
