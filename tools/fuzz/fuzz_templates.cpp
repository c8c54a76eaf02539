#include "export/PageFields.h"

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

std::vector<kainjow::mustache::data> allFields(const QString &text)
{
    std::vector<RecipeEntry> recipes;
    for (qint64 key = 1; key <= 3; ++key)
        recipes.push_back({key, text + QString::number(key), static_cast<int>(key % 2), {}});
    const SiteMap site = siteMapOf(std::move(recipes));
    RecipeDetails details;
    details.title = details.author = details.servings = details.ratingText = site.recipes[1].title;
    details.description = details.utensils = details.instructions = {text, text};
    details.ingredients = {{text, text}, {{}, text}};
    return {mainMenuFields(site), categoryFields(site, site.types.front()),
            recipeFields(site, 1, details)};
}

// The engine accepts every template that the check accepts, and no text of a recipe adds a tag to
// the page.
void checkKind(PageKind kind, const std::string &text)
{
    static const std::vector<kainjow::mustache::data> hostile = allFields(hostileText);
    static const std::vector<kainjow::mustache::data> harmless = allFields(u"harmless"_s);
    const std::optional<TemplateError> error = checkTemplate(text, knownFields(kind));
    if (error) {
        const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
        require(error->line >= 1 && error->line <= lines && !error->text.isEmpty());
        return;
    }
    kainjow::mustache::mustache page(text);
    require(page.is_valid());
    const auto tags = [&](const std::vector<kainjow::mustache::data> &fields) {
        const std::string made = page.render(fields[static_cast<std::size_t>(kind)]);
        require(page.is_valid());
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
