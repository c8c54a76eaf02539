#pragma once

#include "composition/ComposedRecipe.h"
#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "recipes/RecipeRow.h"

#include <memory>

namespace Ui {
class frmRecipe;
}

// The record window: one recipe to read, to write and to describe, and the way through all others.
// What the user has not touched stays in the file as it is, whatever it is.
class frmRecipe final : public ChildWindow, public ComposedRecipe
{
    Q_OBJECT

public:
    explicit frmRecipe(Frame &frame);
    ~frmRecipe() override;

    // The key of the recipe that the next activation shows, then of the one shown; 0 for a new one
    // that is not stored yet.
    qint64 CurrentRecipeID = 0;

    qint64 recipeId() const override { return CurrentRecipeID; }
    QList<IngredientLine> ingredientLines() const override { return m_ingredientLines; }
    QStringList utensilLines() const override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;

private:
    void connectHandlers();

    void ShowRecipe();
    void showIngredients();
    void showUtensils();
    void showVegetarian();
    void setRecipeName(const QString &name);

    void txtAuthor_Change() { setRecipeChanged(); }
    void txtInstruction_Change() { setRecipeChanged(); }
    void txtServes_Change() { setRecipeChanged(); }
    void cmbRating_Click() { setRecipeChanged(); }
    void cmbRecipeType_Change() { setRecipeChanged(); }
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

    void setRecipeChanged();
    void LockFields(bool locked);
    QString storedDescription();

    // Each returns whether to go on. They do not where a save was refused, of which the user has
    // been told; where it fails they throw.
    bool SaveRecipe();
    bool promptToSave();
    bool saveForComposition();

    bool isServesGood() const;
    RecipeFields fieldsOnScreen() const;
    bool isTaken(const QString &name, qint64 ownKey);
    // A search or a save that failed may have moved the cursor away from the row shown.
    void findShownRow();

    std::unique_ptr<Ui::frmRecipe> m_ui;
    DataSource datRecipe;
    DataSource datIngredients;
    DataSource datUtensils;

    bool RecipeChanged = false;
    bool AllVegetarian = false;
    QString RecipeDescription;
    QList<IngredientLine> m_ingredientLines; // as listed
    bool m_holdsRecipe = false; // stored or new
    qint64 m_shownRow = 0; // key of the recipe shown, or of the one before while there is a new one
    RecipeFields m_shownFields; // as the display left them
};
