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
                .findBar = m_ui->findBar,
                .name = m_ui->txtUtensilName,
                .newMark = m_ui->lblNew,
                .previous = m_ui->cmdPrevious,
                .next = m_ui->cmdNext,
                .newRow = m_ui->cmdNew,
                .save = m_ui->cmdSave,
                .unreadText = tr("The utensils could not be read. Press F7 to read them again."),
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
    showRow([this] {
        goTo(m_ui->lstUtensils->selectedKey());
        ShowUtensil();
    });
}

void frmUtensil::ShowUtensil()
{
    showKeyAndName();
    setShown();
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

// Saving a utensil under its own name stores nothing and is nothing to warn of.
void frmUtensil::SaveUtensil()
{
    if (isEdited())
        store();
    setChanged(false);
}

CatalogWindow::Fields frmUtensil::fieldsOnScreen() const
{
    const QString name = m_ui->txtUtensilName->text();
    return {{nameField, name, trimSpaces(name).toString()}};
}

// The name is stored without the spaces around it, so both forms must be new to the catalog.
QString frmUtensil::reasonNameIsTaken(RecordCursor &rows)
{
    const QString typed = m_ui->txtUtensilName->text();
    rows.FindFirst(criterion(nameField, Comparison::Like, typed));
    if (rows.NoMatch())
        rows.FindFirst(criterion(nameField, Comparison::Like, trimSpaces(typed).toString()));
    if (rows.NoMatch())
        return {};
    return tr("Not saved: a utensil has this name. To change only its capital letters, save it "
              "under a different name first.");
}
