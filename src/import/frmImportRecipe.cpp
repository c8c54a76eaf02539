#include "import/frmImportRecipe.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/DatabasePath.h"
#include "data/TextComparison.h"
#include "import/NumberErrors.h"
#include "import/srf/SrfFile.h"
#include "interaction/ControlCharacters.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"
#include "platform/Utf8.h"

#include <QLocale>
#include <QScopeGuard>

#include <unordered_set>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

// The rating that every imported recipe gets.
constexpr int importedRating = 5;

// In bytes. A larger file takes long to parse, and other programs must not wait for that.
constexpr qsizetype largeFile = qsizetype(64) << 10;

// A set of names that compares them as the database does.
struct NameHash {
    std::size_t operator()(std::string_view name) const { return textHash(name); }
};
struct NameEqual {
    bool operator()(std::string_view a, std::string_view b) const { return textsEqual(a, b); }
};
using NameSet = std::unordered_set<std::string_view, NameHash, NameEqual>;

// Moves to the first row with this name; returns whether there is one.
bool find(RecordCursor &rows, const QByteArray &field, std::string_view name)
{
    rows.FindFirst(Criterion{field, Comparison::Equal, std::string(name)});
    return !rows.NoMatch();
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
    m_batch = {};
    m_commits.startBatch();
    const auto end = qScopeGuard([this] {
        m_commits.endBatch();
        m_batch = {};
    });
    try {
        runBatch(imports);
    } catch (const UnusableDatabase &error) { // the error boundary can offer to put a copy back
        throw UnusableDatabase(error.path(), endedEarlyText(error.problem()));
    } catch (const DatabaseError &error) {
        throw DatabaseError(endedEarlyText(error.text()) + importRestText());
    } catch (const platform::UserVisibleError &error) {
        throw platform::UserVisibleError(endedEarlyText(error.text()) + importRestText());
    }
}

void frmImportRecipe::runBatch(const std::function<void()> &imports)
{
    try {
        imports();
    } catch (...) { // the files that have been imported are kept
        commitGroup();
        throw;
    }
    commitGroup();
}

// Returns how many recipes were imported, at which file the batch has ended and why.
QString frmImportRecipe::endedEarlyText(const QString &reason) const
{
    const QString imported = m_batch.imported == 0 ? tr("No recipe was imported.")
        : m_batch.imported == 1
        ? tr("1 recipe was imported.")
        : tr("%1 recipes were imported.").arg(QLocale(QLocale::English).toString(m_batch.imported));
    return tr("%1 The import ended at \"%2\":\n\n%3")
        .arg(imported,
             excerpt(platform::displayPath(std::filesystem::path(m_batch.current).filename())),
             QString(reason).remove(u' ' + DatabaseError::nothingStored()));
}

QString frmImportRecipe::importRestText() const
{
    if (m_batch.imported == 0)
        return {};
    return u"\n\n"_s
        + tr("Then press Import again to import the other recipes, and answer No for those that "
             "are already there.");
}

// The whole file is read and parsed before anything is written or asked.
frmImportRecipe::Outcome frmImportRecipe::ImportSRFFile(const std::filesystem::path &path)
{
    m_batch.current = path.native();
    std::variant<QByteArray, SrfFileError> read = readSrfFile(path, [this](qsizetype size) {
        if (size > largeFile)
            commitGroup();
    });
    if (m_batch.isStopped)
        return Outcome::Stopped;
    if (const auto *error = std::get_if<SrfFileError>(&read)) {
        return reject(error->failure == platform::ReadFailure::NotFound
                          ? tr("Could not find file.  Try importing file though File, Import.")
                          : error->message);
    }
    std::variant<SrfRecipe, SrfError> parsed =
        parseSrf(decodeSrf(std::get<QByteArray>(std::move(read))));
    if (const auto *error = std::get_if<SrfError>(&parsed))
        return reject(srfErrorText(*error, platform::displayPath(path)));
    return importInGroup({path.native(), std::get<SrfRecipe>(std::move(parsed))});
}

// Imports the file into the transaction of the group. If that fails, the files before it are kept.
// A failure such as a full disk makes SQLite roll all of them back; without them the file may fit.
frmImportRecipe::Outcome frmImportRecipe::importInGroup(ReadFile file)
{
    auto outcome = Outcome::NotImported;
    try {
        outcome = importRecipe(file);
    } catch (const UnusableDatabase &) {
        dropGroup(); // nothing more is written into a damaged file
        throw;
    } catch (const DatabaseError &) {
        if (m_batch.group.empty()) {
            m_commits.rollBack(); // an open transaction would keep the database locked
            throw;
        }
        commitGroup();
        return m_batch.isStopped ? Outcome::Stopped : importAlone(file);
    } catch (...) {
        if (m_batch.group.empty())
            m_commits.rollBack();
        throw;
    }
    if (outcome == Outcome::Imported)
        m_batch.group.push_back(std::move(file));
    if (m_commits.isDue()) {
        commitGroup();
        m_commits.letOthersIn();
    }
    return m_batch.isStopped ? Outcome::Stopped : outcome;
}

// Commits the files of the group. If that fails, they are imported again one by one, so that those
// that fit are kept; throws at the first one that does not, which is then the current file.
void frmImportRecipe::commitGroup()
{
    try {
        m_commits.commit();
        m_batch.imported += std::ssize(m_batch.group);
        m_batch.group.clear();
        return;
    } catch (const UnusableDatabase &) {
        dropGroup();
        throw;
    } catch (const DatabaseError &) {
        if (!m_commits.isBatch()) {
            dropGroup();
            throw;
        }
    }
    const std::string current = m_batch.current;
    std::vector<ReadFile> files = std::exchange(m_batch.group, {});
    for (ReadFile &file : files) {
        if (importAlone(file) == Outcome::Stopped) {
            m_batch.isStopped = true;
            return;
        }
    }
    m_batch.current = current;
}

frmImportRecipe::Outcome frmImportRecipe::importAlone(ReadFile &file)
{
    m_batch.current = file.path;
    try {
        const Outcome outcome = importRecipe(file);
        m_commits.commit();
        if (outcome == Outcome::Imported)
            ++m_batch.imported;
        return outcome;
    } catch (...) {
        m_commits.rollBack();
        throw;
    }
}

// The first file that is not stored becomes the current one.
void frmImportRecipe::dropGroup()
{
    m_commits.rollBack();
    if (!m_batch.group.empty())
        m_batch.current = m_batch.group.front().path;
    m_batch.group.clear();
}

// The transaction that is begun before the question ends with it, so that the database is not
// locked while the user thinks. After the answer the cursors are requeried inside the one that
// writes.
frmImportRecipe::Outcome frmImportRecipe::importRecipe(ReadFile &file)
{
    beginFile();
    std::variant<IngredientKeys, SrfError> ingredients = findIngredients(file.recipe);
    const bool isGood = std::holds_alternative<IngredientKeys>(ingredients);
    if (isGood && !file.importAnyway && isTaken(file.recipe.name)) {
        const Button answer = askAboutTakenName(file.recipe.name);
        if (answer != Button::Yes)
            return answer == Button::Stop ? Outcome::Stopped : Outcome::NotImported;
        file.importAnyway = true;
        if (beginFile()) // another program may have changed the catalog
            ingredients = findIngredients(file.recipe);
    }
    if (const auto *error = std::get_if<SrfError>(&ingredients))
        return reject(srfErrorText(*error, platform::displayPath(file.path)));
    Transaction transaction(datRecipe.Database());
    ReadSRFRecipe(file.recipe, std::get<IngredientKeys>(ingredients),
                  file.importAnyway ? freeName(file.recipe.name) : std::string(file.recipe.name));
    transaction.commit();
    return Outcome::Imported;
}

// Returns whether the transaction of the group begins with this file. While it is open, no other
// program can change what the cursors hold.
bool frmImportRecipe::beginFile()
{
    const bool begins = m_commits.begin(datRecipe.Database());
    if (begins)
        m_sources.requery();
    return begins;
}

bool frmImportRecipe::isTaken(std::string_view name)
{
    return find(datRecipe.Recordset(), "RecipeName"_ba, name);
}

// Returns the name, or the name followed by the first number that makes it unique.
std::string frmImportRecipe::freeName(std::string_view name)
{
    std::string candidate(name);
    for (int n = 1; isTaken(candidate); ++n)
        candidate = std::string(name) + ' ' + std::to_string(n);
    return candidate;
}

// The answer of an earlier question can apply to all later ones of the batch.
Button frmImportRecipe::askAboutTakenName(std::string_view name)
{
    if (m_batch.answerForAll)
        return *m_batch.answerForAll;
    MessageBox box{tr("%1 is already in the database.  Do you want to import it anyways?")
                       .arg(excerpt(platform::decodeUtf8(name))),
                   tr("Already in database"),
                   Icon::Information,
                   {Button::Yes, Button::No},
                   Button::No};
    bool isForAll = false;
    if (m_commits.isBatch()) {
        box.checkBox = tr("&Do the same for the other recipes that are already there");
        box.isChecked = &isForAll;
    }
    const Button answer = show(std::move(box));
    if (isForAll && answer != Button::Stop)
        m_batch.answerForAll = answer;
    return answer;
}

frmImportRecipe::Outcome frmImportRecipe::reject(const QString &text)
{
    return show({text, tr("Error"), Icon::Exclamation}) == Button::Stop ? Outcome::Stopped
                                                                        : Outcome::NotImported;
}

// Many files of a batch may be bad or already imported, so every box offers to stop the batch.
Button frmImportRecipe::show(MessageBox box)
{
    commitGroup();
    if (m_batch.isStopped)
        return Button::Stop;
    if (m_commits.isBatch())
        box.buttons.push_back(Button::Stop);
    return m_interaction.show(box);
}

// Looks up each ingredient. Returns the first error in the numbers of the file; those of an
// ingredient matter only if it is new, and only in the first entry with its name.
std::variant<frmImportRecipe::IngredientKeys, SrfError>
frmImportRecipe::findIngredients(const SrfRecipe &recipe)
{
    if (std::optional<SrfError> error = headingError(recipe))
        return *std::move(error);
    IngredientKeys keys;
    keys.reserve(recipe.ingredients.size());
    NameSet newNames;
    for (const SrfIngredient &ingredient : recipe.ingredients) {
        keys.push_back(ingredientKey(ingredient.name));
        if (keys.back() != 0 || !newNames.insert(ingredient.name).second)
            continue;
        if (std::optional<SrfError> error = newIngredientError(ingredient))
            return *std::move(error);
    }
    return keys;
}

void frmImportRecipe::ReadSRFRecipe(const SrfRecipe &recipe, const IngredientKeys &ingredients,
                                    std::string_view name)
{
    const qint64 recipeId = addRecipe(recipe, name);
    RecordCursor &ingredientLinks = datRecipeIngredients.Recordset();
    for (std::size_t i = 0; i < ingredients.size(); ++i) {
        const SrfIngredient &ingredient = recipe.ingredients[i];
        const qint64 known = ingredients[i];
        ingredientLinks.AddNew();
        ingredientLinks.setValue("Quantity"_L1, ingredient.quantity);
        ingredientLinks.setKey("IngredientID"_L1,
                               known != 0 ? known : findOrAddIngredient(ingredient));
        ingredientLinks.setKey("RecipeID"_L1, recipeId);
        ingredientLinks.Update();
    }
    RecordCursor &utensilLinks = datRecipeUtensils.Recordset();
    for (const SrfUtensil &utensil : recipe.utensils) {
        utensilLinks.AddNew();
        utensilLinks.setKey("UtensilID"_L1, findOrAddUtensil(utensil.name));
        utensilLinks.setKey("RecipeID"_L1, recipeId);
        utensilLinks.Update();
    }
}

// Returns the new recipe's key.
qint64 frmImportRecipe::addRecipe(const SrfRecipe &recipe, std::string_view name)
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
    return recipes.key();
}

// Returns 0 if the catalog does not have the ingredient.
qint64 frmImportRecipe::ingredientKey(std::string_view name)
{
    RecordCursor &catalog = datIngredients.Recordset();
    return find(catalog, "IngredientName"_ba, name) ? catalog.key() : 0;
}

// Returns the key of an ingredient that may be new; an earlier line may have added it.
qint64 frmImportRecipe::findOrAddIngredient(const SrfIngredient &ingredient)
{
    if (const qint64 key = ingredientKey(ingredient.name))
        return key;
    const auto fields = std::get<SrfNewIngredient>(newIngredient(ingredient));
    RecordCursor &catalog = datIngredients.Recordset();
    catalog.AddNew();
    catalog.setValue("IngredientName"_L1, ingredient.name);
    catalog.setValue("IngredientType"_L1, fields.type);
    catalog.setValue("ShelfLife"_L1, fields.shelfLife);
    catalog.setValue("Vegetarian"_L1, fields.vegetarian);
    catalog.Update();
    catalog.MoveLast();
    return catalog.key();
}

qint64 frmImportRecipe::findOrAddUtensil(std::string_view name)
{
    RecordCursor &catalog = datUtensils.Recordset();
    if (!find(catalog, "UtensilName"_ba, name)) {
        catalog.AddNew();
        catalog.setValue("UtensilName"_L1, name);
        catalog.Update();
        catalog.MoveLast();
    }
    return catalog.key();
}
