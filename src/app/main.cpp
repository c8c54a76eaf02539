#include "ApplicationInformation.h"
#include "CommandLine.h"
#include "DesktopDoorway.h"
#include "DesktopSession.h"
#include "Pantrywise.h"
#include "TerminalDoorway.h"

#include <QApplication>
#include <QFile>
#include <QIcon>

#include <cstdio>

namespace {

// All of them: QApplication takes those out that it knows itself.
QStringList argumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QFile::decodeName(argv[i]);
    return arguments;
}

int runOnDesktop(int argc, char *argv[])
{
    const QString importPath = platform::commandLinePath(argumentsOf(argc, argv));
    QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/pantrywise.svg")));
    DesktopDoorway doorway;
    return startUp(doorway, importPath);
}

// Without a desktop a recipe file can still be imported; the windows that are loaded for it are
// never shown.
int runInTerminal(int argc, char *argv[])
{
    const QString importPath = platform::commandLinePath(argumentsOf(argc, argv));
    if (importPath.isEmpty()) {
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
