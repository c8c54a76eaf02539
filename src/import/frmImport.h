#pragma once

#include "frame/ChildWindow.h"
#include "import/ImportModels.h"

#include <memory>

class frmImportRecipe;

namespace Ui {
class frmImport;
}

// The dialog in which the user chooses recipe files of a directory and imports them.
class frmImport final : public ChildWindow
{
    Q_OBJECT

public:
    // The importer must outlive the window.
    frmImport(Frame &frame, frmImportRecipe &importer);
    ~frmImport() override;

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    void drvRecipes_Change();
    void dirRecipes_Open(const QModelIndex &directory);
    void dirRecipes_Change();
    void lstRecipes_SelectionChange();
    void cmdSelectAll_Click();
    void cmdDeselectAll_Click();
    void cmdImport_Click();
    void cmdCancel_Click();

    void SetAllSelected(bool selected);
    void setDirectory(const std::filesystem::path &directory);
    void emptyIfVanished();
    std::vector<int> chosenRows() const;
    void importFiles(const std::vector<int> &rows);

    std::unique_ptr<Ui::frmImport> m_ui;
    frmImportRecipe &m_importer;
    std::vector<std::filesystem::path> m_drives; // in the order of drvRecipes
    DirectoryModel m_directories;
    RecipeFileModel m_files;
};
