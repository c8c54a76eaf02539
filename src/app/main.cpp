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

int runOnDesktop(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/pantrywise.svg")));
    DesktopDoorway doorway;
    return startUp(doorway, platform::commandLinePath(QApplication::arguments().sliced(1)));
}

// Without a desktop a recipe file can still be imported; the windows that are loaded for it are
// never shown.
int runInTerminal(int argc, char *argv[])
{
    if (argc < 2) {
        std::fputs(
            "Pantrywise needs a desktop: start it there, or give it a recipe file to import.\n",
            stderr);
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    TerminalDoorway doorway;
    return startUp(doorway, platform::commandLinePath(QApplication::arguments().sliced(1)));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(platform::productName());
    return platform::hasDesktop() ? runOnDesktop(argc, argv) : runInTerminal(argc, argv);
}
