#include "ApplicationInformation.h"
#include "CommandLine.h"
#include "DesktopDoorway.h"
#include "DesktopSession.h"
#include "Pantrywise.h"
#include "TerminalDoorway.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>

namespace {

QString importPath()
{
    return platform::commandLinePath(QApplication::arguments().sliced(1));
}

int runOnDesktop(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/pantrywise.svg")));
    DesktopDoorway doorway;
    return startUp(doorway, importPath());
}

// Without a desktop a recipe file can still be imported; the windows that are loaded for it are
// never shown.
int runInTerminal(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QString path = importPath();
    if (path.isEmpty()) {
        std::fputs(
            "Pantrywise needs a desktop: start it there, or give it a recipe file to import.\n",
            stderr);
        return 1;
    }
    TerminalDoorway doorway;
    return startUp(doorway, path);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(platform::productName());
    return platform::hasDesktop() ? runOnDesktop(argc, argv) : runInTerminal(argc, argv);
}
