#include "platform/Directory.h"
#include "platform/Paths.h"
#include "support/FileBytes.h"
#include "support/Rows.h"

#include <QTemporaryDir>

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
        addRows<QByteArray, std::size_t>({{"root", "/opt", 0},
                                          {"drive itself", "/home/ann", 1},
                                          {"inner drive", "/home/ann/STICK/recipes", 3},
                                          {"longer name", "/home/ann/STICKS", 1}});
    }

    void findsTheDriveOfADirectory()
    {
        const auto [directory, drive] = fetchRow<QByteArray, std::size_t>();
        const std::vector<fs::path> drives = {"/", "/home/ann", "/home", "/home/ann/STICK"};
        QCOMPARE(driveOf(directory.toStdString(), drives), drive);
    }

    void startsInTheProgramsFolder_data()
    {
        addRows<QString, PathStyle, QString>(
            {{"Unix", u"/opt/apps"_s, PathStyle::Unix, u"/opt/apps/recipes"_s},
             {"drive", u"D:\\Apps"_s, PathStyle::Windows, u"D:\\Apps\\recipes"_s},
             {"network share", u"\\\\server\\Apps"_s, PathStyle::Windows, u"c:\\"_s}});
    }

    void startsInTheProgramsFolder()
    {
        const auto [program, style, directory] = fetchRow<QString, PathStyle, QString>();
        QCOMPARE(startingDirectory(program, u"recipes"_s, style), directory);
    }
};

QTEST_GUILESS_MAIN(tst_Directory)
#include "tst_directory.moc"
