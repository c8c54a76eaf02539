#include "export/WebPages.h"

#include "export/OutputFolder.h"
#include "export/PageFields.h"
#include "export/PageTemplate.h"
#include "export/RecipeFields.h"
#include "export/RecipeReader.h"
#include "interaction/Progress.h"

#include <QFile>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

// Recipes per read: enough for fast reading, few enough for memory.
constexpr std::size_t batchSize = 256;

QByteArray styleSheet(PageStyle style)
{
    QFile file(style == PageStyle::Cookbook ? u":/pages/styles/cookbook.css"_s
                                            : u":/pages/styles/plaincard.css"_s);
    [[maybe_unused]] const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    return file.readAll();
}

// The positions of the recipes in the order of their keys, in which they are read.
std::vector<RecipePosition> positionsByKey(const SiteMap &site)
{
    std::vector<RecipePosition> positions(site.recipes.size());
    std::iota(positions.begin(), positions.end(), 0U);
    std::sort(positions.begin(), positions.end(), [&](RecipePosition a, RecipePosition b) {
        return site.recipes[a].key < site.recipes[b].key;
    });
    return positions;
}

class Export
{
public:
    Export(const QString &databasePath, const QString &chosenFolder, const PageSettings &settings)
        : m_mainMenu(PageTemplate::load(PageKind::MainMenu, settings.mainMenuTemplate))
        , m_category(PageTemplate::load(PageKind::Category, settings.categoryTemplate))
        , m_recipe(PageTemplate::load(PageKind::Recipe, settings.recipeTemplate))
        , m_reader(databasePath)
        , m_site(siteMapOf(m_reader.entries()))
        , m_common(commonFields(m_site, settings.style, QDate::currentDate()))
        , m_folder(chosenFolder)
    {
        m_folder.begin(fileNames(m_site));
        m_folder.write(SiteMap::styleSheet, styleSheet(settings.style));
    }

    void writeMenus()
    {
        write(SiteMap::mainMenuPage, m_mainMenu, mainMenuFields(m_site, m_common));
        for (const ListEntry &type : m_site.types)
            write(QString::fromStdString(type.page), m_category,
                  categoryFields(m_site, m_common, type));
    }

    // Returns false if the user stops it.
    bool writeRecipes(Progress &progress)
    {
        const std::vector<RecipePosition> positions = positionsByKey(m_site);
        for (std::size_t first = 0; first < positions.size(); first += batchSize) {
            const std::size_t size = std::min(batchSize, positions.size() - first);
            if (!writeBatch(std::span(positions).subspan(first, size), first, progress))
                return false;
        }
        return true;
    }

    ExportedPages finish()
    {
        m_folder.commit();
        return {std::ssize(m_site.recipes), m_folder.path() + u'/' + SiteMap::mainMenuPage};
    }

private:
    void write(const QString &name, PageTemplate &page, const TemplateData &fields)
    {
        m_folder.write(name, QByteArrayView(page.fillIn(fields)));
    }

    bool writeBatch(std::span<const RecipePosition> positions, std::size_t done, Progress &progress)
    {
        std::vector<qint64> keys;
        for (const RecipePosition position : positions)
            keys.push_back(m_site.recipes[position].key);
        const std::vector<RecipeDetails> details = m_reader.details(m_site, keys);
        for (std::size_t i = 0; i < details.size(); ++i) {
            const RecipeEntry &recipe = m_site.recipes[positions[i]];
            const std::size_t finished = done + i;
            if (!progress.update(static_cast<qsizetype>(finished), std::ssize(m_site.recipes),
                                 QString::fromStdString(recipe.title)))
                return false;
            write(QString::fromStdString(recipe.page), m_recipe,
                  recipeFields(m_site, m_common, positions[i], details[i]));
        }
        return true;
    }

    PageTemplate m_mainMenu;
    PageTemplate m_category;
    PageTemplate m_recipe;
    RecipeReader m_reader;
    SiteMap m_site;
    TemplateData m_common;
    OutputFolder m_folder;
};

} // namespace

std::optional<ExportedPages> exportPages(const QString &databasePath, const QString &chosenFolder,
                                         const PageSettings &settings, Progress &progress)
{
    Export pages(databasePath, chosenFolder, settings);
    // The recipes first: with many of them the menus take seconds, during which the progress of the
    // recipes is already shown.
    if (!pages.writeRecipes(progress))
        return {};
    pages.writeMenus();
    return pages.finish();
}
