#pragma once

#include <QDialog>

#include <memory>

class ErrorBoundary;
class FilePathEdit;
class Interaction;

namespace Ui {
class frmSettings;
}

// Shows and changes the settings: the order of recipes and ingredients, and the templates and the
// style of web pages. OK stores them; they apply to windows that are loaded after that.
class frmSettings final : public QDialog
{
    Q_OBJECT

public:
    frmSettings(Interaction &interaction, const ErrorBoundary &boundary, QWidget *parent = nullptr);
    ~frmSettings() override;

    void Form_Load();

private:
    void txtMainMenuTemplate_Click();
    void txtCategoryTemplate_Click();
    void txtRecipeTemplate_Click();
    void cmdClearMainMenuTemplate_Click();
    void cmdClearCategoryTemplate_Click();
    void cmdClearRecipeTemplate_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

    void chooseTemplate(FilePathEdit &edit);

    std::unique_ptr<Ui::frmSettings> m_ui;
    Interaction &m_interaction;
};
