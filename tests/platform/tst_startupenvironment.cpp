#include "platform/StartupEnvironment.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
using namespace Qt::Literals::StringLiterals;

class tst_StartupEnvironment : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_folder;

private Q_SLOTS:
    void takesThePathFromTheCommandLine_data()
    {
        QTest::addColumn<QByteArrayList>("arguments");
        QTest::addColumn<QByteArray>("path"); // %1 is the current directory
        QTest::newRow("none") << QByteArrayList() << QByteArray();
        QTest::newRow("empty") << QByteArrayList{""} << QByteArray();
        QTest::newRow("several arguments") << QByteArrayList{"/a/../Leek", "and", "", "Ham.srf "}
                                           << QByteArray("/a/../Leek and  Ham.srf ");
        QTest::newRow("relative, not text")
            << QByteArrayList{"no text \xFC.srf"} << QByteArray("%1/no text \xFC.srf");
        QTest::newRow("quotes in the name")
            << QByteArrayList{"\"quoted\""} << QByteArray("%1/\"quoted\"");
        QTest::newRow("quotes around the path")
            << QByteArrayList{"\"/no", "where\""} << QByteArray("/no where");
    }

    void takesThePathFromTheCommandLine()
    {
        QFETCH(const QByteArrayList, arguments);
        QFETCH(QByteArray, path);
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder.path()));
        const auto restore = qScopeGuard([&] { QDir::setCurrent(before); });
        QVERIFY(QFile(m_folder.filePath(u"\"quoted\""_s)).open(QIODevice::WriteOnly));
        std::vector<const char *> pointers;
        for (const QByteArray &argument : arguments)
            pointers.push_back(argument.constData());
        QCOMPARE(QByteArray::fromStdString(commandLinePath(pointers).native()),
                 path.replace("%1", QFile::encodeName(QDir::currentPath())));
    }

    void knowsWhetherWindowsCanBeSeen_data()
    {
        QTest::addColumn<QByteArray>("display");
        QTest::addColumn<QByteArray>("waylandDisplay");
        QTest::addColumn<QByteArray>("qtPlatform");
        QTest::addColumn<bool>("isSeen");
        const auto row = [](const char *name, const QByteArray &display, const QByteArray &wayland,
                            const QByteArray &qtPlatform, bool isSeen) {
            QTest::newRow(name) << display << wayland << qtPlatform << isSeen;
        };
        row("no display", {}, {}, {}, false);
        row("X", ":0", {}, {}, true);
        row("Wayland", {}, "wayland-0", {}, true);
        row("offscreen in spite of a display", ":0", "wayland-0", "offscreen", false);
        row("minimal with options", ":0", {}, "minimal:enable_fonts", false);
        row("chosen platform without a display", {}, {}, "linuxfb", true);
    }

    void knowsWhetherWindowsCanBeSeen()
    {
        QFETCH(const QByteArray, display);
        QFETCH(const QByteArray, waylandDisplay);
        QFETCH(const QByteArray, qtPlatform);
        qputenv("DISPLAY", display);
        qputenv("WAYLAND_DISPLAY", waylandDisplay);
        qputenv("QT_QPA_PLATFORM", qtPlatform);
        QTEST(hasDesktop(), "isSeen");
    }
};

QTEST_GUILESS_MAIN(tst_StartupEnvironment)
#include "tst_startupenvironment.moc"
