#include "CommandLine.h"
#include "DesktopSession.h"
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
    const QString here = QDir::currentPath() + u'/';
    for (const QString &name : {u"\"quoted\""_s, u"plain"_s})
        QVERIFY(QFile(here + name).open(QIODevice::WriteOnly));
    const std::pair<QStringList, QString> table[] = {
        {{}, u""_s},
        {{u""_s}, u""_s},
        {{u"/a/Leek"_s, u"and"_s, u""_s, u"Ham.srf"_s}, u"/a/Leek and  Ham.srf"_s},
        {{u"/a/../b//c.srf "_s}, u"/a/../b//c.srf "_s},
        {{u"../c.srf"_s}, here + "../c.srf"_L1},
        {{u":/icons/pantrywise.svg"_s}, here + ":/icons/pantrywise.svg"_L1},
        {{u"\"quoted\""_s}, here + "\"quoted\""_L1},
        {{u"\"plain\""_s}, here + "plain"_L1},
        {{u"\"/no"_s, u"where\""_s}, u"/no where"_s},
        {{u"\""_s}, here + "\""_L1},
    };
    for (const auto &[arguments, path] : table)
        QCOMPARE(commandLinePath(arguments), path);
    QDir::setCurrent(before);
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
