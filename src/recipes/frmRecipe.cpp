#include "recipes/frmRecipe.h"

#include "composition/frmChangeIngredients.h"
#include "composition/frmChangeUtensils.h"
#include "data/Criterion.h"
#include "data/DatabaseFunctions.h"
#include "data/DatabasePath.h"
#include "data/DisplayText.h"
#include "data/FieldValue.h"
#include "data/RecipeTypes.h"
#include "data/Transaction.h"
#include "data/settings/SortOrder.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "recipes/RecipeName.h"
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
    datRecipe.DatabaseName = DatabasePath;
    datRecipe.RecordSource = u"SELECT * FROM Recipes ORDER BY"_s + recipeOrderByClause();
    datIngredients.DatabaseName = DatabasePath;
    datIngredients.RecordSource = u"SELECT RecipeIngredients.RecipeID, RecipeIngredients.Quantity, "
                                  "Ingredients.IngredientName, Ingredients.Vegetarian "
                                  "FROM Ingredients INNER JOIN RecipeIngredients "
                                  "ON Ingredients.IngredientID = RecipeIngredients.IngredientID"_s;
    datUtensils.DatabaseName = DatabasePath;
    datUtensils.RecordSource = u"SELECT RecipeUtensils.RecipeID, Utensils.UtensilName "
                               "FROM Utensils INNER JOIN RecipeUtensils "
                               "ON Utensils.UtensilID = RecipeUtensils.UtensilID"_s;
    m_ui->cmbRecipeType->addItems(recipeTypes());
    m_ui->cmbRecipeType->setCurrentIndex(-1);
    m_ui->cmbRating->addItems(recipeRatings());
    m_ui->cmbRating->setCurrentIndex(0);
}

void frmRecipe::openDataSources()
{
    datRecipe.open();
    datIngredients.open();
    datUtensils.open();
}

void frmRecipe::Form_Activate()
{
    const ReadTransaction snapshot(datRecipe.Database());
    RecordCursor &recipes = datRecipe.Recordset();
    recipes.Requery();
    datIngredients.Recordset().Requery();
    datUtensils.Recordset().Requery();
    recipes.FindFirst(criterion("RecipeID"_L1, CurrentRecipeID));
    if (recipes.RecordCount() != 0)
        ShowRecipe();
}

// Display

void frmRecipe::ShowRecipe()
{
    RecordCursor &recipe = datRecipe.Recordset();
    CurrentRecipeID = ValueOrDefault(recipe.value("RecipeID"_L1), 0).toLongLong();
    m_shownRow = CurrentRecipeID;
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
    RecipeChanged = false;
    m_ui->cmdSave->setEnabled(false);
    m_ui->cmdDontSave->setEnabled(false);
}

void frmRecipe::showUtensils()
{
    m_ui->lstUtensils->clear();
    RecordCursor &utensils = datUtensils.Recordset();
    const QString ofRecipe = criterion("RecipeID"_L1, CurrentRecipeID);
    for (utensils.FindFirst(ofRecipe); !utensils.NoMatch(); utensils.FindNext(ofRecipe))
        m_ui->lstUtensils->addItem(textOf(utensils, "UtensilName"_L1));
}

void frmRecipe::showIngredients()
{
    m_ui->lstIngredient->clear();
    m_ingredientLines.clear();
    AllVegetarian = true;
    RecordCursor &ingredients = datIngredients.Recordset();
    const QString ofRecipe = criterion("RecipeID"_L1, CurrentRecipeID);
    for (ingredients.FindFirst(ofRecipe); !ingredients.NoMatch(); ingredients.FindNext(ofRecipe)) {
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
    m_holdsRecipe = true;
    setTitle(name);
}

void frmRecipe::setRecipeChanged()
{
    RecipeChanged = true;
    m_ui->cmdSave->setEnabled(true);
}

void frmRecipe::LockFields(bool locked)
{
    m_ui->cmbRecipeType->setReadOnly(locked);
    m_ui->txtServes->setReadOnly(locked);
    m_ui->txtInstruction->setReadOnly(locked);
    if (locked) // a caret to select with
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
    findShownRow();
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
    findShownRow();
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
    return m_holdsRecipe && (!RecipeChanged || SaveRecipe());
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
    findShownRow();
    return taken;
}

void frmRecipe::findShownRow()
{
    RecordCursor &recipes = datRecipe.Recordset();
    if (recipes.RecordCount() != 0 && recipes.value("RecipeID"_L1) != m_shownRow)
        recipes.FindFirst(criterion("RecipeID"_L1, m_shownRow));
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
    m_shownFields.clear();
    m_ui->cmbRecipeType->setCurrentIndex(defaultRecipeType);
    m_ui->cmbRating->setCurrentIndex(defaultRating);
    m_ui->txtServes->showStored({});
    LockFields(false);
    m_ui->txtAuthor->setFocus();
    setRecipeChanged();
    m_ui->cmdDontSave->setEnabled(true);
}

void frmRecipe::cmdEdit_Click()
{
    const QString name = askRecipeName(interaction(), title(), [this](const QString &answer) {
        return isTaken(answer, CurrentRecipeID);
    });
    if (name.isEmpty())
        return;
    if (name != title())
        setRecipeChanged();
    m_ui->cmdDontSave->setEnabled(true);
    m_ui->txtAuthor->setFocus(); // before the button that has it is disabled: Done would get it
    LockFields(false);
    setRecipeName(name);
}

QString frmRecipe::storedDescription()
{
    if (CurrentRecipeID == 0 || datRecipe.Recordset().RecordCount() == 0)
        return {};
    findShownRow();
    return textOf(datRecipe.Recordset(), "Description"_L1);
}

void frmRecipe::cmdDescription_Click()
{
    const QString stored = storedDescription();
    if (!m_ui->cmdDontSave->isEnabled()) {
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
        setRecipeChanged();
}

// Saving

// A button that is disabled hands its focus on, to Done at last, which the next Enter would press.
void frmRecipe::cmdSave_Click()
{
    const bool hasFocus = m_ui->cmdSave->hasFocus();
    if (SaveRecipe() && hasFocus)
        m_ui->txtInstruction->setFocus();
}

// What is stored already is not judged.
bool frmRecipe::isServesGood() const
{
    const QString text = m_ui->txtServes->text();
    const bool isStored = !m_shownFields.isEmpty() && m_shownFields.constLast().value == text;
    return isStored || isNotNegative(text);
}

RecipeFields frmRecipe::fieldsOnScreen() const
{
    return {{"RecipeName"_L1, title()},
            {"Description"_L1, RecipeDescription},
            {"Author"_L1, m_ui->txtAuthor->text()},
            {"RecipeType"_L1, m_ui->cmbRecipeType->currentIndex()},
            {"Instructions"_L1, documentText(*m_ui->txtInstruction->document())},
            {"Rating"_L1, m_ui->cmbRating->currentIndex()},
            {"Serves"_L1, ValueOrDefault(m_ui->txtServes->text(), 0)}};
}

bool frmRecipe::SaveRecipe()
{
    if (!isServesGood()) {
        interaction().showError(
            tr("Error"),
            tr("Serves must be a number, 0 or more. \"%1\" is not.").arg(m_ui->txtServes->text()),
            Icon::Information);
        m_ui->txtServes->setFocus();
        return false;
    }
    RecordCursor &recipes = datRecipe.Recordset();
    if (m_holdsRecipe) {
        const RecipeFields entered = fieldsOnScreen();
        const auto key = storeRecipe(datRecipe, CurrentRecipeID, m_shownFields, entered);
        if (!key) {
            showRecipeNameTaken(interaction());
            return false;
        }
        CurrentRecipeID = *key;
        m_shownRow = *key;
        m_shownFields = entered;
    }
    recipes.Requery();
    recipes.FindFirst(criterion("RecipeID"_L1, CurrentRecipeID));
    if (recipes.RecordCount() != 0)
        ShowRecipe();
    RecipeChanged = false;
    LockFields(true);
    m_ui->cmdSave->setEnabled(false);
    m_ui->cmdDontSave->setEnabled(false);
    return true;
}
