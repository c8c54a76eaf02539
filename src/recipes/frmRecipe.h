#pragma once

#include "composition/ComposedRecipe.h"
#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "recipes/RecipeRow.h"

#include <memory>

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

    // To show another recipe, call this after showing the window: the next activation shows it.
    void setCurrentRecipeID(qint64 key) { CurrentRecipeID = key; }

    qint64 recipeId() const override { return CurrentRecipeID; }
    QList<IngredientLine> ingredientLines() const override { return m_ingredientLines; }
    QStringList utensilLines() const override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;

private:
    // Whether the description is shown or edited. The fields are locked separately: LockFields().
    enum class Mode { Reading, Editing };

    void connectHandlers();

    void ShowRecipe();
    void showIngredients();
    void showUtensils();
    void showVegetarian();
    void setRecipeName(const QString &name);

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
    void setMode(Mode mode);
    void LockFields(bool locked);
    QString storedDescription();

    // Each returns whether the caller may go on; false if what was entered cannot be saved, which
    // the user has then been told. They throw DatabaseError if saving fails.
    bool SaveRecipe();
    bool promptToSave();
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

    // The key of the recipe shown; 0 for a new one that is not stored yet.
    qint64 CurrentRecipeID = 0;
    bool RecipeChanged = false;
    bool AllVegetarian = false;
    QString RecipeDescription;
    QList<IngredientLine> m_ingredientLines; // in the order shown
    Mode m_mode = Mode::Editing; // until the first display
    bool m_hasRecipe = false; // whether a stored or new recipe is shown
    RecipeFields m_shownFields; // as ShowRecipe() left them; default for a new recipe
    qint64 m_rowKey = 0; // of datRecipe's row: the recipe shown, or the last one before a new one
};
