#pragma once

#include "CompositionEditor.h"
#include "DataSource.h"
#include "IngredientLine.h"

#include <memory>

namespace Ui {
class frmChangeIngredients;
}

// Decides which ingredients a recipe uses, and how much of each.
class frmChangeIngredients final : public CompositionEditor
{
    Q_OBJECT

public:
    explicit frmChangeIngredients(Frame &frame);
    ~frmChangeIngredients() override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;

private:
    void cmdAdd_Click();
    void cmdRemove_Click();
    void cmdAddIngredient_Click();
    void cmdCancel_Click();
    void cmdDone_Click();

    void addSelected();
    bool isListed(const QString &name) const;

    // Stores the lines, or returns those whose ingredient is gone and stores nothing.
    QStringList writeBack();

    std::unique_ptr<Ui::frmChangeIngredients> m_ui;
    DataSource datIngredients;
    DataSource datRecipeIngredients;
    qint64 m_recipeId = 0;
    QList<IngredientLine> m_lines; // of lstRecipeIngredients
};
