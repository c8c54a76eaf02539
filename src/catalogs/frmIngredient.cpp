#include "catalogs/frmIngredient.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/DatabaseFunctions.h"
#include "data/DatabasePath.h"
#include "data/FieldValue.h"
#include "data/GeneralFuctions.h"
#include "data/TypesAndRatings.h"
#include "data/settings/Settings.h"
#include "interaction/Interaction.h"
#include "ui_frmIngredient.h"
#include "widgets/StandardWidgets.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto keyField = "IngredientID"_L1;
constexpr auto nameField = "IngredientName"_L1;

} // namespace

frmIngredient::frmIngredient(Frame &frame)
    : CatalogWindow(frame)
    , m_ui(std::make_unique<Ui::frmIngredient>())
{
    m_ui->setupUi(this);
    setCatalog({.source = &datIngredients,
                .keyField = keyField,
                .nameField = nameField,
                .list = m_ui->lstIngredients,
                .name = m_ui->txtIngredient,
                .previous = m_ui->cmdPrevious,
                .next = m_ui->cmdNext,
                .newRow = m_ui->cmdNew,
                .save = m_ui->cmdSave,
                .saveQuestion = tr("Do you want to save changes to this ingredient")});
    setCancelButton(m_ui->cmdDone);
    setCloseButton(m_ui->cmdDone);
    connectHandlers();
}

frmIngredient::~frmIngredient() = default;

void frmIngredient::connectHandlers()
{
    using Window = frmIngredient;
    connect(m_ui->lstIngredients, &ListBox::rowSelected, this, &Window::lstIngredients_Click);
    connect(m_ui->txtIngredient, &QLineEdit::textChanged, this, &Window::txtIngredient_Change);
    connect(m_ui->txtShelfLife, &QLineEdit::textChanged, this, &Window::txtShelfLife_Change);
    connect(m_ui->cmbType, &QComboBox::activated, this, &Window::cmbType_Click);
    connect(m_ui->cmbType, &QComboBox::currentIndexChanged, this, &Window::cmbType_Change);
    connect(m_ui->chkVegetarian, &QCheckBox::stateChanged, this, &Window::chkVegetarian_Click);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &Window::cmdDelete_Click);
    connect(m_ui->cmdDone, &QPushButton::clicked, this, &Window::cmdDone_Click);
}

// Loading and showing

void frmIngredient::Form_Load()
{
    sources().setDatabaseName(DatabasePath);
    datIngredients.RecordSource =
        u"SELECT * FROM Ingredients ORDER BY"_s + ingredientOrderByClause();
    m_ui->cmbType->addItems(ingredientTypes());
}

void frmIngredient::lstIngredients_Click()
{
    goToSelected();
    ShowIngredient();
}

void frmIngredient::ShowIngredient()
{
    showKeyAndName();
    RecordCursor &row = datIngredients.Recordset();
    selectStored(*m_ui->cmbType, ValueOrDefault(row.value("IngredientType"_L1), 0));
    m_shownShelfLife = displayText(ValueOrDefault(row.value("ShelfLife"_L1), 0));
    m_ui->txtShelfLife->showStored(m_shownShelfLife);
    m_ui->chkVegetarian->setChecked(ValueOrDefault(row.value("Vegetarian"_L1), false).toBool());
    setChanged(false);
}

// Keeps the type, since several ingredients of one type are often entered one after the other.
void frmIngredient::showNew()
{
    m_shownShelfLife = u"0"_s;
    m_ui->txtShelfLife->showStored(m_shownShelfLife);
    m_ui->chkVegetarian->setChecked(false);
    CatalogWindow::showNew();
}

// Editing

void frmIngredient::txtIngredient_Change()
{
    setChanged(true);
}

void frmIngredient::txtShelfLife_Change()
{
    setChanged(true);
}

void frmIngredient::cmbType_Click()
{
    setChanged(true);
}

void frmIngredient::cmbType_Change()
{
    setChanged(true);
}

void frmIngredient::chkVegetarian_Click()
{
    setChanged(true);
}

void frmIngredient::cmdDone_Click()
{
    offerToSave();
    closeWindow();
}

// Storing and deleting

bool frmIngredient::isRefused()
{
    const QString name = m_ui->txtIngredient->text();
    if (trimSpaces(name).isEmpty() || ContainsInvalidChars(name).isEmpty())
        return true;
    const QString shelfLife = m_ui->txtShelfLife->text();
    if (shelfLife != m_shownShelfLife && !isNotNegative(shelfLife))
        return true;

    RecordCursor &rows = datIngredients.Recordset();
    rows.FindFirst(criterion(nameField, Comparison::Like, name));
    return !rows.NoMatch() && (currentId() == 0 || rows.value(keyField) != currentId());
}

void frmIngredient::SaveIngredient()
{
    if (!isRefused())
        store();
}

void frmIngredient::setFields(RecordCursor &row, bool isNew)
{
    row.setValue(nameField, m_ui->txtIngredient->text());
    // Without a selection the stored type is none of the list, and is kept.
    if (isNew || m_ui->cmbType->currentIndex() >= 0)
        row.setValue("IngredientType"_L1, m_ui->cmbType->currentIndex());
    if (isNew || m_ui->txtShelfLife->text() != m_shownShelfLife)
        row.setValue("ShelfLife"_L1, ValueOrDefault(m_ui->txtShelfLife->text(), 0));
    row.setValue("Vegetarian"_L1, m_ui->chkVegetarian->isChecked());
}

void frmIngredient::cmdDelete_Click()
{
    if (currentId() == 0) {
        RecordCursor &rows = datIngredients.Recordset();
        rows.MoveFirst();
        if (rows.RecordCount() > 0)
            ShowIngredient();
        return;
    }
    if (interaction().confirm(tr("Confirm"), tr("Are you sure you want to delete this ingredient?"),
                              Button::No))
        deleteIngredient();
}

void frmIngredient::deleteIngredient()
{
    RecordCursor &rows = datIngredients.Recordset();
    const int row = shownRow();
    try {
        goToShown();
        rows.Delete();
    } catch (const RowNotFound &) {
        Form_Activate();
        throw;
    }
    fillList();
    m_ui->lstIngredients->selectRow(std::min(row, m_ui->lstIngredients->count() - 1));
}
