#include "ExportCommand.h"

#include "DatabasePath.h"
#include "Doorway.h"
#include "ExportFailure.h"
#include "ProgressBox.h"
#include "WebPages.h"

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

std::optional<ExportedPages> exportWithProgress(const QString &folder, QWidget *window)
{
    ProgressBox progress(title(), window);
    return exportPages(DatabasePath, folder, storedPageSettings(), progress);
}

void tellFailure(Doorway &doorway, const ExportFailure &failure)
{
    doorway.show({.text = failure.text(), .title = title(), .icon = Icon::Exclamation});
}

void offerPages(Doorway &doorway, const ExportedPages &pages)
{
    const QString folder = QDir::toNativeSeparators(QFileInfo(pages.mainMenu).path());
    const QString text = pages.recipes == 1
        ? Text::tr("1 recipe was written to %1.").arg(folder)
        : Text::tr("%1 recipes were written to %2.")
              .arg(QLocale(QLocale::English).toString(pages.recipes), folder);
    const Button answer = doorway.show({.text = text,
                                        .title = title(),
                                        .icon = Icon::Information,
                                        .buttons = {Button::Open, Button::Close},
                                        .defaultButton = Button::Open});
    if (answer != Button::Open || QDesktopServices::openUrl(QUrl::fromLocalFile(pages.mainMenu)))
        return;
    doorway.show({.text = Text::tr("No browser could be started. Open %1 by hand.")
                              .arg(QDir::toNativeSeparators(pages.mainMenu)),
                  .title = title(),
                  .icon = Icon::Exclamation});
}

} // namespace

void exportWebPages(Doorway &doorway, QWidget *window)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    for (;;) {
        folder =
            doorway.choose(FolderChooser{Text::tr("Choose a folder for the web pages"), folder});
        if (folder.isEmpty())
            return;
        try {
            if (const auto pages = exportWithProgress(folder, window))
                offerPages(doorway, *pages);
            return;
        } catch (const ForeignFolder &failure) {
            tellFailure(doorway, failure);
        } catch (const ExportFailure &failure) {
            tellFailure(doorway, failure);
            return;
        }
    }
}
