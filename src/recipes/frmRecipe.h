#pragma once

#include "composition/ComposedRecipe.h"
#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "recipes/RecipeRow.h"

#include <functional>
#include <memory>
#include <optional>

namespace Ui {
class frmRecipe;
}

// The record window: shows one recipe to read and edit, and steps through all others. A stored
// value that the user does not edit is never rewritten, even if it cannot be shown as it is.
class frmRecipe final : public ChildWindow, public ComposedRecipe
{
    Q_OBJECT

public:
    explicit frmRecipe(Frame &frame);
    ~frmRecipe() override;

    // Shows the recipe with this key, or the first one if there is no such key: at once if the
    // window is active, else when it is activated next. Unsaved changes are lost.
    void setCurrentRecipeID(qint64 key);

    qint64 recipeId() const override { return m_shown ? m_shown->key : 0; }
    QList<IngredientLine> ingredientLines() const override
    {
        return m_shown ? m_shown->ingredients : QList<IngredientLine>();
    }
    QStringList utensilLines() const override
    {
        return m_shown ? m_shown->utensils : QStringList();
    }

protected:
    void Form_Load() override;
    void openDataSources() override { m_sources.open(); }
    void Form_Activate() override;
    void Form_Deactivate() override { m_sources.suspend(); } // until Form_Activate requeries
    void refresh() override; // unless there are unsaved changes
    void changeEvent(QEvent *event) override;

private:
    void connectHandlers();

    // Runs an action that reads and displays a recipe. If it throws, the window shows no recipe,
    // since neither the one before nor a part of the other one is what the user asked for.
    void replaceShown(const std::function<void()> &action);
    // To be called by such an action. They throw DatabaseError.
    void showCurrentRecipe();
    void ShowRecipe(); // the one in the current row of datRecipe
    void display(const ShownRecipe &recipe);
    void showNext();
    void showPrevious();

    void showNeighbour(void (frmRecipe::*showIt)());

    void showNone();
    void showReadFailure(bool failed);
    void showFields(const ShownRecipe &recipe);
    void showVegetarian();

    void txtAuthor_Change() { setRecipeChanged(true); }
    void txtInstruction_Change() { setRecipeChanged(true); }
    void txtServes_Change() { setRecipeChanged(true); }
    void cmbRating_Click() { setRecipeChanged(true); }
    void cmbRecipeType_Change() { setRecipeChanged(true); }
    void chkVegetarian_Click() { showVegetarian(); }
    void cmdChangeIngredients_Click();
    void cmdChangeUtensils_Click();
    void cmdDescription_Click();
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdNew_Click();
    void cmdEdit_Click();
    void cmdSave_Click();
    void cmdDone_Click();

    void setRecipeChanged(bool changed);
    void setUnedited();
    void LockFields(bool locked);
    void showLockedColors();

    // Each returns whether the caller may go on; false if what was entered cannot be saved, which
    // the user has then been told. They throw DatabaseError if saving fails. SaveRecipe() needs a
    // recipe that is shown.
    bool SaveRecipe();
    bool promptToSave();
    bool requireRecipe(); // false if no recipe is shown
    bool saveForComposition();

    bool isServesValid() const;
    RecipeFields fieldsOnScreen() const;
    bool isTaken(const QString &name, qint64 ownKey);
    // Moves datRecipe back to its row, since a name search or a failed save may have moved it.
    void restoreRow();

    std::unique_ptr<Ui::frmRecipe> m_ui;
    DataSources m_sources;
    DataSource datRecipe{m_sources};
    DataSource datIngredients{m_sources};
    DataSource datUtensils{m_sources};

    qint64 CurrentRecipeID = 0; // of the recipe that the next activation shows
    std::optional<ShownRecipe> m_shown; // nullopt if no recipe is shown
    bool m_readFailed = false; // which is why no recipe is shown
    qint64 m_rowKey = 0; // of datRecipe's row: the recipe shown, or the last one before a new one
    bool RecipeChanged = false;
    QString RecipeDescription; // as it will be saved
};
