#include "platform/Directory.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"

#include <QTemporaryDir>

#include <algorithm>

using namespace platform;
using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

class tst_Directory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What the names are made of, links and rights are tested with the window that shows them.
    void findsNothingInWhatIsNoDirectory()
    {
        const QTemporaryDir folder;
        const fs::path file = nativePath(folder.filePath(u"Soup.srf"_s));
        setBytes(displayPath(file), "Soup");
        for (const fs::path &path : {file, file / "below", fs::path()}) {
            QVERIFY(!canBeOpened(path));
            QVERIFY(filesEndingIn(".srf", path).empty());
            QVERIFY(subdirectories(path).empty());
        }
        QCOMPARE(filesEndingIn(".SRF", file.parent_path()), std::vector{QByteArray("Soup.srf")});
    }

    void listsTheDrivesThatPeopleUse()
    {
        const std::vector<MountedVolume> volumes = {
            {"/", "/dev/sda1", "ext4"},         {"/media/ann/STICK", "/dev/sdb1", "vfat"},
            {"/proc", "proc", "proc"},          {"/run/user/1000/doc", "portal", "fuse.portal"},
            {"/boot/efi", "/dev/sda2", "vfat"}, {"/snap/core/1", "/dev/loop0", "squashfs"},
            {"/home", "/dev/sda3", "ext4"},     {"/net/kitchen", "nas:/kitchen", "nfs4"},
            {"/tmp", "tmpfs", "tmpfs"},         {"/bootleg", "/dev/sdc1", "ext4"},
        };
        const std::vector<fs::path> expected = {
            "/", "/home/ann", "/bootleg", "/home", "/media/ann/STICK", "/net/kitchen",
        };
        QCOMPARE(drivesAmong(volumes, "/home/ann"), expected);
    }

    void findsTheDriveOfADirectory_data()
    {
        QTest::addColumn<QByteArray>("directory");
        QTest::addColumn<std::size_t>("drive");
        QTest::newRow("root") << QByteArray("/opt") << std::size_t{0};
        QTest::newRow("drive itself") << QByteArray("/home/ann") << std::size_t{1};
        QTest::newRow("inner drive") << QByteArray("/home/ann/STICK/recipes") << std::size_t{3};
        QTest::newRow("longer name") << QByteArray("/home/ann/STICKS") << std::size_t{1};
    }

    void findsTheDriveOfADirectory()
    {
        QFETCH(const QByteArray, directory);
        const std::vector<fs::path> drives = {"/", "/home/ann", "/home", "/home/ann/STICK"};
        QTEST(driveOf(directory.toStdString(), drives), "drive");
    }

    void startsInTheProgramsFolder_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<PathStyle>("style");
        QTest::addColumn<QString>("directory");
        QTest::newRow("Unix") << u"/opt/apps"_s << PathStyle::Unix << u"/opt/apps/recipes"_s;
        QTest::newRow("drive") << u"D:\\Apps"_s << PathStyle::Windows << u"D:\\Apps\\recipes"_s;
        QTest::newRow("network share") << u"\\\\server\\Apps"_s << PathStyle::Windows << u"c:\\"_s;
    }

    void startsInTheProgramsFolder()
    {
        QFETCH(const QString, program);
        QFETCH(const PathStyle, style);
        QTEST(startingDirectory(program, u"recipes"_s, style), "directory");
    }
};

QTEST_GUILESS_MAIN(tst_Directory)
#include "tst_directory.moc"
