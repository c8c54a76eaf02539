#include "platform/DesktopRegistration.h"
#include "support/FileBytes.h"
#include "support/Rows.h"
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

class tst_DesktopRegistration : public QObject
{
    Q_OBJECT

    const TemporaryHome m_home;

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
    }

    void keepsWhatItCannotRead()
    {
        QVERIFY(QDir().mkpath(m_home.config({})));
        const QByteArray defaults = QFile::encodeName(m_home.config(u"mimeapps.list"_s));
        QCOMPARE(mkfifo(defaults.data(), 0600), 0);
        registerWithDesktop(u"/opt/Pantrywise"_s);
        QVERIFY(!QFileInfo(m_home.config(u"mimeapps.list"_s)).isFile());
    }
};

QTEST_GUILESS_MAIN(tst_DesktopRegistration)
#include "tst_desktopregistration.moc"
