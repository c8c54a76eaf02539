#pragma once

#include "data/DataSource.h"
#include "import/GroupCommit.h"
#include "import/srf/SrfParser.h"
#include "interaction/Interaction.h"

#include <QCoreApplication>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// The hidden owner of the five cursors through which recipe files are imported. It is never shown.
class frmImportRecipe
{
    Q_DECLARE_TR_FUNCTIONS(frmImportRecipe)

public:
    enum class Outcome {
        Imported,
        NotImported,
        Stopped, // not imported, and the user has stopped the batch
    };

    // The interaction shows the questions and messages; it must outlive this object.
    explicit frmImportRecipe(Interaction &interaction);

    // Points the sources at the recipe database.
    void Form_Load();

    // To be called after Form_Load. Throws DatabaseError if the database cannot be used; the next
    // import then tries to open it again.
    void openDataSources();

    // Imports the file as one new recipe, completely or not at all. Tells the user if the file is
    // missing or bad, and asks if a recipe with its title is already in the database. Throws
    // DatabaseError if the database cannot be read or written.
    Outcome ImportSRFFile(const std::filesystem::path &path);

    // Runs imports, which calls ImportSRFFile for each file of a batch. The files share
    // transactions: all of them are committed only when batch() returns or throws. The database is
    // not locked while a box is shown, and every box has a Stop button. If the batch ends early,
    // throws an exception of the same kind whose text says how many recipes were imported, at which
    // file it ended and why.
    void batch(const std::function<void()> &imports);

private:
    Q_DISABLE_COPY_MOVE(frmImportRecipe)

    struct ReadFile {
        std::string path; // a std::filesystem::path would take several times as long to copy
        SrfRecipe recipe;
        bool importAnyway = false; // the user has said so, although its title is taken
    };

    // The state of a batch. A single import is a batch of one file.
    struct Batch {
        std::string current; // path of the file that is being imported
        std::vector<ReadFile> group; // imported in the open transaction, in this order
        qsizetype imported = 0; // committed recipes
        std::optional<Button> answerForAll; // to the question about a taken title
        bool isStopped = false; // by the user, while a group was imported again
    };

    void runBatch(const std::function<void()> &imports);
    QString endedEarlyText(const QString &reason) const;
    QString importRestText() const; // empty if no recipe was imported
    Outcome importInGroup(ReadFile file);
    Outcome importAlone(ReadFile &file);
    Outcome importRecipe(ReadFile &file);
    void commitGroup();
    void dropGroup();
    bool beginFile();
    bool isTaken(std::string_view name);
    std::string freeName(std::string_view name);
    Button askAboutTakenName(std::string_view name);
    Outcome reject(const QString &text);
    Button show(MessageBox box);

    // The keys of a recipe's ingredients, in its order; 0 for one that the catalog does not have.
    using IngredientKeys = std::vector<qint64>;

    std::variant<IngredientKeys, SrfError> findIngredients(const SrfRecipe &recipe);
    void ReadSRFRecipe(const SrfRecipe &recipe, const IngredientKeys &ingredients,
                       std::string_view name);
    qint64 addRecipe(const SrfRecipe &recipe, std::string_view name);
    qint64 ingredientKey(std::string_view name);
    qint64 findOrAddIngredient(const SrfIngredient &ingredient);
    qint64 findOrAddUtensil(std::string_view name);

    Interaction &m_interaction;
    DataSources m_sources;
    DataSource datRecipe{m_sources};
    DataSource datIngredients{m_sources};
    DataSource datRecipeIngredients{m_sources};
    DataSource datUtensils{m_sources};
    DataSource datRecipeUtensils{m_sources};
    GroupCommit m_commits;
    Batch m_batch;
};
