#include "platform/DefaultApplication.h"
#include "platform/DesktopRegistration.h"
#include "support/FileBytes.h"
#include "support/TemporaryHome.h"

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
    process.waitForFinished();
    return QString::fromUtf8(process.readAll());
}

} // namespace

class TestDesktopRegistration : public QObject
{
    Q_OBJECT

    const TemporaryHome home;

private Q_SLOTS:
    void init()
    {
        for (const QString &root : {home.data({}), home.config({})})
            QDir(root).removeRecursively();
    }

    void mergesDefaultApplications()
    {
        const std::pair<QByteArray, QByteArray> table[] = {
            {"# mine\n[Added Associations]\nt/x=o",
             "# mine\n[Added Associations]\nt/x=o\n\n[Default Applications]\nt/x=p.desktop;\n"},
            {"[Default Applications]\r\na/b = c;\r\n\n[X]\nt/x=o\n",
             "[Default Applications]\r\nt/x=p.desktop;\na/b = c;\r\n\n[X]\nt/x=o\n"},
            {"[Default Applications]\nt/xy=q\n t/x = o;p.desktop;\na/b=c\n",
             "[Default Applications]\nt/xy=q\nt/x=p.desktop;o;\na/b=c\n"},
        };
        for (const auto &[before, after] : table) {
            QCOMPARE(withDefaultApplication(before, "t/x", "p.desktop"), after);
            QCOMPARE(withDefaultApplication(after, "t/x", "p.desktop"), after);
        }
    }

    // The desktop's own launcher must find the program and hand it the whole path of the file. It
    // does not wait for the program, so that `cat` does.
    void launchesProgramsInOddPlaces()
    {
        for (const QString &folder :
             {u"\"a quoted\" it's"_s, u"50% off"_s, u"%f"_s, u"$HOME back\\slash\\\\ `tick`"_s,
              u"(a)&;<b>|*?#~"_s, u"é日 tab\there\nline"_s, u"a=b"_s}) {
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

    void makesTheProgramKnown()
    {
        registerWithDesktop(u"/opt/old/Pantrywise"_s);
        const QDateTime before = QFileInfo(home.data(u"mime/mime.cache"_s)).lastModified();
        registerWithDesktop(QCoreApplication::applicationFilePath());
        QCOMPARE(QFileInfo(home.data(u"mime/mime.cache"_s)).lastModified(), before);
        const QString type = QString::fromLatin1(recipeMimeType);
        QVERIFY(output(u"gio"_s, {u"mime"_s, type})
                    .startsWith(u"Default application for “%1”: pantrywise.desktop"_s.arg(type)));
        QVERIFY(QFileInfo(home.data(u"icons/hicolor/scalable/apps/pantrywise.svg"_s)).size() > 100);
        const QString recipe = home.data(u"Soup.srf"_s);
        setBytes(recipe, "Leek soup\r\n");
        const QMimeType found = QMimeDatabase().mimeTypeForFile(recipe);
        QVERIFY(found.name() == type && found.inherits(u"text/plain"_s));
    }

    void staysSilentWithoutTheRight()
    {
        QVERIFY(QDir().mkpath(home.config({})));
        const QByteArray defaults = QFile::encodeName(home.config(u"mimeapps.list"_s));
        QCOMPARE(mkfifo(defaults.data(), 0600), 0);
        registerWithDesktop(u"/opt/Pantrywise"_s);
        QVERIFY(!QFileInfo(home.config(u"mimeapps.list"_s)).isFile());
    }
};

QTEST_GUILESS_MAIN(TestDesktopRegistration)
#include "tst_desktopregistration.moc"
