#pragma once

#include "app/CopyOffer.h"
#include "frame/Frame.h"

#include <QMainWindow>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

class frmImportRecipe;

namespace Ui {
class frmMain;
}

// The program's only top-level window. Its menus open all other windows, inside it.
class frmMain final : public QMainWindow
{
    Q_OBJECT

public:
    explicit frmMain(Interaction &interaction);
    ~frmMain() override;

    // Loads the hidden import worker and, if there is a path, imports that recipe file. Returns the
    // exit status of the program if the program must end then, and otherwise nothing.
    std::optional<int> MDIForm_Load(const std::filesystem::path &importPath);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void mnuImport_Click();
    void mnuExport_Click();
    void mnuSettings_Click();
    void mnuExit_Click();
    void mnuRecipes_Click();
    void mnuAbout_Click();
    void mnuIngredient_Click();
    void mnuUtensil_Click();
    void MDIForm_Unload();

    bool runWithOffer(const std::function<void()> &handler);

    std::unique_ptr<Ui::frmMain> m_ui;
    Frame m_frame;
    CopyOffer m_copyOffer{m_frame};
    std::unique_ptr<frmImportRecipe> m_importRecipe;
};
