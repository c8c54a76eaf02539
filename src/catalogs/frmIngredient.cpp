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
#include "widgets/WarningFrame.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto keyField = "IngredientID"_L1;
constexpr auto nameField = "IngredientName"_L1;
constexpr auto typeField = "IngredientType"_L1;
constexpr auto shelfLifeField = "ShelfLife"_L1;
constexpr auto vegetarianField = "Vegetarian"_L1;

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
                .findBar = m_ui->findBar,
                .name = m_ui->txtIngredient,
                .newMark = m_ui->lblNew,
                .previous = m_ui->cmdPrevious,
                .next = m_ui->cmdNext,
                .newRow = m_ui->cmdNew,
                .save = m_ui->cmdSave,
                .others = {m_ui->cmbType, m_ui->txtShelfLife, m_ui->chkVegetarian, m_ui->cmdDelete},
                .unreadText = tr("The ingredients could not be read. Press F6 to read them again."),
                .saveQuestion = tr("Do you want to save changes to this ingredient")});
    m_shelfLifeWarning = new WarningFrame(*m_ui->txtShelfLife);
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
    showRow([this] {
        goTo(m_ui->lstIngredients->selectedKey());
        ShowIngredient();
    });
}

void frmIngredient::ShowIngredient()
{
    showKeyAndName();
    RecordCursor &row = datIngredients.Recordset();
    m_ui->cmbType->setCurrentIndex(storedPosition(ValueOrDefault(row.value(typeField), 0)));
    showShelfLife(displayText(ValueOrDefault(row.value(shelfLifeField), 0)));
    m_ui->chkVegetarian->setChecked(ValueOrDefault(row.value(vegetarianField), false).toBool());
    setShown();
}

void frmIngredient::showNone()
{
    m_ui->cmbType->setCurrentIndex(-1);
    showShelfLife({});
    m_ui->chkVegetarian->setChecked(false);
    CatalogWindow::showNone();
}

// Keeps the type, since several ingredients of one type are often entered one after the other.
void frmIngredient::showNew()
{
    const int type = m_ui->cmbType->currentIndex();
    showNone();
    m_ui->cmbType->setCurrentIndex(type);
    showShelfLife(u"0"_s);
    setShown();
}

void frmIngredient::showShelfLife(const QString &days)
{
    m_ui->txtShelfLife->showStored(days);
    m_shelfLifeWarning->showReason({});
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

void frmIngredient::SaveIngredient()
{
    store();
}

// If no type is selected, the stored number is not in the list; it stays as it is.
CatalogWindow::Fields frmIngredient::fieldsOnScreen() const
{
    const QString name = m_ui->txtIngredient->text();
    const int type = m_ui->cmbType->currentIndex();
    const QString shelfLife = m_ui->txtShelfLife->text();
    const bool isVegetarian = m_ui->chkVegetarian->isChecked();
    return {{nameField, name, name},
            {typeField, type, type},
            {shelfLifeField, shelfLife, ValueOrDefault(shelfLife, 0)},
            {vegetarianField, isVegetarian, isVegetarian}};
}

bool frmIngredient::checkFields()
{
    const QString days = m_ui->txtShelfLife->text();
    const bool isValid = days == shownValue(shelfLifeField).toString() || isNotNegative(days);
    m_shelfLifeWarning->showReason(
        isValid ? QString() : tr("Not saved: the shelf life must be a number, 0 or more."));
    return isValid;
}

QString frmIngredient::reasonNameIsTaken(RecordCursor &rows)
{
    rows.FindFirst(criterion(nameField, Comparison::Like, m_ui->txtIngredient->text()));
    if (rows.NoMatch() || (currentId() != 0 && rows.value(keyField) == currentId()))
        return {};
    return tr("Not saved: another ingredient has this name.");
}

void frmIngredient::cmdDelete_Click()
{
    if (currentId() == 0) {
        showRow([this] {
            RecordCursor &rows = datIngredients.Recordset();
            rows.MoveFirst();
            if (rows.RecordCount() > 0)
                ShowIngredient();
        });
        return;
    }
    if (interaction().confirm(tr("Confirm"), tr("Are you sure you want to delete this ingredient?"),
                              Button::No))
        deleteIngredient();
}

void frmIngredient::deleteIngredient()
{
    const int row = m_ui->lstIngredients->rowOf(currentId());
    withRow([this] {
        goTo(currentId());
        datIngredients.Recordset().Delete();
    });
    fillList();
    selectNear(row);
}
