#pragma once

#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "recipes/RecipeListModel.h"

#include <memory>

namespace Ui {
class frmRecipes;
}

// The list of all recipes, and the only way to open one.
class frmRecipes final : public ChildWindow
{
    Q_OBJECT

public:
    explicit frmRecipes(Frame &frame);
    ~frmRecipes() override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;

private:
    void setUpColumns();
    void lvwRecipes_ColumnClick(int column); // from 0
    void lvwRecipes_DblClick();
    void lvwRecipes_SelectionChange();
    void cmdView_Click();
    void cmdClose_Click();

    std::unique_ptr<Ui::frmRecipes> m_ui;
    DataSource datRecipes;
    RecipeListModel m_recipes;
};
