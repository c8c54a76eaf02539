#include "ApplicationInformation.h"
#include "CommandLine.h"
#include "DesktopDoorway.h"
#include "DesktopSession.h"
#include "Pantrywise.h"
#include "TerminalDoorway.h"

#include <QApplication>
#include <QIcon>

#include <algorithm>
#include <cstdio>

namespace {

// Of all arguments: QApplication takes those out that it knows itself.
std::filesystem::path importPathOf(int argc, char *argv[])
{
    return platform::commandLinePath({argv + 1, static_cast<std::size_t>(std::max(argc - 1, 0))});
}

int runOnDesktop(int argc, char *argv[])
{
    const std::filesystem::path importPath = importPathOf(argc, argv);
    QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/pantrywise.svg")));
    DesktopDoorway doorway;
    return startUp(doorway, importPath);
}

// Without a desktop a recipe file can still be imported; the windows that are loaded for it are
// never shown.
int runInTerminal(int argc, char *argv[])
{
    const std::filesystem::path importPath = importPathOf(argc, argv);
    if (importPath.empty()) {
        std::fputs(
            "Pantrywise needs a desktop: start it there, or give it a recipe file to import.\n",
            stderr);
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    TerminalDoorway doorway;
    return startUp(doorway, importPath);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(platform::productName());
    return platform::hasDesktop() ? runOnDesktop(argc, argv) : runInTerminal(argc, argv);
}
