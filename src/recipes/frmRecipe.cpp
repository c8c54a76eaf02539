#include "recipes/frmRecipe.h"

#include "composition/frmChangeIngredients.h"
#include "composition/frmChangeUtensils.h"
#include "data/Criterion.h"
#include "data/Database.h"
#include "data/DatabasePath.h"
#include "data/FieldValue.h"
#include "data/TypesAndRatings.h"
#include "data/settings/Settings.h"
#include "frame/Frame.h"
#include "interaction/ControlCharacters.h"
#include "interaction/Interaction.h"
#include "ui_frmRecipe.h"
#include "widgets/StandardWidgets.h"

using namespace Qt::Literals::StringLiterals;

frmRecipe::frmRecipe(Frame &frame)
    : ChildWindow(frame)
    , m_ui(std::make_unique<Ui::frmRecipe>())
{
    m_ui->setupUi(this);
    setCloseButton(m_ui->cmdDone);
    setAutoRepeatButtons({m_ui->cmdPrevious, m_ui->cmdNext});
    connectHandlers();
    makeCopyable(*m_ui->lstIngredient);
    makeCopyable(*m_ui->lstUtensils);
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

void frmRecipe::Form_Activate()
{
    replaceShown([this] {
        const ReadTransaction snapshot(datRecipe.Database());
        m_sources.requery();
        showCurrentRecipe();
    });
}

void frmRecipe::refresh()
{
    if (!RecipeChanged || !m_shown)
        Form_Activate();
}

void frmRecipe::setCurrentRecipeID(qint64 key)
{
    CurrentRecipeID = key;
    if (frame().isActive(*this))
        frame().boundary().run(title(), [this] { Form_Activate(); });
}

// Display

void frmRecipe::replaceShown(const std::function<void()> &action)
{
    try {
        action();
    } catch (...) {
        showNone();
        showReadFailure(true);
        throw;
    }
    showReadFailure(false);
}

void frmRecipe::showCurrentRecipe()
{
    RecordCursor &recipes = datRecipe.Recordset();
    recipes.FindFirst(criterion("RecipeID"_L1, CurrentRecipeID));
    // Counting the recipes would read all of them.
    if (!recipes.NoMatch() || recipes.RecordCount() != 0)
        ShowRecipe();
}

void frmRecipe::ShowRecipe()
{
    const ReadTransaction snapshot(datRecipe.Database());
    display(readRecipe(datRecipe.Recordset(), datIngredients.Recordset(), datUtensils.Recordset()));
    m_rowKey = m_shown->key;
}

void frmRecipe::display(const ShownRecipe &recipe)
{
    showFields(recipe);
    m_shown = recipe;
    m_shown->fields = fieldsOnScreen(); // which may differ from what is stored
    CurrentRecipeID = recipe.key;
    showVegetarian();
    setUnedited();
}

// CurrentRecipeID stays, so that the next activation tries to show the same recipe.
void frmRecipe::showNone()
{
    m_shown.reset(); // first: nothing can be saved even if the rest throws
    ShownRecipe none;
    none.fields.name = tr("Recipe");
    none.fields.type = -1;
    none.fields.rating = 0;
    showFields(none);
    showVegetarian();
    setUnedited();
    LockFields(true);
}

void frmRecipe::showReadFailure(bool failed)
{
    if (failed == m_readFailed)
        return;
    m_readFailed = failed;
    const auto text = [failed](const QString &reason) { return failed ? reason : QString(); };
    m_ui->lstIngredient->setPlaceholderText(text(tr("The ingredients could not be read.")));
    m_ui->lstUtensils->setPlaceholderText(text(tr("The utensils could not be read.")));
    m_ui->txtInstruction->setPlaceholderText(
        text(tr("The recipe could not be read. To try again, press F5 and then View.")));
}

void frmRecipe::showFields(const ShownRecipe &recipe)
{
    const RecipeFields &fields = recipe.fields;
    QStringList ingredients;
    for (const IngredientLine &line : recipe.ingredients)
        ingredients += line.text();
    if (m_shown && m_shown->key == recipe.key) {
        updateText(*m_ui->txtInstruction, fields.instructions);
        m_ui->lstUtensils->updateTexts(recipe.utensils);
        m_ui->lstIngredient->updateTexts(ingredients);
    } else {
        m_ui->txtInstruction->setPlainText(fields.instructions);
        m_ui->lstUtensils->setTexts(recipe.utensils);
        m_ui->lstIngredient->setTexts(ingredients);
    }
    setTitle(fields.name);
    m_ui->txtAuthor->showStored(fields.author);
    m_ui->cmbRecipeType->setCurrentIndex(fields.type);
    m_ui->cmbRating->setCurrentIndex(fields.rating);
    m_ui->txtServes->showStored(fields.serves);
    RecipeDescription = fields.description;
}

void frmRecipe::showVegetarian()
{
    m_ui->chkVegetarian->setChecked(m_shown && m_shown->AllVegetarian);
}

void frmRecipe::setRecipeChanged(bool changed)
{
    RecipeChanged = changed;
    setEnabledPassingFocus(*m_ui->cmdSave, changed, *m_ui->lstIngredient);
}

void frmRecipe::setUnedited()
{
    setRecipeChanged(false);
    m_ui->cmdDontSave->setEnabled(false);
}

void frmRecipe::LockFields(bool locked)
{
    m_ui->cmbRecipeType->setReadOnly(locked);
    m_ui->txtServes->setReadOnly(locked);
    m_ui->txtInstruction->setReadOnly(locked);
    if (locked) // QPlainTextEdit::setReadOnly() takes away the selection by keyboard
        m_ui->txtInstruction->setTextInteractionFlags(Qt::TextSelectableByMouse
                                                      | Qt::TextSelectableByKeyboard);
    setEnabledPassingFocus(*m_ui->cmdEdit, locked, *m_ui->txtAuthor);
    setEnabledPassingFocus(*m_ui->cmdNew, locked, *m_ui->txtAuthor);
    m_ui->txtAuthor->setReadOnly(locked);
    showLockedColors();
}

void frmRecipe::showLockedColors()
{
    const bool locked = m_ui->txtAuthor->isReadOnly();
    showReadOnlyColors(*m_ui->txtAuthor, locked);
    showReadOnlyColors(*m_ui->txtServes, locked);
    showReadOnlyColors(*m_ui->txtInstruction, locked);
}

// The locked colours are made from the window's palette, which the desktop may change.
void frmRecipe::changeEvent(QEvent *event)
{
    ChildWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showLockedColors();
}

// Browsing and leaving

bool frmRecipe::promptToSave()
{
    if (!RecipeChanged || !m_shown)
        return true;
    return !interaction().confirm(tr("Save Changes"),
                                  tr("Do you want to save changes to this recipe"))
        || SaveRecipe();
}

void frmRecipe::cmdNext_Click()
{
    if (!datRecipe.Recordset().AtEOF() && promptToSave())
        showNeighbour(&frmRecipe::showNext);
}

void frmRecipe::cmdPrevious_Click()
{
    if (!datRecipe.Recordset().AtBOF() && promptToSave())
        showNeighbour(&frmRecipe::showPrevious);
}

void frmRecipe::showNeighbour(void (frmRecipe::*showIt)())
{
    replaceShown([&] {
        try {
            (this->*showIt)();
        } catch (const RowNotFound &) { // another program has deleted the neighbour
            datRecipe.Recordset().Requery();
            (this->*showIt)();
        }
    });
}

void frmRecipe::showNext()
{
    RecordCursor &recipes = datRecipe.Recordset();
    restoreRow();
    recipes.MoveNext();
    const bool wasLast = recipes.AtEOF();
    if (wasLast)
        recipes.MovePrevious();
    if (!wasLast || !m_shown)
        ShowRecipe();
}

void frmRecipe::showPrevious()
{
    RecordCursor &recipes = datRecipe.Recordset();
    restoreRow();
    recipes.MovePrevious();
    const bool wasFirst = recipes.AtBOF();
    if (wasFirst)
        recipes.MoveNext();
    if (!wasFirst || !m_shown)
        ShowRecipe();
}

void frmRecipe::cmdDone_Click()
{
    if (promptToSave())
        closeWindow();
}

bool frmRecipe::requireRecipe()
{
    if (!m_shown) {
        interaction().showError(tr("Error"), tr("No recipe is open. Press New to start one."),
                                Icon::Information);
    }
    return m_shown.has_value();
}

bool frmRecipe::saveForComposition()
{
    return requireRecipe() && (!RecipeChanged || SaveRecipe());
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
    if (recipes.AtBOF() || recipes.AtEOF() || recipes.value("RecipeID"_L1) != m_rowKey)
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
    ShownRecipe recipe;
    recipe.fields.name = name;
    replaceShown([&] { display(recipe); });
    m_ui->txtAuthor->setFocus();
    LockFields(false);
    setRecipeChanged(true);
    m_ui->cmdDontSave->setEnabled(true);
}

void frmRecipe::cmdEdit_Click()
{
    if (!requireRecipe())
        return;
    const QString name = askRecipeName(interaction(), title(), [this](const QString &answer) {
        return isTaken(answer, m_shown->key);
    });
    if (name.isEmpty())
        return;
    if (name != title())
        setRecipeChanged(true);
    m_ui->cmdDontSave->setEnabled(true);
    LockFields(false);
    setTitle(name);
}

void frmRecipe::cmdDescription_Click()
{
    if (m_readFailed && !requireRecipe())
        return;
    const QString stored = m_shown ? m_shown->fields.description : QString();
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
        setRecipeChanged(true);
}

// Saving

// A stored text is accepted as it is.
bool frmRecipe::isServesValid() const
{
    const QString text = m_ui->txtServes->text();
    return (m_shown && text == m_shown->fields.serves) || isNotNegative(text);
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

void frmRecipe::cmdSave_Click()
{
    if (requireRecipe())
        SaveRecipe();
    else
        setUnedited();
}

bool frmRecipe::SaveRecipe()
{
    if (!isServesValid()) {
        interaction().showError(tr("Error"),
                                tr("Serves must be a number, 0 or more. \"%1\" is not.")
                                    .arg(excerpt(m_ui->txtServes->text())),
                                Icon::Information);
        m_ui->txtServes->setFocus();
        return false;
    }
    const RecipeFields entered = fieldsOnScreen();
    const auto key = storeRecipe(datRecipe, *m_shown, entered);
    if (!key) {
        showRecipeNameTaken(interaction());
        return false;
    }
    m_shown->key = *key;
    m_shown->fields = entered;
    m_rowKey = *key;
    CurrentRecipeID = *key;
    LockFields(true);
    setUnedited();
    replaceShown([this] {
        const ReadTransaction snapshot(datRecipe.Database());
        datRecipe.Recordset().Requery();
        showCurrentRecipe();
    });
    return true;
}
