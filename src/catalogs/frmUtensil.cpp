#include "frmUtensil.h"

#include "Blanks.h"
#include "CatalogRows.h"
#include "Criterion.h"
#include "DatabaseError.h"
#include "DatabaseFunctions.h"
#include "DatabasePath.h"
#include "Doorway.h"
#include "Frame.h"
#include "GeneralFuctions.h"
#include "ui_frmUtensil.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto keyField = "UtensilID"_L1;
constexpr auto nameField = "UtensilName"_L1;

} // namespace

frmUtensil::frmUtensil(Frame &frame)
    : ChildWindow(frame)
    , m_ui(std::make_unique<Ui::frmUtensil>())
{
    m_ui->setupUi(this);
    setDefaultButton(m_ui->cmdSave);
    using Window = frmUtensil;
    connect(m_ui->lstUtensils, &ListBox::rowSelected, this, &Window::lstUtensils_Click);
    connect(m_ui->txtUtensilName, &QLineEdit::textChanged, this, &Window::txtUtensilName_Change);
    connect(m_ui->cmdPrevious, &QPushButton::clicked, this, &Window::cmdPrevious_Click);
    connect(m_ui->cmdNext, &QPushButton::clicked, this, &Window::cmdNext_Click);
    connect(m_ui->cmdNew, &QPushButton::clicked, this, &Window::cmdNew_Click);
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &Window::cmdSave_Click);
    connect(m_ui->cmdDone, &QPushButton::clicked, this, &Window::cmdDone_Click);
}

frmUtensil::~frmUtensil() = default;

// Loading and showing

void frmUtensil::Form_Load()
{
    datUtensil.DatabaseName = DatabasePath;
    datUtensil.RecordSource = u"SELECT * FROM Utensils ORDER BY UtensilName"_s;
}

void frmUtensil::openDataSources()
{
    datUtensil.open();
}

void frmUtensil::Form_Activate()
{
    fillList();
    m_ui->lstUtensils->selectRow(0);
    if (m_ui->lstUtensils->count() == 0)
        m_ui->txtUtensilName->setFocus();
}

void frmUtensil::fillList()
{
    m_ui->lstUtensils->setTexts({});
    RecordCursor &rows = datUtensil.Recordset();
    rows.Requery();
    m_ui->lstUtensils->setTexts(textsOf(rows, nameField));
    if (rows.RecordCount() == 0 && CurrentUtensilID != 0)
        showNewUtensil();
}

void frmUtensil::lstUtensils_Click()
{
    datUtensil.Recordset().FindFirst(
        criterion(nameField, Comparison::Equal, m_ui->lstUtensils->selectedText()));
    ShowUtensil();
}

void frmUtensil::ShowUtensil()
{
    RecordCursor &row = datUtensil.Recordset();
    CurrentUtensilID = ValueOrDefault(row.value(keyField), 0).toLongLong();
    m_ui->txtUtensilName->showStored(ValueOrDefault(row.value(nameField), QString()).toString());
    setChanged(false);
}

void frmUtensil::showNewUtensil()
{
    CurrentUtensilID = 0;
    m_ui->txtUtensilName->showStored({});
    setChanged(false);
}

void frmUtensil::setChanged(bool changed)
{
    UtensilChanged = changed;
    m_ui->cmdSave->setEnabled(changed);
}

// Editing

void frmUtensil::txtUtensilName_Change()
{
    setChanged(true);
}

void frmUtensil::offerToSave()
{
    if (!UtensilChanged)
        return;
    const Button answer = doorway().show({.text = tr("Do you want to save changes to this utensil"),
                                          .title = tr("Save Changes"),
                                          .icon = Icon::Question,
                                          .buttons = {Button::Yes, Button::No},
                                          .defaultButton = Button::Yes});
    if (answer == Button::Yes)
        SaveUtensil();
}

void frmUtensil::cmdNew_Click()
{
    offerToSave();
    showNewUtensil();
    m_ui->txtUtensilName->setFocus();
}

void frmUtensil::cmdNext_Click()
{
    step(1);
}

void frmUtensil::cmdPrevious_Click()
{
    step(-1);
}

// From the selected row and not from the cursor's, which a refused save leaves elsewhere.
void frmUtensil::step(int rows)
{
    if (m_ui->lstUtensils->count() > 0) {
        offerToSave();
        m_ui->lstUtensils->selectRow(m_ui->lstUtensils->selectedRow() + rows);
    }
    m_ui->txtUtensilName->setFocus();
}

void frmUtensil::cmdDone_Click()
{
    frame().hide(*this);
    frame().unload(*this);
}

// Storing

void frmUtensil::cmdSave_Click()
{
    SaveUtensil();
    m_ui->lstUtensils->setFocus();
}

// The name is stored without the blanks around it, and no name may come to stand twice.
bool frmUtensil::isRefused()
{
    const QString typed = m_ui->txtUtensilName->text();
    const QString stored = withoutBlanks(typed).toString();
    if (stored.isEmpty() || ContainsInvalidChars(typed).isEmpty())
        return true;
    RecordCursor &rows = datUtensil.Recordset();
    rows.FindFirst(criterion(nameField, Comparison::Like, typed));
    if (rows.NoMatch())
        rows.FindFirst(criterion(nameField, Comparison::Like, stored));
    return !rows.NoMatch();
}

void frmUtensil::SaveUtensil()
{
    if (!isRefused()) {
        try {
            writeUtensil();
        } catch (const RowGone &) {
            Form_Activate();
            throw;
        }
        fillList();
        m_ui->lstUtensils->selectRow(rowOfKey(datUtensil.Recordset(), keyField, CurrentUtensilID));
    }
    setChanged(false);
}

void frmUtensil::writeUtensil()
{
    RecordCursor &rows = datUtensil.Recordset();
    const bool isNew = CurrentUtensilID == 0;
    if (isNew) {
        rows.AddNew();
    } else {
        goToKey(rows, keyField, CurrentUtensilID);
        rows.Edit();
    }
    rows.setValue(nameField, withoutBlanks(m_ui->txtUtensilName->text()).toString());
    rows.Update();
    if (isNew) {
        rows.MoveLast();
        CurrentUtensilID = rows.value(keyField).toLongLong();
    }
}
