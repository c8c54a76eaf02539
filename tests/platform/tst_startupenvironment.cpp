#include "platform/StartupEnvironment.h"
#include "support/Rows.h"

#include <QDir>
#include <QTemporaryDir>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class tst_StartupEnvironment : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_folder;

private Q_SLOTS:
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

    void knowsWhetherWindowsCanBeSeen_data()
    {
        addRows<QByteArray, QByteArray, QByteArray, bool>({
            {"no display", {}, {}, {}, false},
            {"X", ":0", {}, {}, true},
            {"Wayland", {}, "wayland-0", {}, true},
            {"offscreen in spite of a display", ":0", "wayland-0", "offscreen", false},
            {"minimal with options", ":0", {}, "minimal:enable_fonts", false},
            {"chosen platform without a display", {}, {}, "linuxfb", true},
        });
    }

    void knowsWhetherWindowsCanBeSeen()
    {
        const auto [display, waylandDisplay, qtPlatform, isSeen] =
            fetchRow<QByteArray, QByteArray, QByteArray, bool>();
        qputenv("DISPLAY", display);
        qputenv("WAYLAND_DISPLAY", waylandDisplay);
        qputenv("QT_QPA_PLATFORM", qtPlatform);
        QCOMPARE(hasDesktop(), isSeen);
    }
};

QTEST_GUILESS_MAIN(tst_StartupEnvironment)
#include "tst_startupenvironment.moc"
