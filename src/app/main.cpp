#include "app/Pantrywise.h"
#include "interaction/TerminalInteraction.h"
#include "platform/ApplicationInformation.h"
#include "platform/Paths.h"
#include "platform/StartupEnvironment.h"
#include "widgets/DesktopInteraction.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(main)
};

// Call before QApplication is created, which removes its own options from the arguments.
std::filesystem::path importPathOf(int argc, char *argv[])
{
    return platform::commandLinePath({argv + 1, static_cast<std::size_t>(std::max(argc - 1, 0))});
}

// Some themes do not set this color; it would be black even on a dark background.
void setPlaceholderColor()
{
    constexpr float opacity = 0.6F;
    QPalette palette = QApplication::palette();
    QColor color = palette.color(QPalette::Text);
    color.setAlphaF(opacity);
    palette.setColor(QPalette::PlaceholderText, color);
    QApplication::setPalette(palette);
}

// Qt cannot name a file whose path is not valid text, neither data.rbk nor the program itself.
int checkFolderAndStart(Interaction &interaction, const std::filesystem::path &importPath)
{
    const QByteArray program = platform::programPathBytes();
    if (program.isValidUtf8())
        return startUp(interaction, importPath);
    interaction.showError(
        platform::productName(),
        Text::tr("Pantrywise cannot work in a folder whose name contains unreadable characters:\n"
                 "%1\nRename it, and start Pantrywise again.")
            .arg(platform::escapeInvalidText(program)));
    return 1;
}

int runOnDesktop(int argc, char *argv[], platform::XConnection connection)
{
    const std::filesystem::path importPath = importPathOf(argc, argv);
    QApplication application(argc, argv);
    connection.reset();
    setPlaceholderColor();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/pantrywise.svg")));
    DesktopInteraction interaction;
    return checkFolderAndStart(interaction, importPath);
}

// Imports a recipe file without a desktop. QApplication needs the platform "offscreen" for the
// windows that are loaded and never shown.
int runInTerminal(int argc, char *argv[])
{
    const std::filesystem::path importPath = importPathOf(argc, argv);
    if (importPath.empty()) {
        std::fputs(
            "Pantrywise needs a desktop, and no display can be reached: start it on a desktop, or "
            "give it a recipe file to import.\n",
            stderr);
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    TerminalInteraction interaction;
    return checkFolderAndStart(interaction, importPath);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(platform::productName());
    platform::ignorePluginsOfOtherQt();
    platform::Desktop desktop = platform::findDesktop();
    return desktop.isReachable ? runOnDesktop(argc, argv, std::move(desktop.connection))
                               : runInTerminal(argc, argv);
}
