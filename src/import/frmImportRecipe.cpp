#include "import/frmImportRecipe.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/DatabasePath.h"
#include "import/srf/SrfFile.h"
#include "interaction/ControlCharacters.h"
#include "platform/Paths.h"
#include "platform/UserVisibleError.h"

#include <QLocale>
#include <QScopeGuard>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

// The rating that every imported recipe gets.
constexpr int importedRating = 5;

// In bytes. A larger file takes long to parse, and other programs must not wait for that.
constexpr qsizetype largeFile = qsizetype(64) << 10;

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
        .arg(imported, excerpt(platform::displayPath(m_batch.current.filename())),
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
    m_batch.current = path;
    std::error_code failure; // reading the file explains it
    if (const auto size = std::filesystem::file_size(path, failure); !failure && size > largeFile)
        commitGroup();
    if (m_batch.isStopped)
        return Outcome::Stopped;
    const std::variant<QByteArray, SrfFileError> read = readSrfFile(path);
    if (const auto *error = std::get_if<SrfFileError>(&read)) {
        return reject(error->failure == platform::ReadFailure::NotFound
                          ? tr("Could not find file.  Try importing file though File, Import.")
                          : error->message);
    }
    std::variant<SrfRecipe, SrfError> parsed = parseSrf(decodeSrf(std::get<QByteArray>(read)));
    if (const auto *error = std::get_if<SrfError>(&parsed))
        return reject(srfErrorText(*error, platform::displayPath(path)));
    auto &recipe = std::get<SrfRecipe>(parsed);
    NumberErrors numberErrors = findNumberErrors(recipe);
    return importInGroup({path, std::move(recipe), std::move(numberErrors)});
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
    const std::filesystem::path current = m_batch.current;
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
    std::optional<SrfError> error = numberError(file.numberErrors);
    if (!error && !file.importAnyway && isTaken(file.recipe.name)) {
        const Button answer = askAboutTakenName(file.recipe.name);
        if (answer != Button::Yes)
            return answer == Button::Stop ? Outcome::Stopped : Outcome::NotImported;
        file.importAnyway = true;
        beginFile();
        error = numberError(file.numberErrors); // another program may have changed the catalogs
    }
    if (error)
        return reject(srfErrorText(*error, platform::displayPath(file.path)));
    Transaction transaction(datRecipe.Database());
    ReadSRFRecipe(file.recipe, freeName(file.recipe.name));
    transaction.commit();
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

// The answer of an earlier question can apply to all later ones of the batch.
Button frmImportRecipe::askAboutTakenName(const QString &name)
{
    if (m_batch.answerForAll)
        return *m_batch.answerForAll;
    MessageBox box{
        tr("%1 is already in the database.  Do you want to import it anyways?").arg(excerpt(name)),
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

// Returns the first error that matters: one of an ingredient does only if the catalog does not have
// the ingredient.
std::optional<SrfError> frmImportRecipe::numberError(const NumberErrors &errors)
{
    if (errors.heading)
        return errors.heading;
    RecordCursor &catalog = datIngredients.Recordset();
    for (const auto &[name, error] : errors.ingredients) {
        catalog.FindFirst(criterion("IngredientName"_L1, Comparison::Equal, name));
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
