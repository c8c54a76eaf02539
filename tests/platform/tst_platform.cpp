#include "platform/DesktopRegistration.h"
#include "platform/Directory.h"
#include "platform/Paths.h"
#include "platform/StartupEnvironment.h"
#include "support/FileBytes.h"
#include "support/Rows.h"
#include "support/TemporaryHome.h"

#include <QMimeDatabase>
#include <QProcess>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace platform;
using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

namespace {

QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAll());
}

// A server that accepts connections.
class ListeningSocket
{
public:
    explicit ListeningSocket(const QByteArray &path)
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), address.sun_path);
        ::unlink(path.constData());
        QCOMPARE(::bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        QCOMPARE(::listen(m_socket, 1), 0);
    }
    ~ListeningSocket() { ::close(m_socket); }

private:
    Q_DISABLE_COPY_MOVE(ListeningSocket)
    const int m_socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
};

} // namespace

class tst_Platform : public QObject
{
    Q_OBJECT

    const TemporaryHome m_home;
    const QTemporaryDir m_folder;
    const QByteArray m_display = qgetenv("DISPLAY"); // of the X server that the test runs on

private Q_SLOTS:
    void init()
    {
        for (const QString &root : {m_home.data({}), m_home.config({})})
            QDir(root).removeRecursively();
    }

    void changesTheDefaultApplication_data()
    {
        addRows<QByteArray, QByteArray>(
            {{"empty file", {}, "[Default Applications]\nt/x=p.desktop;\n"},
             {"no section", "# mine\n[Added Associations]\nt/x=o",
              "# mine\n[Added Associations]\nt/x=o\n\n[Default Applications]\nt/x=p.desktop;\n"},
             {"no entry", "[Default Applications]\r\na/b = c;\r\n\n[X]\nt/x=o\n",
              "[Default Applications]\r\nt/x=p.desktop;\na/b = c;\r\n\n[X]\nt/x=o\n"},
             {"not the first one", "[Default Applications]\nt/xy=q\n t/x = o;p.desktop;\na/b=c\n",
              "[Default Applications]\nt/xy=q\nt/x=p.desktop;o;\na/b=c\n"}});
    }

    void changesTheDefaultApplication()
    {
        const auto [before, after] = fetchRow<QByteArray, QByteArray>();
        QCOMPARE(withDefaultApplication(before, "t/x", "p.desktop"), after);
        QCOMPARE(withDefaultApplication(after, "t/x", "p.desktop"), after);
    }

    void launchesFromAnOddFolder_data()
    {
        addRows<QString>({{"quotes", u"\"a quoted\" it's"_s},
                          {"percent sign", u"50% off"_s},
                          {"field code", u"%f"_s},
                          {"shell expansion", u"$HOME back\\slash\\\\ `tick`"_s},
                          {"shell operators", u"(a)&;<b>|*?#~"_s},
                          {"control characters", u"é日 tab\there\nline"_s},
                          {"equals sign", u"a=b"_s}});
    }

    // The desktop's own launcher must find the program and pass the whole path of the file. The
    // launcher does not wait for the program, but `cat` waits for the end of its output.
    void launchesFromAnOddFolder()
    {
        const auto [folder] = fetchRow<QString>();
        const QString program = m_home.data(u"programs/"_s) + folder + "/Pantrywise"_L1;
        setBytes(program, "#!/bin/sh\nprintf '<%s>' \"$0\" \"$@\"\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        const QString entry = m_home.data(u"applications/pantrywise.desktop"_s);
        setBytes(entry, desktopEntry(program));
        QCOMPARE(output(u"desktop-file-validate"_s, {entry}), QString());
        const QString launch = u"gio launch \"$0\" \"$@\" | cat"_s;
        QCOMPARE(output(u"sh"_s, {u"-c"_s, launch, entry, u"/a b/%f $x.srf"_s}),
                 u'<' + program + "></a b/%f $x.srf>"_L1);
    }

    void registersTheProgramAndItsFiles()
    {
        registerWithDesktop(u"/opt/old/Pantrywise"_s);
        const QDateTime before = QFileInfo(m_home.data(u"mime/mime.cache"_s)).lastModified();
        registerWithDesktop(QCoreApplication::applicationFilePath());
        QCOMPARE(QFileInfo(m_home.data(u"mime/mime.cache"_s)).lastModified(), before);
        const QString type = QString::fromLatin1(recipeMimeType);
        QVERIFY(output(u"gio"_s, {u"mime"_s, type})
                    .startsWith(u"Default application for “%1”: pantrywise.desktop"_s.arg(type)));
        QVERIFY(QFileInfo(m_home.data(u"icons/hicolor/scalable/apps/pantrywise.svg"_s)).size()
                > 100);
        const QString recipe = m_home.data(u"Soup.srf"_s);
        setBytes(recipe, "Leek soup\r\n");
        const QMimeType found = QMimeDatabase().mimeTypeForFile(recipe);
        QVERIFY(found.name() == type && found.inherits(u"text/plain"_s));
        // Unlike QMimeDatabase, GIO compares the weight with those in the folders of the system.
        QVERIFY(output(u"gio"_s, {u"info"_s, u"-a"_s, u"standard::fast-content-type"_s, recipe})
                    .contains(type));
    }

    void keepsWhatItCannotRead()
    {
        QVERIFY(QDir().mkpath(m_home.config({})));
        const QByteArray defaults = QFile::encodeName(m_home.config(u"mimeapps.list"_s));
        QCOMPARE(mkfifo(defaults.data(), 0600), 0);
        registerWithDesktop(u"/opt/Pantrywise"_s);
        QVERIFY(!QFileInfo(m_home.config(u"mimeapps.list"_s)).isFile());
    }

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

    void takesThePathFromTheCommandLine_data()
    {
        // %1 is the current directory.
        addRows<QByteArrayList, QByteArray>(
            {{"none", {}, {}},
             {"empty", {""}, {}},
             {"several arguments",
              {"/a/../Leek", "and", "", "Ham.srf "},
              "/a/../Leek and  Ham.srf "},
             {"relative, not text", {"no text \xFC.srf"}, "%1/no text \xFC.srf"},
             {"quotes in the name", {"\"quoted\""}, "%1/\"quoted\""},
             {"quotes around the path", {"\"/no", "where\""}, "/no where"}});
    }

    void takesThePathFromTheCommandLine()
    {
        const auto [arguments, path] = fetchRow<QByteArrayList, QByteArray>();
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder.path()));
        const auto restore = qScopeGuard([&] { QDir::setCurrent(before); });
        QVERIFY(QFile(m_folder.filePath(u"\"quoted\""_s)).open(QIODevice::WriteOnly));
        std::vector<const char *> pointers;
        for (const QByteArray &argument : arguments)
            pointers.push_back(argument.constData());
        QCOMPARE(QByteArray::fromStdString(commandLinePath(pointers).native()),
                 QByteArray(path).replace("%1", QFile::encodeName(QDir::currentPath())));
    }

    void showsTextThatCannotBeRead()
    {
        QCOMPARE(escapeInvalidText("/caf\xE9/\xC3\xA9\xF0\x9F\x98\x80\xC3"),
                 u"/caf\\xE9/é😀\\xC3"_s);
    }

    void knowsWhetherWindowsCanBeSeen_data()
    {
        // %1 is a display that can be reached.
        addRows<QByteArray, QByteArray, QByteArray, bool>({
            {"no display", {}, {}, {}, false},
            {"X", "%1", {}, {}, true},
            {"X that cannot be reached", ":999", {}, {}, false},
            {"X on another computer", "no.such.host.invalid:0", {}, {}, false},
            {"Wayland", {}, "%1", {}, true},
            {"Wayland with a path", {}, "/%1", {}, true},
            {"Wayland that cannot be reached", {}, "wayland-999", {}, false},
            {"X besides Wayland that cannot be reached", "%1", "wayland-999", {}, true},
            {"offscreen in spite of a display", "%1", "%1", "offscreen", false},
            {"minimal with options", "%1", {}, "minimal:enable_fonts", false},
            {"chosen X that cannot be reached", ":999", "%1", "xcb", false},
            {"chosen platforms", "%1", {}, "wayland-egl;xcb:a=b", true},
            {"chosen platform without a display", {}, {}, "linuxfb", true},
        });
    }

    void knowsWhetherWindowsCanBeSeen()
    {
        auto [display, waylandDisplay, qtPlatform, isSeen] =
            fetchRow<QByteArray, QByteArray, QByteArray, bool>();
        const QByteArray folder = QFile::encodeName(m_folder.path());
        const ListeningSocket wayland(folder + "/wayland");
        qputenv("XDG_RUNTIME_DIR", folder);
        qputenv("DISPLAY", display.replace("%1", m_display));
        qputenv("WAYLAND_DISPLAY",
                waylandDisplay.replace("/%1", folder + "/wayland").replace("%1", "wayland"));
        qputenv("QT_QPA_PLATFORM", qtPlatform);
        const Desktop desktop = findDesktop();
        QCOMPARE(desktop.isReachable, isSeen);
        QCOMPARE(desktop.connection != nullptr, isSeen && display == m_display);
    }
};

QTEST_GUILESS_MAIN(tst_Platform)
#include "tst_platform.moc"
