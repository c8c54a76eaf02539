#include "DefaultApplication.h"
#include "DesktopRegistration.h"
#include "FileBytes.h"
#include "TemporaryHome.h"

#include <QDirIterator>
#include <QMimeDatabase>
#include <QProcess>

#include <sys/stat.h>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

namespace {

QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return program + " failed: "_L1 + QString::fromUtf8(process.readAll());
    return QString::fromUtf8(process.readAll());
}

} // namespace

class TestDesktopRegistration : public QObject
{
    Q_OBJECT

    const TemporaryHome home;

private Q_SLOTS:
    void init();
    void mergesDefaultApplications();
    void launchesProgramsInOddPlaces();
    void makesTheProgramKnown();
    void costsNothingTheSecondTime();
    void staysSilentWithoutTheRight();
};

void TestDesktopRegistration::init()
{
    for (const QString &root : {home.data({}), home.config({})})
        QDir(root).removeRecursively();
}

void TestDesktopRegistration::mergesDefaultApplications()
{
    const std::pair<QByteArray, QByteArray> table[] = {
        {"", "[Default Applications]\nt/x=p.desktop;\n"},
        {"# mine\n[Added Associations]\nt/x=o",
         "# mine\n[Added Associations]\nt/x=o\n\n[Default Applications]\nt/x=p.desktop;\n"},
        {"[Default Applications]\r\na/b = c;\r\n\n[X]\nt/x=o\n",
         "[Default Applications]\r\nt/x=p.desktop;\na/b = c;\r\n\n[X]\nt/x=o\n"},
        {"[Default Applications]\nt/xy=q\nt/x = o;p.desktop;\na/b=c\n",
         "[Default Applications]\nt/xy=q\nt/x=p.desktop;o;\na/b=c\n"},
        {"[Default Applications]\n t/x = p.desktop ; o\n#",
         "[Default Applications]\n t/x = p.desktop ; o\n#"},
    };
    for (const auto &[before, after] : table) {
        QCOMPARE(withDefaultApplication(before, "t/x", "p.desktop"), after);
        QCOMPARE(withDefaultApplication(after, "t/x", "p.desktop"), after);
    }
}

// The desktop's own launcher must find the program and hand it the whole path of the file. It does
// not wait for the program, so that `cat` does.
void TestDesktopRegistration::launchesProgramsInOddPlaces()
{
    for (const QString &folder :
         {u"\"a quoted\" it's"_s, u"50% off"_s, u"%f"_s, u"$HOME"_s, u"back\\slash\\\\"_s,
          u"`tick`"_s, u"(a)&;<b>|*?#~"_s, u"é日"_s, u"tab\there\nline"_s, u"a=b"_s}) {
        const QString program = home.data(u"programs/"_s) + folder + "/Pantrywise"_L1;
        setBytes(program, "#!/bin/sh\nprintf '<%s>' \"$0\" \"$@\"\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        const QString entry = home.data(u"applications/pantrywise.desktop"_s);
        setBytes(entry, desktopEntry(program));
        QCOMPARE(output(u"desktop-file-validate"_s, {entry}), QString());
        const QString launch = u"gio launch \"$0\" \"$@\" | cat"_s;
        QCOMPARE(output(u"sh"_s, {u"-c"_s, launch, entry, u"/a b/%f $x.srf"_s}),
                 u'<' + program + "></a b/%f $x.srf>"_L1);
    }
}

void TestDesktopRegistration::makesTheProgramKnown()
{
    registerWithDesktop(QCoreApplication::applicationFilePath());
    const QString type = QString::fromLatin1(recipeMimeType);
    QVERIFY(output(u"gio"_s, {u"mime"_s, type})
                .startsWith(u"Default application for “%1”: pantrywise.desktop"_s.arg(type)));
    QVERIFY(QFileInfo(home.data(u"icons/hicolor/scalable/apps/pantrywise.svg"_s)).size() > 100);

    const QString recipe = home.data(u"Soup.srf"_s);
    setBytes(recipe, "Leek soup\r\n");
    QVERIFY(output(u"gio"_s, {u"info"_s, u"-a"_s, u"standard::content-type"_s, recipe})
                .contains("standard::content-type: "_L1 + type));
    const QMimeDatabase database;
    QCOMPARE(database.mimeTypeForFile(recipe).name(), type);
    QVERIFY(database.mimeTypeForFile(recipe).inherits(u"text/plain"_s));
}

void TestDesktopRegistration::costsNothingTheSecondTime()
{
    const auto past = QDateTime::fromSecsSinceEpoch(1000);
    registerWithDesktop(u"/opt/old/Pantrywise"_s);
    QDirIterator files(home.data(u".."_s), QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    for (; files.hasNext(); ++count) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(past, QFile::FileModificationTime));
    }
    registerWithDesktop(u"/opt/old/Pantrywise"_s);
    QDirIterator again(home.data(u".."_s), QDir::Files, QDirIterator::Subdirectories);
    for (; again.hasNext(); --count)
        QCOMPARE(QFileInfo(again.next()).lastModified(), past);
    QCOMPARE(count, 0);

    registerWithDesktop(u"/opt/new/Pantrywise"_s);
    const QByteArray entry = bytesOf(home.data(u"applications/pantrywise.desktop"_s));
    QCOMPARE(entry.count("Exec=/opt/new/Pantrywise %f\n"), 2);
    QCOMPARE(entry.count("old"), 0);
}

void TestDesktopRegistration::staysSilentWithoutTheRight()
{
    setBytes(home.data(u"applications"_s), "a file");
    setBytes(home.data(u"mime"_s), "a file");
    QVERIFY(QDir().mkpath(home.config({})));
    const QByteArray defaults = QFile::encodeName(home.config(u"mimeapps.list"_s));
    QCOMPARE(mkfifo(defaults.data(), 0600), 0);
    registerWithDesktop(u"/opt/Pantrywise"_s);
    QCOMPARE(bytesOf(home.data(u"applications"_s)), "a file");
    QCOMPARE(bytesOf(home.data(u"mime"_s)), "a file");
    QVERIFY(!QFileInfo(home.config(u"mimeapps.list"_s)).isFile());
}

QTEST_GUILESS_MAIN(TestDesktopRegistration)
#include "tst_desktopregistration.moc"
