#include "recipes/frmRecipe.h"

#include "composition/frmChangeIngredients.h"
#include "composition/frmChangeUtensils.h"
#include "data/Criterion.h"
#include "data/Database.h"
#include "data/DatabaseFunctions.h"
#include "data/DatabasePath.h"
#include "data/FieldValue.h"
#include "data/TypesAndRatings.h"
#include "data/settings/Settings.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "ui_frmRecipe.h"
#include "widgets/StandardWidgets.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString textOf(RecordCursor &cursor, QLatin1StringView field)
{
    return displayText(ValueOrDefault(cursor.value(field), QString()));
}

void setLockedLook(QWidget &edit, bool locked)
{
    QPalette palette;
    if (locked)
        palette.setBrush(QPalette::Base, edit.palette().window());
    edit.setPalette(palette);
}

} // namespace

frmRecipe::frmRecipe(Frame &frame)
    : ChildWindow(frame)
    , m_ui(std::make_unique<Ui::frmRecipe>())
{
    m_ui->setupUi(this);
    setCloseButton(m_ui->cmdDone);
    setAutoRepeatButtons({m_ui->cmdPrevious, m_ui->cmdNext});
    connectHandlers();
    LockFields(true);
}

frmRecipe::~frmRecipe() = default;

void frmRecipe::connectHandlers()
{
    connect(m_ui->txtAuthor, &QLineEdit::textChanged, this, &frmRecipe::txtAuthor_Change);
    connect(m_ui->txtServes, &QLineEdit::textChanged, this, &frmRecipe::txtServes_Change);
    connect(m_ui->txtInstruction, &QPlainTextEdit::textChanged, this,
            &frmRecipe::txtInstruction_Change);
    connect(m_ui->cmbRecipeType, &QComboBox::currentIndexChanged, this,
            &frmRecipe::cmbRecipeType_Change);
    connect(m_ui->cmbRating, &QComboBox::currentIndexChanged, this, &frmRecipe::cmbRating_Click);
    connect(m_ui->cmbRating, &QComboBox::activated, this, &frmRecipe::cmbRating_Click);
    connect(m_ui->chkVegetarian, &QCheckBox::clicked, this, &frmRecipe::chkVegetarian_Click);

    connect(m_ui->cmdChangeIngredients, &QPushButton::clicked, this,
            &frmRecipe::cmdChangeIngredients_Click);
    connect(m_ui->cmdChangeUtensils, &QPushButton::clicked, this,
            &frmRecipe::cmdChangeUtensils_Click);
    connect(m_ui->cmdDescription, &QPushButton::clicked, this, &frmRecipe::cmdDescription_Click);
    connect(m_ui->cmdPrevious, &QPushButton::clicked, this, &frmRecipe::cmdPrevious_Click);
    connect(m_ui->cmdNext, &QPushButton::clicked, this, &frmRecipe::cmdNext_Click);
    connect(m_ui->cmdNew, &QPushButton::clicked, this, &frmRecipe::cmdNew_Click);
    connect(m_ui->cmdEdit, &QPushButton::clicked, this, &frmRecipe::cmdEdit_Click);
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &frmRecipe::cmdSave_Click);
    connect(m_ui->cmdDone, &QPushButton::clicked, this, &frmRecipe::cmdDone_Click);
}

void frmRecipe::Form_Load()
{
    m_ui->cmdPrint->setEnabled(false);
    m_sources.setDatabaseName(DatabasePath);
    datRecipe.RecordSource = u"SELECT * FROM Recipes ORDER BY"_s + recipeOrderByClause();
    datIngredients.RecordSource =
        inLinkOrder(u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, "
                    "Ingredients.IngredientName, Ingredients.Vegetarian "
                    "FROM Ingredients INNER JOIN RecipeIngredients "
                    "ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s,
                    "RecipeIngredients"_L1);
    datUtensils.RecordSource = inLinkOrder(u"SELECT RecipeUtensils.RecipeID, Utensils.UtensilName "
                                           "FROM Utensils INNER JOIN RecipeUtensils "
                                           "ON Utensils.UtensilID = RecipeUtensils.UtensilID"_s,
                                           "RecipeUtensils"_L1);
    m_ui->cmbRecipeType->addItems(recipeTypes());
    m_ui->cmbRecipeType->setCurrentIndex(-1);
    m_ui->cmbRating->addItems(recipeRatings());
    m_ui->cmbRating->setCurrentIndex(0);
}

void frmRecipe::openDataSources()
{
    m_sources.open();
}

void frmRecipe::Form_Activate()
{
    const ReadTransaction snapshot(datRecipe.Database());
    m_sources.requery();
    RecordCursor &recipes = datRecipe.Recordset();
    recipes.FindFirst(criterion("RecipeID"_L1, CurrentRecipeID));
    if (recipes.RecordCount() != 0)
        ShowRecipe();
}

// Display

void frmRecipe::ShowRecipe()
{
    RecordCursor &recipe = datRecipe.Recordset();
    CurrentRecipeID = ValueOrDefault(recipe.value("RecipeID"_L1), 0).toLongLong();
    m_rowKey = CurrentRecipeID;
    setRecipeName(textOf(recipe, "RecipeName"_L1));
    m_ui->txtAuthor->showStored(textOf(recipe, "Author"_L1));
    selectStored(*m_ui->cmbRecipeType,
                 ValueOrDefault(recipe.value("RecipeType"_L1), defaultRecipeType));
    m_ui->txtInstruction->setPlainText(textOf(recipe, "Instructions"_L1));
    showUtensils();
    selectStored(*m_ui->cmbRating, ValueOrDefault(recipe.value("Rating"_L1), defaultRating));
    m_ui->txtServes->showStored(textOf(recipe, "Serves"_L1));
    showIngredients();
    RecipeDescription = textOf(recipe, "Description"_L1);

    m_shownFields = fieldsOnScreen();
    setRecipeChanged(false);
    setMode(Mode::Reading);
}

void frmRecipe::showUtensils()
{
    m_ui->lstUtensils->clear();
    RecordCursor &utensils = datUtensils.Recordset();
    const QString criteria = criterion("RecipeID"_L1, CurrentRecipeID);
    for (utensils.FindFirst(criteria); !utensils.NoMatch(); utensils.FindNext(criteria))
        m_ui->lstUtensils->addItem(textOf(utensils, "UtensilName"_L1));
}

void frmRecipe::showIngredients()
{
    m_ui->lstIngredient->clear();
    m_ingredientLines.clear();
    AllVegetarian = true;
    RecordCursor &ingredients = datIngredients.Recordset();
    const QString criteria = criterion("RecipeID"_L1, CurrentRecipeID);
    for (ingredients.FindFirst(criteria); !ingredients.NoMatch(); ingredients.FindNext(criteria)) {
        AllVegetarian =
            AllVegetarian && ValueOrDefault(ingredients.value("Vegetarian"_L1), 0).toBool();
        m_ingredientLines.append(
            {textOf(ingredients, "IngredientName"_L1), textOf(ingredients, "Quantity"_L1)});
        m_ui->lstIngredient->addItem(m_ingredientLines.constLast().text());
    }
    showVegetarian();
}

void frmRecipe::showVegetarian()
{
    m_ui->chkVegetarian->setChecked(AllVegetarian);
}

void frmRecipe::setRecipeName(const QString &name)
{
    m_hasRecipe = true;
    setTitle(name);
}

void frmRecipe::setRecipeChanged(bool changed)
{
    RecipeChanged = changed;
    m_ui->cmdSave->setEnabled(changed);
}

void frmRecipe::setMode(Mode mode)
{
    m_mode = mode;
    m_ui->cmdDontSave->setEnabled(mode == Mode::Editing);
}

void frmRecipe::LockFields(bool locked)
{
    m_ui->cmbRecipeType->setReadOnly(locked);
    m_ui->txtServes->setReadOnly(locked);
    m_ui->txtInstruction->setReadOnly(locked);
    if (locked) // QPlainTextEdit::setReadOnly() takes away the selection by keyboard
        m_ui->txtInstruction->setTextInteractionFlags(Qt::TextSelectableByMouse
                                                      | Qt::TextSelectableByKeyboard);
    m_ui->cmdEdit->setEnabled(locked);
    m_ui->cmdNew->setEnabled(locked);
    m_ui->txtAuthor->setReadOnly(locked);
    setLockedLook(*m_ui->txtServes, locked);
    setLockedLook(*m_ui->txtInstruction, locked);
    setLockedLook(*m_ui->txtAuthor, locked);
}

// Browsing and leaving

bool frmRecipe::promptToSave()
{
    if (!RecipeChanged)
        return true;
    return !interaction().confirm(tr("Save Changes"),
                                  tr("Do you want to save changes to this recipe"))
        || SaveRecipe();
}

void frmRecipe::cmdNext_Click()
{
    RecordCursor &recipes = datRecipe.Recordset();
    if (recipes.AtEOF() || !promptToSave())
        return;
    restoreRow();
    recipes.MoveNext();
    if (recipes.AtEOF())
        recipes.MovePrevious();
    else
        ShowRecipe();
}

void frmRecipe::cmdPrevious_Click()
{
    RecordCursor &recipes = datRecipe.Recordset();
    if (recipes.AtBOF() || !promptToSave())
        return;
    restoreRow();
    recipes.MovePrevious();
    if (recipes.AtBOF())
        recipes.MoveNext();
    else
        ShowRecipe();
}

void frmRecipe::cmdDone_Click()
{
    if (!promptToSave())
        return;
    closeWindow();
}

bool frmRecipe::saveForComposition()
{
    return m_hasRecipe && (!RecipeChanged || SaveRecipe());
}

void frmRecipe::cmdChangeIngredients_Click()
{
    if (saveForComposition())
        frame().show(frame().load<frmChangeIngredients>());
}

void frmRecipe::cmdChangeUtensils_Click()
{
    if (saveForComposition())
        frame().show(frame().load<frmChangeUtensils>());
}

QStringList frmRecipe::utensilLines() const
{
    QStringList lines;
    for (int row = 0; row < m_ui->lstUtensils->count(); ++row)
        lines += m_ui->lstUtensils->item(row)->text();
    return lines;
}

// Names and the description

bool frmRecipe::isTaken(const QString &name, qint64 ownKey)
{
    const bool taken = isRecipeNameTaken(datRecipe.Recordset(), name, ownKey);
    restoreRow();
    return taken;
}

void frmRecipe::restoreRow()
{
    RecordCursor &recipes = datRecipe.Recordset();
    if (recipes.RecordCount() != 0 && recipes.value("RecipeID"_L1) != m_rowKey)
        recipes.FindFirst(criterion("RecipeID"_L1, m_rowKey));
}

void frmRecipe::cmdNew_Click()
{
    if (!promptToSave())
        return;
    const QString name = askRecipeName(
        interaction(), {}, [this](const QString &answer) { return isTaken(answer, 0); });
    if (name.isEmpty())
        return;
    setRecipeName(name);
    m_ui->lstUtensils->clear();
    m_ui->lstIngredient->clear();
    m_ingredientLines.clear();
    m_ui->txtInstruction->clear();
    m_ui->txtAuthor->showStored({});
    RecipeDescription.clear();
    AllVegetarian = false;
    showVegetarian();
    CurrentRecipeID = 0;
    m_shownFields = {};
    m_ui->cmbRecipeType->setCurrentIndex(defaultRecipeType);
    m_ui->cmbRating->setCurrentIndex(defaultRating);
    m_ui->txtServes->showStored({});
    LockFields(false);
    m_ui->txtAuthor->setFocus();
    setRecipeChanged(true);
    setMode(Mode::Editing);
}

void frmRecipe::cmdEdit_Click()
{
    const QString name = askRecipeName(interaction(), title(), [this](const QString &answer) {
        return isTaken(answer, CurrentRecipeID);
    });
    if (name.isEmpty())
        return;
    if (name != title())
        setRecipeChanged(true);
    setMode(Mode::Editing);
    m_ui->txtAuthor->setFocus(); // before LockFields() disables Edit, which would pass it to Done
    LockFields(false);
    setRecipeName(name);
}

QString frmRecipe::storedDescription()
{
    if (CurrentRecipeID == 0 || datRecipe.Recordset().RecordCount() == 0)
        return {};
    restoreRow();
    return textOf(datRecipe.Recordset(), "Description"_L1);
}

void frmRecipe::cmdDescription_Click()
{
    const QString stored = storedDescription();
    if (m_mode == Mode::Reading) {
        interaction().show(
            {.text = stored.isEmpty() ? tr("None") : stored, .title = tr("Recipe Description")});
        return;
    }
    RecipeDescription =
        interaction().ask({.prompt = tr("Enter description for this recipe"),
                           .title = tr("Enter Description"),
                           .defaultText = stored.isEmpty() ? RecipeDescription : stored,
                           .lines = Lines::Several});
    if (RecipeDescription != stored)
        setRecipeChanged(true);
}

// Saving

// The focus must not stay on Save: once disabled, the button passes it on to Done, which the next
// Enter would press.
void frmRecipe::cmdSave_Click()
{
    const bool hasFocus = m_ui->cmdSave->hasFocus();
    if (SaveRecipe() && hasFocus)
        m_ui->txtInstruction->setFocus();
}

// A stored text is accepted as it is.
bool frmRecipe::isServesValid() const
{
    const QString text = m_ui->txtServes->text();
    return text == m_shownFields.serves || isNotNegative(text);
}

RecipeFields frmRecipe::fieldsOnScreen() const
{
    return {.name = title(),
            .description = RecipeDescription,
            .author = m_ui->txtAuthor->text(),
            .type = m_ui->cmbRecipeType->currentIndex(),
            .instructions = documentText(*m_ui->txtInstruction->document()),
            .rating = m_ui->cmbRating->currentIndex(),
            .serves = m_ui->txtServes->text()};
}

bool frmRecipe::SaveRecipe()
{
    if (!isServesValid()) {
        interaction().showError(
            tr("Error"),
            tr("Serves must be a number, 0 or more. \"%1\" is not.").arg(m_ui->txtServes->text()),
            Icon::Information);
        m_ui->txtServes->setFocus();
        return false;
    }
    RecordCursor &recipes = datRecipe.Recordset();
    if (m_hasRecipe) {
        const RecipeFields entered = fieldsOnScreen();
        const auto key = storeRecipe(datRecipe, {CurrentRecipeID, m_shownFields}, entered);
        if (!key) {
            showRecipeNameTaken(interaction());
            return false;
        }
        CurrentRecipeID = *key;
        m_rowKey = *key;
        m_shownFields = entered;
    }
    recipes.Requery();
    recipes.FindFirst(criterion("RecipeID"_L1, CurrentRecipeID));
    if (recipes.RecordCount() != 0)
        ShowRecipe();
    LockFields(true);
    setRecipeChanged(false);
    setMode(Mode::Reading);
    return true;
}
