#pragma once

#include <QDialog>

#include <memory>

class ErrorBoundary;
class Interaction;
class FilePathEdit;

namespace Ui {
class frmSettings;
}

// Shows and changes the user's settings: how recipes and ingredients are sorted, and the templates
// and the style of the web pages. They are stored on OK alone, and windows that are loaded after
// that go by them.
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

    void chooseTemplate(FilePathEdit &box);

    std::unique_ptr<Ui::frmSettings> m_ui;
    Interaction &m_interaction;
};
