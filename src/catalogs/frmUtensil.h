#pragma once

#include "catalogs/CatalogWindow.h"

#include <memory>

namespace Ui {
class frmUtensil;
}

// The utensil catalog: the list of all utensils, and the name of the selected or of a new one.
class frmUtensil final : public CatalogWindow
{
    Q_OBJECT

public:
    explicit frmUtensil(Frame &frame);
    ~frmUtensil() override;

protected:
    void Form_Load() override;
    QByteArrayView compositionEditor() const override { return "frmChangeUtensils"; }
    void save() override { SaveUtensil(); }
    Fields fieldsOnScreen() const override;
    QString reasonNameIsTaken(RecordCursor &rows) override;

private:
    void lstUtensils_Click();
    void txtUtensilName_Change();
    void cmdDone_Click();

    void ShowUtensil();
    void SaveUtensil();

    std::unique_ptr<Ui::frmUtensil> m_ui;
    DataSource datUtensil{sources()};
};
