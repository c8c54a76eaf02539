#pragma once

#include "composition/CompositionEditor.h"
#include "composition/IngredientLine.h"
#include "data/DataSource.h"

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
    void Form_Activate() override;
    void addSelected() override;
    void cmdRemove_Click() override;
    QStringList names() const override;
    void setFields(RecordCursor &row, qsizetype line) const override;

private:
    void cmdAddIngredient_Click();
    bool isListed(const QString &name) const;

    std::unique_ptr<Ui::frmChangeIngredients> m_ui;
    DataSource datIngredients;
    DataSource datRecipeIngredients;
    QList<IngredientLine> m_lines; // of lstRecipeIngredients
};
