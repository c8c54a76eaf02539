#include "app/Pantrywise.h"

#include "app/TakeoverOffer.h"
#include "app/frmMain.h"
#include "data/DatabasePath.h"
#include "data/settings/FileTypeRegistration.h"
#include "platform/ApplicationInformation.h"
#include "platform/Paths.h"

#include <QApplication>

int startUp(Interaction &interaction, const std::filesystem::path &importPath)
{
    DatabasePath = platform::joinPath(platform::programDirectory(), QStringLiteral("data.rbk"));
    registerFileType();
    offerTakeover(interaction, DatabasePath);

    frmMain mainWindow(interaction);
    if (const std::optional<int> status = mainWindow.MDIForm_Load(importPath))
        return *status;
    mainWindow.show();
    return QApplication::exec();
}
