#pragma once

#include "ChildWindow.h"
#include "DataSource.h"

#include <memory>

namespace Ui {
class frmIngredient;
}

// The ingredient catalog: the list of all ingredients, and the fields of the one that is selected
// or of a new one. It keeps the activation until its Done.
class frmIngredient final : public ChildWindow
{
    Q_OBJECT

public:
    explicit frmIngredient(Frame &frame);
    ~frmIngredient() override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept override { return true; }
    QByteArrayView compositionEditor() const override { return "frmChangeIngredients"; }

private:
    void lstIngredients_Click();
    void txtIngredient_Change();
    void txtShelfLife_Change();
    void cmbType_Click();
    void cmbType_Change();
    void chkVegetarian_Click();
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdNew_Click();
    void cmdDelete_Click();
    void cmdSave_Click();
    void cmdDone_Click();

    void connectHandlers();
    void fillList(); // selects nothing; an empty catalog gets a new record
    void ShowIngredient();
    void showNewIngredient();
    void setChanged(bool changed);
    void offerToSave();
    void step(int rows);

    bool isRefused();
    void SaveIngredient();
    void writeIngredient();
    void deleteIngredient();

    std::unique_ptr<Ui::frmIngredient> m_ui;
    DataSource datIngredients;
    qint64 CurrentIngredientID = 0; // of the one that is shown; 0 for a new one
    bool IngredientChanged = false;
    QString m_shownShelfLife; // as long as it stands unchanged, what is stored stays
};
