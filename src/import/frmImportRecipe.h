#pragma once

#include "data/DataSource.h"
#include "import/GroupCommit.h"
#include "import/srf/SrfError.h"
#include "import/srf/SrfRecipe.h"
#include "interaction/Interaction.h"

#include <filesystem>
#include <functional>

// The hidden owner of the five cursors through which recipe files are imported. It is never shown.
class frmImportRecipe
{
public:
    enum class Outcome {
        Imported,
        NotImported,
        Stopped, // not imported, and the user wants no more files of the batch
    };

    // Questions and messages go through the interaction, which must outlive it.
    explicit frmImportRecipe(Interaction &interaction);

    // Points the sources at the recipe file.
    void Form_Load();

    // After Form_Load; throws DatabaseError where the recipe file cannot be used. An import then
    // tries again.
    void openDataSources();

    // Imports the file as one new recipe, whole or not at all. Tells the user where the file is
    // missing or bad and asks where its recipe is in the database already. Throws DatabaseError
    // where the recipe file cannot be written.
    Outcome ImportSRFFile(const std::filesystem::path &path);

    // Runs imports, which calls ImportSRFFile for one file after the other. The files share
    // transactions: one counts as stored only when the batch has ended, in whatever way. Nothing is
    // locked while the user is asked. Every box lets the user stop the batch.
    void batch(const std::function<void()> &imports);

private:
    Q_DISABLE_COPY_MOVE(frmImportRecipe)

    Outcome importRecipe(const SrfRecipe &recipe, const std::filesystem::path &path);
    void beginFile();
    bool isTaken(const QString &name);
    QString freeName(const QString &name);
    Button askAboutTakenName(const QString &name);
    Outcome reject(const QString &text);
    Button show(MessageBox box);

    std::optional<SrfError> checkNumbers(const SrfRecipe &recipe);
    void ReadSRFRecipe(const SrfRecipe &recipe, const QString &name);
    QVariant addRecipe(const SrfRecipe &recipe, const QString &name);
    void addIngredient(const SrfIngredient &ingredient, const QVariant &recipeId);
    void addUtensil(const SrfUtensil &utensil, const QVariant &recipeId);

    Interaction &m_interaction;
    DataSources m_sources;
    DataSource datRecipe{m_sources};
    DataSource datIngredients{m_sources};
    DataSource datRecipeIngredients{m_sources};
    DataSource datUtensils{m_sources};
    DataSource datRecipeUtensils{m_sources};
    GroupCommit m_commits;
};
