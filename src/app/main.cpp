#include "app/Pantrywise.h"
#include "interaction/TerminalInteraction.h"
#include "platform/ApplicationInformation.h"
#include "platform/StartupEnvironment.h"
#include "widgets/DesktopInteraction.h"

#include <QApplication>
#include <QIcon>
#include <QPalette>

#include <algorithm>
#include <cstdio>

namespace {

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

int runOnDesktop(int argc, char *argv[])
{
    const std::filesystem::path importPath = importPathOf(argc, argv);
    QApplication application(argc, argv);
    setPlaceholderColor();
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/pantrywise.svg")));
    DesktopInteraction interaction;
    return startUp(interaction, importPath);
}

// Imports a recipe file without a desktop. QApplication needs the platform "offscreen" for the
// windows that are loaded and never shown.
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
    TerminalInteraction interaction;
    return startUp(interaction, importPath);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(platform::productName());
    return platform::hasDesktop() ? runOnDesktop(argc, argv) : runInTerminal(argc, argv);
}
