#pragma once

#include "catalogs/CatalogWindow.h"

#include <memory>

namespace Ui {
class frmIngredient;
}

// The ingredient catalog: the list of all ingredients, and the fields of the selected or of a new
// one.
class frmIngredient final : public CatalogWindow
{
    Q_OBJECT

public:
    explicit frmIngredient(Frame &frame);
    ~frmIngredient() override;

protected:
    void Form_Load() override;
    QByteArrayView compositionEditor() const override { return "frmChangeIngredients"; }
    void showNone() override;
    void showNew() override;
    void save() override { SaveIngredient(); }
    Fields fieldsOnScreen() const override;
    bool checkFields() override;
    QString reasonNameIsTaken(RecordCursor &rows) override;

private:
    void lstIngredients_Click();
    void txtIngredient_Change();
    void txtShelfLife_Change();
    void cmbType_Click();
    void cmbType_Change();
    void chkVegetarian_Click();
    void cmdDelete_Click();
    void cmdDone_Click();

    void connectHandlers();
    void ShowIngredient();
    void showShelfLife(const QString &days);
    void SaveIngredient();
    void deleteIngredient();

    std::unique_ptr<Ui::frmIngredient> m_ui;
    DataSource datIngredients{sources()};
    WarningFrame *m_shelfLifeWarning = nullptr;
};
