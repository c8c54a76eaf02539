#include "export/WebPages.h"

#include "export/ListFields.h"
#include "export/OutputFolder.h"
#include "export/PageFields.h"
#include "export/PageTemplate.h"
#include "export/RecipeFields.h"
#include "export/RecipeReader.h"
#include "export/SearchFile.h"
#include "interaction/Progress.h"

#include <QFile>

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

// Recipes per read: enough for fast reading, few enough for memory.
constexpr std::size_t batchSize = 256;

QByteArray resource(const QString &name)
{
    QFile file(u":/pages/"_s + name);
    [[maybe_unused]] const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    return file.readAll();
}

QByteArray styleSheet(PageStyle style)
{
    return resource(u"styles/common.css"_s)
        + resource(style == PageStyle::Cookbook ? u"styles/cookbook.css"_s
                                                : u"styles/plaincard.css"_s)
        + resource(u"styles/overrides.css"_s);
}

QByteArray script()
{
    return resource(u"scripts/words.js"_s) + resource(u"scripts/filter.js"_s)
        + resource(u"scripts/amounts.js"_s) + resource(u"scripts/kitchen.js"_s);
}

QString toName(std::string_view page)
{
    return QString::fromUtf8(page.data(), std::ssize(page));
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
        , m_divideLists(m_category.uses("letterPages") && m_category.uses("parts"))
        , m_divideMenu(m_divideLists && m_mainMenu.uses("letterPages"))
        , m_total(std::ssize(m_site.recipes) + 1) // with the main menu
    {
        m_folder.begin(fileNames());
        m_folder.write(toName(SiteMap::styleSheet), styleSheet(settings.style));
        m_folder.write(toName(SiteMap::script), script());
    }

    // Returns false if the user stops it.
    bool writeLists(Progress &progress)
    {
        const SiteList all = allRecipes(m_site);
        if (!begin(all.name, progress))
            return false;
        const DividedList divided = divide(all, m_divideMenu);
        write(SiteMap::mainMenuPage, m_mainMenu, mainMenuFields(m_site, m_common, all, divided));
        writeParts(all, divided);
        m_folder.write(toName(SiteMap::searchFile),
                       QByteArrayView(searchFile(m_site, !divided.parts.empty())));
        return forEachList(m_site, [&](const SiteList &list) {
            if (!begin(list.name, progress))
                return false;
            const DividedList parts = divide(list, m_divideLists);
            write(list.page, m_category, categoryFields(m_common, list, parts));
            writeParts(list, parts);
            return true;
        });
    }

    // Returns false if the user stops it.
    bool writeRecipes(Progress &progress)
    {
        const std::vector<RecipePosition> positions = positionsByKey(m_site);
        for (std::size_t first = 0; first < positions.size(); first += batchSize) {
            const std::size_t size = std::min(batchSize, positions.size() - first);
            if (!writeBatch(std::span(positions).subspan(first, size), progress))
                return false;
        }
        return true;
    }

    ExportedPages finish()
    {
        m_folder.commit();
        return {std::ssize(m_site.recipes), m_folder.path() + u'/' + toName(SiteMap::mainMenuPage)};
    }

private:
    // Returns the names of all files, and counts the lists.
    QStringList fileNames()
    {
        QStringList names{toName(SiteMap::mainMenuPage), toName(SiteMap::styleSheet),
                          toName(SiteMap::script), toName(SiteMap::searchFile)};
        const auto addParts = [&names](const SiteList &list, bool mayBeDivided) {
            for (const ListPart &part : divide(list, mayBeDivided).parts)
                names += toName(part.page);
        };
        for (const RecipeEntry &recipe : m_site.recipes)
            names += toName(recipe.page);
        addParts(allRecipes(m_site), m_divideMenu);
        forEachList(m_site, [&](const SiteList &list) {
            names += toName(list.page);
            addParts(list, m_divideLists);
            ++m_total;
            return true;
        });
        return names;
    }

    // Shows what is written next. Returns false if the user stops the export.
    bool begin(const std::string &name, Progress &progress)
    {
        return progress.update(m_done++, m_total, QString::fromStdString(name));
    }

    void write(std::string_view name, PageTemplate &page, const TemplateData &fields)
    {
        m_folder.write(toName(name), QByteArrayView(page.fillIn(fields)));
    }

    void writeParts(const SiteList &list, const DividedList &divided)
    {
        for (std::size_t i = 0; i < divided.parts.size(); ++i)
            write(divided.parts[i].page, m_category, partFields(m_common, list, divided, i));
    }

    bool writeBatch(std::span<const RecipePosition> positions, Progress &progress)
    {
        std::vector<qint64> keys;
        for (const RecipePosition position : positions)
            keys.push_back(m_site.recipes[position].key);
        const std::vector<RecipeDetails> details = m_reader.details(m_site, keys);
        for (std::size_t i = 0; i < details.size(); ++i) {
            const RecipeEntry &recipe = m_site.recipes[positions[i]];
            if (!begin(recipe.title, progress))
                return false;
            write(recipe.page, m_recipe, recipeFields(m_site, m_common, positions[i], details[i]));
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
    bool m_divideLists; // whether the template shows all pages of a divided list
    bool m_divideMenu;
    qsizetype m_done = 0; // recipes and lists
    qsizetype m_total;
};

} // namespace

std::optional<ExportedPages> exportPages(const QString &databasePath, const QString &chosenFolder,
                                         const PageSettings &settings, Progress &progress)
{
    Export pages(databasePath, chosenFolder, settings);
    if (!pages.writeRecipes(progress) || !pages.writeLists(progress))
        return {};
    return pages.finish();
}
