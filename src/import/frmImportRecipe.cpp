#include "import/frmImportRecipe.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/DatabasePath.h"
#include "data/TextComparison.h"
#include "import/srf/SrfFile.h"
#include "interaction/ControlCharacters.h"
#include "platform/Paths.h"

#include <unordered_set>

using namespace Qt::Literals::StringLiterals;

namespace {

// The rating that every imported recipe gets.
constexpr int importedRating = 5;

// A set of names that compares them as the database does.
struct NameHash {
    std::size_t operator()(const std::string &name) const { return textHash(name); }
};
struct NameEqual {
    bool operator()(const std::string &a, const std::string &b) const { return textsEqual(a, b); }
};
using NameSet = std::unordered_set<std::string, NameHash, NameEqual>;

// Checks the fields that the catalog would store if the ingredient were new. Returns the first one
// that its column does not accept.
std::optional<SrfError> checkNewIngredient(const SrfIngredient &entry)
{
    const std::variant<SrfNewIngredient, SrfError> read = newIngredient(entry);
    if (const auto *error = std::get_if<SrfError>(&read))
        return *error;
    const auto &fields = std::get<SrfNewIngredient>(read);
    if (!convertToField(FieldType::WholeNumber, fields.type))
        return SrfError{entry.line, frmImportRecipe::tr("the number of an ingredient type"),
                        fields.type};
    if (!convertToField(FieldType::Number, fields.shelfLife))
        return SrfError{entry.line, frmImportRecipe::tr("a shelf life in days"), fields.shelfLife};
    if (!convertToField(FieldType::YesNo, fields.vegetarian))
        return SrfError{entry.line, frmImportRecipe::tr("True or False for vegetarian"),
                        fields.vegetarian};
    return {};
}

} // namespace

frmImportRecipe::frmImportRecipe(Interaction &interaction)
    : m_interaction(interaction)
{
}

void frmImportRecipe::Form_Load()
{
    m_sources.setDatabaseName(DatabasePath);
    datIngredients.RecordSource = u"Ingredients"_s;
    datRecipe.RecordSource = u"Recipes"_s;
    datRecipeIngredients.RecordSource = u"RecipeIngredients"_s;
    datRecipeUtensils.RecordSource = u"RecipeUtensils"_s;
    datUtensils.RecordSource = u"Utensils"_s;
}

void frmImportRecipe::openDataSources()
{
    m_sources.open();
}

void frmImportRecipe::batch(const std::function<void()> &imports)
{
    m_commits.startBatch();
    try {
        imports();
    } catch (...) { // the files that have been stored are kept
        m_commits.endBatch();
        throw;
    }
    m_commits.endBatch();
}

// The whole file is read and parsed before anything is written or asked.
frmImportRecipe::Outcome frmImportRecipe::ImportSRFFile(const std::filesystem::path &path)
{
    const std::variant<QByteArray, SrfFileError> file = readSrfFile(path);
    if (const auto *error = std::get_if<SrfFileError>(&file)) {
        return reject(error->failure == platform::ReadFailure::NotFound
                          ? tr("Could not find file.  Try importing file though File, Import.")
                          : error->message);
    }
    const std::variant<SrfRecipe, SrfError> parsed =
        parseSrf(decodeSrf(std::get<QByteArray>(file)));
    if (const auto *error = std::get_if<SrfError>(&parsed))
        return reject(srfErrorText(*error, platform::displayPath(path)));
    try {
        return importRecipe(std::get<SrfRecipe>(parsed), path);
    } catch (...) { // an open transaction would keep the database locked
        m_commits.fileFailed();
        throw;
    }
}

// The transaction that is begun before the question ends with it, so that the database is not
// locked while the user thinks. After the answer the cursors are requeried inside the one that
// writes.
frmImportRecipe::Outcome frmImportRecipe::importRecipe(const SrfRecipe &recipe,
                                                       const std::filesystem::path &path)
{
    beginFile();
    std::optional<SrfError> error = checkNumbers(recipe);
    if (!error && isTaken(recipe.name)) {
        const Button answer = askAboutTakenName(recipe.name);
        if (answer != Button::Yes)
            return answer == Button::Stop ? Outcome::Stopped : Outcome::NotImported;
        beginFile();
        error = checkNumbers(recipe); // another program may have changed the catalogs
    }
    if (error)
        return reject(srfErrorText(*error, platform::displayPath(path)));
    Transaction transaction(datRecipe.Database());
    ReadSRFRecipe(recipe, freeName(recipe.name));
    transaction.commit();
    m_commits.fileStored();
    return Outcome::Imported;
}

void frmImportRecipe::beginFile()
{
    m_commits.begin(datRecipe.Database());
    m_sources.requery();
}

bool frmImportRecipe::isTaken(const QString &name)
{
    RecordCursor &recipes = datRecipe.Recordset();
    recipes.FindFirst(criterion("RecipeName"_L1, Comparison::Equal, name));
    return !recipes.NoMatch();
}

// Returns the name, or the name followed by the first number that makes it unique.
QString frmImportRecipe::freeName(const QString &name)
{
    QString candidate = name;
    for (int n = 1; isTaken(candidate); ++n)
        candidate = name + u' ' + QString::number(n);
    return candidate;
}

Button frmImportRecipe::askAboutTakenName(const QString &name)
{
    return show(
        {tr("%1 is already in the database.  Do you want to import it anyways?").arg(excerpt(name)),
         tr("Already in database"),
         Icon::Information,
         {Button::Yes, Button::No},
         Button::No});
}

frmImportRecipe::Outcome frmImportRecipe::reject(const QString &text)
{
    return show({text, tr("Error"), Icon::Exclamation}) == Button::Stop ? Outcome::Stopped
                                                                        : Outcome::NotImported;
}

// Many files of a batch may be bad or already imported, so every box offers to stop the batch.
Button frmImportRecipe::show(MessageBox box)
{
    m_commits.commit();
    if (m_commits.isBatch())
        box.buttons.push_back(Button::Stop);
    return m_interaction.show(box);
}

// Returns the first text that its column does not accept. The fields of an ingredient matter only
// if the catalog does not have it, and of several entries with one name only the first one's do.
std::optional<SrfError> frmImportRecipe::checkNumbers(const SrfRecipe &recipe)
{
    if (!convertToField(FieldType::WholeNumber, recipe.type))
        return SrfError{SrfRecipe::typeLine, tr("the number of a recipe type"), recipe.type};
    if (!convertToField(FieldType::Number, recipe.serves))
        return SrfError{SrfRecipe::servesLine, tr("the number of servings"), recipe.serves};
    RecordCursor &catalog = datIngredients.Recordset();
    NameSet names;
    for (const SrfIngredient &entry : recipe.ingredients) {
        if (!names.insert(entry.name.toStdString()).second)
            continue;
        std::optional<SrfError> error = checkNewIngredient(entry);
        if (!error)
            continue;
        catalog.FindFirst(criterion("IngredientName"_L1, Comparison::Equal, entry.name));
        if (catalog.NoMatch())
            return error;
    }
    return {};
}

void frmImportRecipe::ReadSRFRecipe(const SrfRecipe &recipe, const QString &name)
{
    const QVariant recipeId = addRecipe(recipe, name);
    for (const SrfIngredient &ingredient : recipe.ingredients)
        addIngredient(ingredient, recipeId);
    for (const SrfUtensil &utensil : recipe.utensils)
        addUtensil(utensil, recipeId);
}

// Returns the new recipe's key.
QVariant frmImportRecipe::addRecipe(const SrfRecipe &recipe, const QString &name)
{
    RecordCursor &recipes = datRecipe.Recordset();
    recipes.AddNew();
    recipes.setValue("RecipeName"_L1, name);
    recipes.setValue("Author"_L1, recipe.author);
    recipes.setValue("RecipeType"_L1, recipe.type);
    recipes.setValue("Serves"_L1, recipe.serves);
    recipes.setValue("Description"_L1, recipe.description);
    recipes.setValue("Rating"_L1, importedRating);
    recipes.setValue("Instructions"_L1, recipe.instructions);
    recipes.Update();
    recipes.MoveLast();
    return recipes.value("RecipeID"_L1);
}

void frmImportRecipe::addIngredient(const SrfIngredient &ingredient, const QVariant &recipeId)
{
    RecordCursor &catalog = datIngredients.Recordset();
    catalog.FindFirst(criterion("IngredientName"_L1, Comparison::Equal, ingredient.name));
    if (catalog.NoMatch()) {
        const auto fields = std::get<SrfNewIngredient>(newIngredient(ingredient));
        catalog.AddNew();
        catalog.setValue("IngredientName"_L1, ingredient.name);
        catalog.setValue("IngredientType"_L1, fields.type);
        catalog.setValue("ShelfLife"_L1, fields.shelfLife);
        catalog.setValue("Vegetarian"_L1, fields.vegetarian);
        catalog.Update();
        catalog.MoveLast();
    }
    RecordCursor &links = datRecipeIngredients.Recordset();
    links.AddNew();
    links.setValue("Quantity"_L1, ingredient.quantity);
    links.setValue("IngredientID"_L1, catalog.value("IngredientID"_L1));
    links.setValue("RecipeID"_L1, recipeId);
    links.Update();
}

void frmImportRecipe::addUtensil(const SrfUtensil &utensil, const QVariant &recipeId)
{
    RecordCursor &catalog = datUtensils.Recordset();
    catalog.FindFirst(criterion("UtensilName"_L1, Comparison::Equal, utensil.name));
    if (catalog.NoMatch()) {
        catalog.AddNew();
        catalog.setValue("UtensilName"_L1, utensil.name);
        catalog.Update();
        catalog.MoveLast();
    }
    RecordCursor &links = datRecipeUtensils.Recordset();
    links.AddNew();
    links.setValue("UtensilID"_L1, catalog.value("UtensilID"_L1));
    links.setValue("RecipeID"_L1, recipeId);
    links.Update();
}
