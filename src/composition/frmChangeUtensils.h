#pragma once

#include "composition/CompositionEditor.h"

#include <memory>

namespace Ui {
class frmChangeUtensils;
}

// The editor in which the user chooses a recipe's utensils.
class frmChangeUtensils final : public CompositionEditor
{
    Q_OBJECT

public:
    explicit frmChangeUtensils(Frame &frame);
    ~frmChangeUtensils() override;

protected:
    void Form_Load() override;
    void Form_Activate() override;
    void addSelected() override;
    void cmdRemove_Click() override;
    QStringList names() const override;

private:
    void cmdAddUtensil_Click();

    std::unique_ptr<Ui::frmChangeUtensils> m_ui;
    DataSource datUtensils{sources()};
    DataSource datRecipeUtensils{sources()};
};
