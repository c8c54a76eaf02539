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

// The pages of three recipes with the text in all of their fields.
class Pages
{
public:
    explicit Pages(const QString &text)
        : m_text(text.toStdString())
        , m_site(siteMapOf({.recipes = {{1, m_text, 1}, {2, m_text, 0}, {3, m_text, 1}},
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

    TemplateData fields(PageKind kind) const
    {
        switch (kind) {
        case PageKind::MainMenu:
            return mainMenuFields(m_site, m_common);
        case PageKind::Category:
            return categoryFields(m_site, m_common, m_site.types.front());
        case PageKind::Recipe:
            break;
        }
        return recipeFields(m_site, m_common, 1, m_details);
    }

private:
    std::string m_text;
    SiteMap m_site;
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
        std::string made;
        std::get<MustacheTemplate>(parsed).render(pages.fields(kind), made);
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
