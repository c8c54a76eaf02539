#include "export/ListFields.h"

#include "export/JsonLd.h"
#include "export/PageFields.h"

#include <QLocale>

#include <algorithm>

namespace {

// Fewer lines are found without letters.
constexpr std::size_t fewestLinesWithLetters = 40;

void setCount(TemplateData &fields, ListKind kind, std::size_t count)
{
    const QLocale english(QLocale::English);
    fields.setText("count", english.toString(static_cast<qulonglong>(count)).toStdString());
    fields.setText("recipeCount", countText(kind, count));
}

TemplateData lineFields(const ListLine &line)
{
    if (line.recipe != nullptr)
        return recipeLink(*line.recipe);
    TemplateData fields;
    fields.setView("title", line.title);
    fields.setView("link", line.link);
    fields.setText("recipeCount", countText(ListKind::Recipes, line.recipes));
    return fields;
}

TemplateData::List lines(std::span<const ListLine> lines)
{
    TemplateData::List list;
    list.reserve(lines.size());
    for (const ListLine &line : lines)
        list.push_back(lineFields(line));
    return list;
}

TemplateData::List links(const std::vector<ListLink> &links)
{
    TemplateData::List list;
    for (const ListLink &link : links) {
        TemplateData &fields = list.emplace_back();
        fields.setText("name", link.name);
        fields.setText("link", link.page);
        setCount(fields, link.kind, link.lines);
    }
    return list;
}

void setFlaggedList(TemplateData &fields, std::string_view flag, std::string_view name,
                    TemplateData::List list)
{
    fields.setFlag(flag, !list.empty());
    fields.setList(name, std::move(list));
}

// The letters with their lines, on a page with all of them.
void setLetters(TemplateData &fields, const std::vector<LetterLines> &letters)
{
    TemplateData::List list;
    for (const LetterLines &letter : letters) {
        TemplateData &entry = list.emplace_back();
        entry.setText("letter", letter.heading());
        entry.setText("anchor", "letter-" + letter.id());
        entry.setList("recipes", lines(letter.lines));
    }
    setFlaggedList(fields, "hasLetters", "letters", std::move(list));
}

// The letters with their pages. `current` is the number of the part that the page is, if any.
void setLetterPages(TemplateData &fields, const SiteList &list, const DividedList &divided,
                    const ListPart *current)
{
    TemplateData::List letters;
    TemplateData::List parts;
    for (const ListPart &part : divided.parts) {
        if (part.letter == letters.size()) {
            const LetterLines &letter = divided.letters[part.letter];
            TemplateData &entry = letters.emplace_back();
            entry.setText("letter", letter.heading());
            entry.setText("link", part.page);
            setCount(entry, list.kind, letter.lines.size());
            entry.setFlag("isCurrent", current != nullptr && current->letter == part.letter);
        }
        if (current != nullptr && current->letter == part.letter && !part.start.empty()) {
            TemplateData &entry = parts.emplace_back();
            entry.setView("name", part.start);
            entry.setView("link", part.page);
            entry.setFlag("isCurrent", &part == current);
        }
    }
    setFlaggedList(fields, "hasLetterPages", "letterPages", std::move(letters));
    if (!parts.empty())
        setFlaggedList(fields, "hasParts", "parts", std::move(parts));
}

void setJsonLd(TemplateData &fields, const std::string &name, std::span<const ListLine> lines)
{
    std::vector<const RecipeEntry *> recipes;
    recipes.reserve(lines.size());
    for (const ListLine &line : lines) {
        if (line.recipe != nullptr)
            recipes.push_back(line.recipe);
    }
    if (!recipes.empty())
        fields.setText("jsonLd", itemListJsonLd(name, recipes));
}

// What the first page of a list and its parts have in common.
TemplateData pageFields(const TemplateData &common, const SiteList &list, const std::string &name,
                        std::size_t count)
{
    TemplateData fields;
    fields.setCommon(common);
    fields.setText("name", name);
    setCount(fields, list.kind, count);
    fields.setText("pageDescription", name + ": " + countText(list.kind, count));
    return fields;
}

void setTrail(TemplateData &fields, const std::vector<ListLink> &trail)
{
    fields.setList("trail", links(trail));
    fields.setText("up", trail.empty() ? std::string(SiteMap::mainMenuPage) : trail.back().page);
}

} // namespace

TemplateData mainMenuFields(const SiteMap &site, const TemplateData &common, const SiteList &list,
                            const DividedList &divided)
{
    TemplateData fields;
    fields.setCommon(common);
    setCount(fields, ListKind::Recipes, site.recipes.size());
    fields.setText("pageDescription", countText(ListKind::Recipes, site.recipes.size()));
    fields.setFlag("hasRecipes", !site.recipes.empty());
    std::vector<ListLink> types;
    for (const ListEntry &type : site.types)
        types.push_back({type.name, type.page, ListKind::Recipes, type.recipes.size()});
    fields.setList("types", links(types));
    setFlaggedList(fields, "hasLists", "lists", links(menuLists(site)));
    fields.setView("search", SiteMap::searchFile);
    if (divided.parts.empty())
        setLetters(fields, divided.letters);
    setLetterPages(fields, list, divided, nullptr);
    return fields;
}

TemplateData categoryFields(const TemplateData &common, const SiteList &list,
                            const DividedList &divided)
{
    TemplateData fields = pageFields(common, list, list.name, list.lines.size());
    fields.setText("link", list.page);
    setTrail(fields, list.trail);
    setFlaggedList(fields, "hasTypes", "types", links(list.types));
    setLetterPages(fields, list, divided, nullptr);
    if (!divided.parts.empty()) {
        if (list.page == SiteMap::ingredientsPage)
            fields.setView("search", SiteMap::searchFile);
        return fields;
    }
    setFlaggedList(fields, "hasRecipes", "recipes", lines(list.lines));
    if (list.lines.size() >= fewestLinesWithLetters)
        setLetters(fields, divided.letters);
    setJsonLd(fields, list.name, list.lines);
    return fields;
}

TemplateData partFields(const TemplateData &common, const SiteList &list,
                        const DividedList &divided, std::size_t number)
{
    const ListPart &part = divided.parts[number];
    const std::string letter = divided.letters[part.letter].heading();
    const std::string name = list.name + " – " + (part.start.empty() ? letter : part.start);
    TemplateData fields = pageFields(common, list, name, part.lines.size());
    fields.setText("link", part.page);
    std::vector<ListLink> trail = list.trail;
    if (list.page != SiteMap::mainMenuPage)
        trail.push_back({list.name, list.page, list.kind, list.lines.size()});
    setTrail(fields, trail);
    setLetterPages(fields, list, divided, &part);
    setFlaggedList(fields, "hasRecipes", "recipes", lines(part.lines));
    setJsonLd(fields, name, part.lines);
    return fields;
}
