#include "catalogs/frmUtensil.h"

#include "data/Criterion.h"
#include "data/DatabasePath.h"
#include "data/GeneralFuctions.h"
#include "ui_frmUtensil.h"

using namespace Qt::Literals::StringLiterals;

static constexpr auto nameField = "UtensilName"_L1;

frmUtensil::frmUtensil(Frame &frame)
    : CatalogWindow(frame)
    , m_ui(std::make_unique<Ui::frmUtensil>())
{
    m_ui->setupUi(this);
    setCatalog({.source = &datUtensil,
                .keyField = "UtensilID"_L1,
                .nameField = nameField,
                .list = m_ui->lstUtensils,
                .name = m_ui->txtUtensilName,
                .previous = m_ui->cmdPrevious,
                .next = m_ui->cmdNext,
                .newRow = m_ui->cmdNew,
                .save = m_ui->cmdSave,
                .saveQuestion = tr("Do you want to save changes to this utensil")});
    setCloseButton(m_ui->cmdDone);

    using Window = frmUtensil;
    connect(m_ui->lstUtensils, &ListBox::rowSelected, this, &Window::lstUtensils_Click);
    connect(m_ui->txtUtensilName, &QLineEdit::textChanged, this, &Window::txtUtensilName_Change);
    connect(m_ui->cmdDone, &QPushButton::clicked, this, &Window::cmdDone_Click);
}

frmUtensil::~frmUtensil() = default;

// Loading and showing

void frmUtensil::Form_Load()
{
    sources().setDatabaseName(DatabasePath);
    datUtensil.RecordSource = u"SELECT * FROM Utensils ORDER BY UtensilName"_s;
}

void frmUtensil::lstUtensils_Click()
{
    goToSelected();
    ShowUtensil();
}

void frmUtensil::ShowUtensil()
{
    showKeyAndName();
    setChanged(false);
}

// Editing

void frmUtensil::txtUtensilName_Change()
{
    setChanged(true);
}

void frmUtensil::cmdDone_Click()
{
    closeWindow();
}

// Storing

// The name is stored without the spaces around it, so both forms must be new to the catalog.
bool frmUtensil::isRefused()
{
    const QString typed = m_ui->txtUtensilName->text();
    const QString stored = trimSpaces(typed).toString();
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
    if (!isRefused())
        store();
    setChanged(false);
}

void frmUtensil::setFields(RecordCursor &row, bool /*isNew*/)
{
    row.setValue(nameField, trimSpaces(m_ui->txtUtensilName->text()).toString());
}
