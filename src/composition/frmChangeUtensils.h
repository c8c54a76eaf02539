#pragma once

#include "CompositionEditor.h"
#include "DataSource.h"

#include <memory>

namespace Ui {
class frmChangeUtensils;
}

// Decides which utensils a recipe needs.
class frmChangeUtensils final : public CompositionEditor
{
    Q_OBJECT

public:
    explicit frmChangeUtensils(Frame &frame);
    ~frmChangeUtensils() override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;

private:
    void cmdAdd_Click();
    void cmdRemove_Click();
    void cmdAddUtensil_Click();
    void cmdCancel_Click();
    void cmdDone_Click();

    void addSelected();

    // Stores the lines, or returns those whose utensil is gone and stores nothing.
    QStringList writeBack();

    std::unique_ptr<Ui::frmChangeUtensils> m_ui;
    DataSource datUtensils;
    DataSource datRecipeUtensils;
    qint64 m_recipeId = 0;
};
