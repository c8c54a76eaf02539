#include "DefaultApplication.h"
#include "DesktopRegistration.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QDirIterator>
#include <QMimeDatabase>
#include <QProcess>
#include <QTest>

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

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

} // namespace

class TestDesktopRegistration : public QObject
{
    Q_OBJECT

    const TemporaryHome home;
    QStringList filesWithTimes(bool setBack) const;

private Q_SLOTS:
    void init();
    void mergesDefaultApplications_data();
    void mergesDefaultApplications();
    void launchesProgramsInOddPlaces_data();
    void launchesProgramsInOddPlaces();
    void makesTheProgramKnown();
    void costsNothingTheSecondTime();
    void staysSilentWithoutTheRight();
};

void TestDesktopRegistration::init()
{
    QDir(home.data({})).removeRecursively();
    QDir(home.config({})).removeRecursively();
}

void TestDesktopRegistration::mergesDefaultApplications_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    const auto row = [](const char *name, const QByteArray &before, const QByteArray &after) {
        QTest::newRow(name) << before << after;
    };
    row("nothing", "", "[Default Applications]\nt/x=p.desktop;\n");
    row("no such section", "# mine\n[Added Associations]\nt/x=o.desktop",
        "# mine\n[Added Associations]\nt/x=o.desktop\n\n[Default Applications]\nt/x=p.desktop;\n");
    row("other types", "[Default Applications]\r\na/b = c.desktop;\r\n\n[X]\nt/x=o.desktop\n",
        "[Default Applications]\r\nt/x=p.desktop;\na/b = c.desktop;\r\n\n[X]\nt/x=o.desktop\n");
    row("another program", "[Default Applications]\nt/xy=q\nt/x = o.desktop;p.desktop;\na/b=c\n",
        "[Default Applications]\nt/xy=q\nt/x=p.desktop;o.desktop;\na/b=c\n");
    row("already so", "[Default Applications]\n t/x = p.desktop ; o.desktop\n#",
        "[Default Applications]\n t/x = p.desktop ; o.desktop\n#");
    row("in a second section", "[Default Applications]\n\n[Default Applications]\nt/x=o\n",
        "[Default Applications]\n\n[Default Applications]\nt/x=p.desktop;o;\n");
}

void TestDesktopRegistration::mergesDefaultApplications()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QCOMPARE(withDefaultApplication(before, "t/x", "p.desktop"), after);
    QCOMPARE(withDefaultApplication(after, "t/x", "p.desktop"), after);
}

void TestDesktopRegistration::launchesProgramsInOddPlaces_data()
{
    QTest::addColumn<QString>("directory");
    for (const auto &name :
         {u"plain"_s, u"a blank"_s, u"\"quoted\" it's"_s, u"50% off"_s, u"%f"_s, u"$HOME"_s,
          u"back\\slash\\\\"_s, u"`tick`"_s, u"(a)&;<b>|*?#~"_s, u"é日"_s, u"tab\there"_s,
          u"line\nend"_s, u"MIMETYPE COMMAND"_s, u"a=b"_s})
        QTest::newRow(qUtf8Printable(name)) << name;
}

// The desktop's own launcher must find the program and hand it the whole path of the file. It does
// not wait for the program, so that `cat` does.
void TestDesktopRegistration::launchesProgramsInOddPlaces()
{
    QFETCH(QString, directory);
    const QString program = home.data(u"programs/"_s) + directory + "/Pantrywise"_L1;
    write(program, "#!/bin/sh\nprintf '<%s>' \"$0\" \"$@\"\n");
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
    const QString entry = home.data(u"applications/pantrywise.desktop"_s);
    write(entry, desktopEntry(program));
    QCOMPARE(output(u"desktop-file-validate"_s, {entry}), QString());
    const QString launch = u"gio launch \"$0\" \"$@\" | cat"_s;
    QCOMPARE(output(u"sh"_s, {u"-c"_s, launch, entry, u"/a b/%f $x.srf"_s}),
             u'<' + program + "></a b/%f $x.srf>"_L1);
    QCOMPARE(output(u"sh"_s, {u"-c"_s, launch, entry}), u'<' + program + u'>');
}

void TestDesktopRegistration::makesTheProgramKnown()
{
    registerWithDesktop(QCoreApplication::applicationFilePath());
    const QString type = QString::fromLatin1(recipeMimeType);
    QVERIFY(output(u"gio"_s, {u"mime"_s, type})
                .startsWith(u"Default application for “%1”: pantrywise.desktop"_s.arg(type)));
    QVERIFY(QFileInfo(home.data(u"icons/hicolor/scalable/apps/pantrywise.svg"_s)).size() > 100);

    const QString recipe = home.data(u"Soup.srf"_s);
    write(recipe, "Leek soup\r\n");
    QVERIFY(output(u"gio"_s, {u"info"_s, u"-a"_s, u"standard::content-type"_s, recipe})
                .contains("standard::content-type: "_L1 + type));
    QVERIFY(contents(home.data(u"mime/globs2"_s)).contains("60:text/x-standard-recipe:*.srf\n"));
    const QMimeDatabase database;
    QCOMPARE(database.mimeTypeForFile(recipe).name(), type);
    QVERIFY(database.mimeTypeForFile(recipe).inherits(u"text/plain"_s));
    QCOMPARE(database.mimeTypeForName(type).comment(), u"Standard Recipe Format"_s);
}

// Every file below the two per-user directories with its time, all of them set back first.
QStringList TestDesktopRegistration::filesWithTimes(bool setBack) const
{
    QStringList result;
    for (const QString &root : {home.data({}), home.config({})}) {
        QDirIterator files(root, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            const auto past = QDateTime::fromSecsSinceEpoch(1000);
            if (setBack && file.open(QIODevice::ReadWrite))
                file.setFileTime(past, QFile::FileModificationTime);
            file.close();
            result += file.fileName() + u' ' + QFileInfo(file).lastModified().toString();
        }
    }
    result.sort();
    return result;
}

void TestDesktopRegistration::costsNothingTheSecondTime()
{
    registerWithDesktop(u"/opt/old/Pantrywise"_s);
    const QStringList before = filesWithTimes(true);
    QVERIFY(before.size() > 5);
    registerWithDesktop(u"/opt/old/Pantrywise"_s);
    QCOMPARE(filesWithTimes(false), before);

    registerWithDesktop(u"/opt/new/Pantrywise"_s);
    const QByteArray entry = contents(home.data(u"applications/pantrywise.desktop"_s));
    QCOMPARE(entry.count("Exec=/opt/new/Pantrywise %f\n"), 2);
    QCOMPARE(entry.count("old"), 0);
}

void TestDesktopRegistration::staysSilentWithoutTheRight()
{
    write(home.data(u"applications"_s), "a file");
    write(home.data(u"mime"_s), "a file");
    QVERIFY(QDir().mkpath(home.config({})));
    const QByteArray defaults = QFile::encodeName(home.config(u"mimeapps.list"_s));
    QCOMPARE(mkfifo(defaults.data(), 0600), 0);
    registerWithDesktop(u"/opt/Pantrywise"_s);
    QVERIFY(QFileInfo(home.data(u"applications"_s)).isFile());
    QVERIFY(QFileInfo(home.data(u"mime"_s)).isFile());
    struct stat status = {};
    QVERIFY(stat(defaults.data(), &status) == 0 && S_ISFIFO(status.st_mode));
}

QTEST_GUILESS_MAIN(TestDesktopRegistration)
#include "tst_desktopregistration.moc"
