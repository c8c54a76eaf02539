#pragma once

#include "ChildWindow.h"
#include "DataSource.h"

#include <memory>

namespace Ui {
class frmUtensil;
}

// The utensil catalog: the list of all utensils, and the name of the one that is selected or of a
// new one. It keeps the activation until its Done.
class frmUtensil final : public ChildWindow
{
    Q_OBJECT

public:
    explicit frmUtensil(Frame &frame);
    ~frmUtensil() override;

protected:
    void Form_Load() override;
    void openDataSources() override;
    void Form_Activate() override;
    bool keepsActivationFrom(const ChildWindow & /*next*/) const noexcept override { return true; }
    QByteArrayView compositionEditor() const override { return "frmChangeUtensils"; }

private:
    void lstUtensils_Click();
    void txtUtensilName_Change();
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdNew_Click();
    void cmdSave_Click();
    void cmdDone_Click();

    void fillList(); // selects nothing; an empty catalog gets a new record
    void ShowUtensil();
    void showNewUtensil();
    void setChanged(bool changed);
    void offerToSave();
    void step(int rows);

    bool isRefused();
    void SaveUtensil();
    void writeUtensil();

    std::unique_ptr<Ui::frmUtensil> m_ui;
    DataSource datUtensil;
    qint64 CurrentUtensilID = 0; // of the one that is shown; 0 for a new one
    bool UtensilChanged = false;
};
