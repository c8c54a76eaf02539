#pragma once

#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "recipes/RecipeIndex.h"
#include "recipes/RecipeListModel.h"
#include "search/SearchQuery.h"

#include <exception>
#include <memory>

namespace Ui {
class frmRecipes;
}

// The list of all recipes, from which the user opens them.
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
    void refresh() override { Form_Activate(); }

private:
    void setUpColumns();
    void setUpFindBar();
    void readRecipes();
    std::exception_ptr narrowRecipes();
    RecipeListModel::Keys foundRecipes();
    int selectedOrNearestRow(int row) const;
    int proposedRow(const QString &typed) const;
    void showState();
    void showCount();
    void findBar_TextChange(const QString &text);
    void findBar_MoveRequest(Qt::Key key);
    void cmdClearFind_Click();
    void lvwRecipes_ColumnClick(int column); // from 0
    void lvwRecipes_DblClick();
    void lvwRecipes_SelectionChange();
    void cmdView_Click();
    void cmdClose_Click();

    std::unique_ptr<Ui::frmRecipes> m_ui;
    DataSources m_sources;
    DataSource datRecipes{m_sources};
    RecipeListModel m_recipes;
    RecipeIndex m_index;
    SearchQuery m_query;
    bool m_keepsRows = false; // whether a letter could not read them again
    qint64 m_selectedRecipe = 0; // the last one; it need not be shown any more
    qint64 m_proposedRecipe = 0; // the one that this window selected when a letter was typed
};
