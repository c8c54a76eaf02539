#include "export/ListFields.h"
#include "export/MustacheTemplate.h"
#include "export/PageFields.h"
#include "export/RecipeFields.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// A text that would be seen in a page if it was not escaped or was taken for a template.
const QString hostileText = u"<hostile>&\"'{{>author}}{{#next}}</script>"_s;

// Pages with the text in all of their fields. There are enough recipes to divide their lists.
class Pages
{
public:
    explicit Pages(const QString &text)
        : m_text(text.toStdString())
        , m_site(siteMapOf({.recipes = recipes(m_text),
                            .ingredients = {{.key = 1, .name = m_text, .recipes = {0, 1}}},
                            .utensils = {{.key = 1, .name = m_text, .recipes = {1}}}}))
        , m_common(commonFields(m_site, PageStyle::PlainCard, {}))
        , m_details{.author = m_text,
                    .servings = m_text,
                    .rating = 1,
                    .description = {m_text, m_text},
                    .ingredients = {{m_site.ingredient(1), m_text}, {m_site.ingredient(1), {}}},
                    .utensils = {m_site.utensil(1)},
                    .instructions = {m_text, m_text}}
    {
    }

    std::string render(PageKind kind, const MustacheTemplate &page) const
    {
        std::string text;
        const auto add = [&](const TemplateData &fields) { page.render(fields, text); };
        if (kind == PageKind::MainMenu) {
            for (const bool mayBeDivided : {false, true})
                add(mainMenuFields(m_site, m_common, m_all, divide(m_all, mayBeDivided)));
        } else if (kind == PageKind::Category) {
            add(partFields(m_common, m_all, divide(m_all, true), 0));
            forEachList(m_site, [&](const SiteList &list) {
                add(categoryFields(m_common, list, divide(list, true)));
                return true;
            });
        } else {
            add(recipeFields(m_site, m_common, 1, m_details));
        }
        return text;
    }

private:
    static std::vector<RecipeEntry> recipes(const std::string &title)
    {
        constexpr int count = 401;
        std::vector<RecipeEntry> recipes;
        for (int key = 1; key <= count; ++key)
            recipes.push_back({key, title, key % 2});
        return recipes;
    }

    std::string m_text;
    SiteMap m_site;
    SiteList m_all = allRecipes(m_site);
    TemplateData m_common;
    RecipeDetails m_details;
};

// An error names a line of the template, and no text of a recipe adds a tag to the page.
void checkKind(PageKind kind, const std::string &text)
{
    static const Pages hostile(hostileText);
    static const Pages harmless(u"harmless"_s);
    const auto parsed = MustacheTemplate::parse(text, templateFields(kind));
    if (const auto *error = std::get_if<TemplateError>(&parsed)) {
        const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
        require(error->line >= 1 && error->line <= lines && !error->text.isEmpty());
        return;
    }
    const auto tags = [&](const Pages &pages) {
        const std::string made = pages.render(kind, std::get<MustacheTemplate>(parsed));
        return std::count(made.begin(), made.end(), '<');
    };
    require(tags(hostile) == tags(harmless));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    for (const PageKind kind : {PageKind::MainMenu, PageKind::Category, PageKind::Recipe})
        checkKind(kind, text);
    return 0;
}
