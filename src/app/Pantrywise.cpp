#include "Pantrywise.h"

#include "ApplicationInformation.h"
#include "DatabasePath.h"
#include "FileTypeRegistration.h"
#include "Paths.h"
#include "frmMain.h"

#include <QApplication>

int startUp(Doorway &doorway, const std::filesystem::path &importPath)
{
    DatabasePath = platform::joinPath(platform::programDirectory(), QStringLiteral("data.rbk"));
    registerFileType();

    frmMain mainWindow(doorway);
    if (const std::optional<int> status = mainWindow.MDIForm_Load(importPath))
        return *status;
    mainWindow.show();
    return QApplication::exec();
}
