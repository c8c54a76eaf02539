#pragma once

#include "composition/ComposedRecipe.h"
#include "composition/CompositionEditor.h"

#include <memory>

namespace Ui {
class frmChangeIngredients;
}

// The editor in which the user chooses a recipe's ingredients and their quantities.
class frmChangeIngredients final : public CompositionEditor
{
    Q_OBJECT

public:
    explicit frmChangeIngredients(Frame &frame);
    ~frmChangeIngredients() override;

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void addSelected() override;
    void cmdRemove_Click() override;
    QStringList names() const override;
    void setFields(RecordCursor &row, qsizetype line) const override;

private:
    void cmdAddIngredient_Click();

    std::unique_ptr<Ui::frmChangeIngredients> m_ui;
    DataSource datIngredients{sources()};
    DataSource datRecipeIngredients{sources()};
    QList<IngredientLine> m_lines; // what lstRecipeIngredients shows
};
