#include "export/ExportCommand.h"

#include "data/DatabasePath.h"
#include "export/ExportError.h"
#include "export/WebPages.h"
#include "interaction/Interaction.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QUrl>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(ExportCommand)
};

QString title()
{
    return Text::tr("Export");
}

std::optional<ExportedPages> exportWithProgress(Interaction &interaction, const QString &folder)
{
    const std::unique_ptr<Progress> progress = interaction.startProgress(title());
    return exportPages(DatabasePath, folder, Settings::load().pages, *progress);
}

void offerPages(Interaction &interaction, const ExportedPages &pages)
{
    const QString folder = QDir::toNativeSeparators(QFileInfo(pages.mainMenu).path());
    const QString text = pages.recipes == 1
        ? Text::tr("1 recipe was written to %1.").arg(folder)
        : Text::tr("%1 recipes were written to %2.")
              .arg(QLocale(QLocale::English).toString(pages.recipes), folder);
    const Button answer = interaction.show({.text = text,
                                            .title = title(),
                                            .icon = Icon::Information,
                                            .buttons = {Button::Open, Button::Close},
                                            .defaultButton = Button::Open});
    if (answer != Button::Open || QDesktopServices::openUrl(QUrl::fromLocalFile(pages.mainMenu)))
        return;
    interaction.showError(title(),
                          Text::tr("No browser could be started. Open %1 in your browser.")
                              .arg(QDir::toNativeSeparators(pages.mainMenu)));
}

} // namespace

void exportWebPages(Interaction &interaction)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    for (;;) {
        folder = interaction.choose(
            FolderChooser{Text::tr("Choose a folder for the web pages"), folder});
        if (folder.isEmpty())
            return;
        try {
            if (const auto pages = exportWithProgress(interaction, folder))
                offerPages(interaction, *pages);
            return;
        } catch (const ForeignFolderError &failure) {
            interaction.showError(title(), failure.text());
        } catch (const ExportError &failure) {
            interaction.showError(title(), failure.text());
            return;
        }
    }
}
