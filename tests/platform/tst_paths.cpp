#include "CommandLine.h"
#include "DesktopSession.h"
#include "FileType.h"
#include "Paths.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <array>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class TestPaths : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void joinsInBothStyles();
    void tellsTheRegistryOfRecipeFiles();
    void takesThePathFromTheCommandLine();
    void findsADesktop();
};

void TestPaths::joinsInBothStyles()
{
    QCOMPARE(joinPath(u"C:\\Apps"_s, u"data.rbk"_s, PathStyle::Windows), u"C:\\Apps\\data.rbk"_s);
    QCOMPARE(joinPath(u"/opt/a b"_s, u"data.rbk"_s, PathStyle::Unix), u"/opt/a b/data.rbk"_s);
    QCOMPARE(joinPath(u"/opt"_s, u"x"_s), u"/opt/x"_s);
}

void TestPaths::tellsTheRegistryOfRecipeFiles()
{
    const auto entries = [](const QString &directory, PathStyle style) {
        QStringList lines;
        for (const FileTypeEntry &e : fileTypeEntries(directory, u"Pantrywise"_s, style))
            lines += e.key + " -> "_L1 + e.defaultValue;
        return lines;
    };
    const QStringList windows = {
        u".srf -> srffile"_s,
        u"srffile -> Standard Recipe Format"_s,
        u"srffile\\DefaultIcon -> C:\\Apps\\Pantrywise.exe,0"_s,
        u"srffile\\Shell -> Import"_s,
        u"srffile\\Shell\\Import\\command -> \"C:\\Apps\\Pantrywise.exe\" %1"_s,
    };
    QCOMPARE(entries(u"C:\\Apps"_s, PathStyle::Windows), windows);
    const QStringList unixEntries = entries(u"/opt/a b"_s, PathStyle::Unix);
    QCOMPARE(unixEntries[2], u"srffile\\DefaultIcon -> /opt/a b/Pantrywise,0"_s);
    QCOMPARE(unixEntries[4], u"srffile\\Shell\\Import\\command -> \"/opt/a b/Pantrywise\" %1"_s);
}

void TestPaths::takesThePathFromTheCommandLine()
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    const QString here = QDir::currentPath() + u'/';
    for (const auto *name : {u"\"quoted\"", u"plain"}) {
        QFile file(here + QString::fromUtf16(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    struct Case {
        QStringList arguments;
        QString path;
    };
    const std::array cases = {
        Case{{}, u""_s},
        Case{{u""_s}, u""_s},
        Case{{u"/a/Leek"_s, u"and"_s, u""_s, u"Ham.srf"_s}, u"/a/Leek and  Ham.srf"_s},
        Case{{u"/a/../b//c.srf "_s}, u"/a/../b//c.srf "_s},
        Case{{u"plain"_s}, here + "plain"_L1},
        Case{{u"../c.srf"_s}, here + "../c.srf"_L1},
        Case{{u":/icons/pantrywise.svg"_s}, here + ":/icons/pantrywise.svg"_L1},
        Case{{u"\"quoted\""_s}, here + "\"quoted\""_L1},
        Case{{u"\"plain\""_s}, here + "plain"_L1},
        Case{{u"\"/no"_s, u"where\""_s}, u"/no where"_s},
        Case{{u"\""_s}, here + "\""_L1},
        Case{{u"\"\""_s}, here + "\"\""_L1},
    };
    for (const Case &c : cases)
        QCOMPARE(commandLinePath(c.arguments), c.path);
    QDir::setCurrent(before);
}

void TestPaths::findsADesktop()
{
    struct Case {
        const char *wayland;
        const char *x;
        const char *chosen;
        bool isDesktop;
    };
    const std::array cases = {
        Case{"", "", "", false},
        Case{"wayland-0", "", "", true},
        Case{"", ":0", "", true},
        Case{"", "", "xcb", true},
        Case{"", ":0", "offscreen", false},
        Case{"", ":0", "minimal:x=1", false},
        Case{"", "", "minimalegl", true},
    };
    for (const Case &c : cases) {
        qputenv("WAYLAND_DISPLAY", c.wayland);
        qputenv("DISPLAY", c.x);
        qputenv("QT_QPA_PLATFORM", c.chosen);
        QVERIFY2(hasDesktop() == c.isDesktop, c.chosen);
    }
}

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
