#include "export/ListPages.h"

#include "data/TypesAndRatings.h"
#include "export/PageNames.h"
#include "export/TitleLetters.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(ListPages)
};

// What one page holds: about 40 screens of a phone.
constexpr std::size_t mostLines = 400;
constexpr std::size_t mostTextLines = 800; // a title can need several on a phone
constexpr std::size_t textLineLength = 28; // bytes
constexpr std::size_t mostTextLinesOfTitle = 3; // the style sheets cut off the rest

// If titles begin with more different Chinese characters than this, they share one heading.
constexpr std::size_t mostChineseHeadings = 19;

ListLine lineOf(const RecipeEntry &recipe)
{
    return {recipe.title, recipe.page, recipe.letter, recipe.type, &recipe, 0};
}

std::vector<ListLine> linesOf(const SiteMap &site, const std::vector<RecipePosition> &recipes)
{
    std::vector<ListLine> lines;
    lines.reserve(recipes.size());
    for (const RecipePosition position : recipes)
        lines.push_back(lineOf(site.recipes[position]));
    return lines;
}

std::vector<ListLine> linesOf(const std::vector<ListEntry> &entries)
{
    std::vector<LetteredText> names;
    names.reserve(entries.size());
    for (const ListEntry &entry : entries)
        names.push_back({entry.name, entry.letter});
    std::vector<ListLine> lines;
    lines.reserve(entries.size());
    for (const std::uint32_t number : sortedOrder(names)) {
        const ListEntry &entry = entries[number];
        lines.push_back(
            {entry.name, entry.page, entry.letter, entry.type, nullptr, entry.recipes.size()});
    }
    return lines;
}

RecipeList allIngredients(const SiteMap &site)
{
    return {.kind = ListKind::Ingredients,
            .name = Text::tr("Ingredients").toStdString(),
            .page = std::string(SiteMap::ingredientsPage),
            .lines = linesOf(site.ingredients)};
}

RecipeList allUtensils(const SiteMap &site)
{
    return {.kind = ListKind::Utensils,
            .name = Text::tr("Utensils").toStdString(),
            .page = std::string(SiteMap::utensilsPage),
            .lines = linesOf(site.utensils)};
}

RecipeList vegetarianRecipes(const SiteMap &site)
{
    return {.name = Text::tr("Vegetarian recipes").toStdString(),
            .page = std::string(SiteMap::vegetarianPage),
            .lines = linesOf(site, site.vegetarian)};
}

// The lists of the types of ingredients, without their trails.
std::vector<RecipeList> ingredientsByType(const RecipeList &all)
{
    std::vector<RecipeList> lists;
    const QStringList types = ingredientTypes();
    PageNames names;
    for (int type = 0; type < types.size(); ++type) {
        RecipeList list{.kind = ListKind::Ingredients,
                        .name = types[type].toStdString(),
                        .page = names.take("ingredients"_L1, types[type], type).toStdString()};
        std::copy_if(all.lines.begin(), all.lines.end(), std::back_inserter(list.lines),
                     [type](const ListLine &line) { return line.type == type; });
        if (!list.lines.empty())
            lists.push_back(std::move(list));
    }
    return lists;
}

ListLink linkTo(const RecipeList &list)
{
    return {list.name, list.page, list.kind, list.lines.size()};
}

void useEntries(const SiteMap &site, const std::vector<ListEntry> &entries,
                const std::vector<ListLink> &trail,
                const std::function<void(const RecipeList &)> &use)
{
    for (const ListEntry &entry : entries)
        use({.name = entry.name,
             .page = entry.page,
             .trail = trail,
             .lines = linesOf(site, entry.recipes)});
}

void useIngredients(const SiteMap &site, const std::function<void(const RecipeList &)> &use)
{
    RecipeList all = allIngredients(site);
    const ListLink link = linkTo(all);
    std::vector<RecipeList> types = ingredientsByType(all);
    for (RecipeList &type : types) {
        all.types.push_back(linkTo(type));
        type.trail = {link};
        use(type);
    }
    use(all);
    useEntries(site, site.ingredients, {link}, use);
}

// The number of lines of text that a title needs on a phone.
std::size_t textLines(const ListLine &line)
{
    return std::min(1 + line.title.size() / textLineLength, mostTextLinesOfTitle);
}

// Returns how many of the lines fit on one page.
std::size_t fitting(std::span<const ListLine> lines)
{
    std::size_t count = 0;
    std::size_t height = 0;
    while (count < lines.size() && count < mostLines) {
        height += textLines(lines[count]);
        if (height > mostTextLines)
            break;
        ++count;
    }
    return count;
}

// Returns the shortest beginning of the title that tells it from the one before it.
std::string startOf(const ListLine &line, const ListLine &before)
{
    constexpr qsizetype longest = 20;
    const QString title = QString::fromUtf8(line.title.data(), std::ssize(line.title));
    const QString other = QString::fromUtf8(before.title.data(), std::ssize(before.title));
    const auto [end, ignored] =
        std::mismatch(title.begin(), title.end(), other.begin(), other.end());
    qsizetype size = std::min<qsizetype>(end - title.begin() + 1, longest);
    if (size < title.size() && title[size - 1].isHighSurrogate())
        ++size;
    return title.left(size).trimmed().toStdString();
}

// The page of a letter: "type_soup_a.html", "letter_a.html" for the main menu; for further pages of
// the letter "letter_a_2.html".
std::string partPage(const RecipeList &list, const LetterLines &letter, std::size_t number)
{
    const std::string_view stem = list.page == SiteMap::mainMenuPage
        ? std::string_view("letter")
        : std::string_view(list.page).substr(0, list.page.rfind('.'));
    std::string page(stem);
    page.append("_").append(letter.id());
    if (number > 1)
        page.append("_").append(std::to_string(number));
    return page + ".html";
}

void addParts(DividedList &divided, const RecipeList &list, std::size_t letter)
{
    const LetterLines &all = divided.letters[letter];
    std::size_t number = 0;
    for (std::span<const ListLine> rest = all.lines; !rest.empty();) {
        const std::size_t count = fitting(rest);
        std::string start;
        if (number > 0)
            start = startOf(rest.front(), *(rest.data() - 1));
        else if (count < rest.size())
            start = all.heading();
        divided.parts.push_back(
            {partPage(list, all, ++number), rest.first(count), letter, std::move(start)});
        rest = rest.subspan(count);
    }
}

} // namespace

std::string countText(ListKind kind, std::size_t count)
{
    const QString number = QLocale(QLocale::English).toString(static_cast<qulonglong>(count));
    QString text;
    switch (kind) {
    case ListKind::Recipes:
        text = count == 1 ? Text::tr("1 recipe") : Text::tr("%1 recipes");
        break;
    case ListKind::Ingredients:
        text = count == 1 ? Text::tr("1 ingredient") : Text::tr("%1 ingredients");
        break;
    case ListKind::Utensils:
        text = count == 1 ? Text::tr("1 utensil") : Text::tr("%1 utensils");
        break;
    }
    return text.replace("%1"_L1, number).toStdString();
}

RecipeList allRecipes(const SiteMap &site)
{
    return {.name = Text::tr("All recipes").toStdString(),
            .page = std::string(SiteMap::mainMenuPage),
            .lines = linesOf(site, site.byTitle)};
}

void forEachList(const SiteMap &site, const std::function<void(const RecipeList &)> &use)
{
    useEntries(site, site.types, {}, use);
    if (!site.vegetarian.empty())
        use(vegetarianRecipes(site));
    if (!site.ingredients.empty())
        useIngredients(site, use);
    if (!site.utensils.empty()) {
        const RecipeList all = allUtensils(site);
        use(all);
        useEntries(site, site.utensils, {linkTo(all)}, use);
    }
}

std::vector<ListLink> menuLists(const SiteMap &site)
{
    std::vector<ListLink> lists;
    for (const RecipeList &list :
         {allIngredients(site), vegetarianRecipes(site), allUtensils(site)}) {
        if (!list.lines.empty())
            lists.push_back(linkTo(list));
    }
    return lists;
}

std::string LetterLines::heading() const
{
    if (letter == 0)
        return "#";
    return letter == chinese ? "漢字" : QString::fromUcs4(&letter, 1).toStdString();
}

std::string LetterLines::id() const
{
    constexpr int hexadecimal = 16;
    if (letter == 0)
        return "other";
    if (letter == chinese)
        return "chinese";
    if (letter >= U'A' && letter <= U'Z')
        return {static_cast<char>(letter - U'A' + U'a')};
    return 'u' + QString::number(letter, hexadecimal).toStdString();
}

std::vector<LetterLines> linesByLetter(std::span<const ListLine> lines)
{
    std::vector<LetterLines> letters;
    std::size_t chineseLetters = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!letters.empty() && letters.back().letter == lines[i].letter) {
            letters.back().lines =
                lines.subspan(i - letters.back().lines.size(), letters.back().lines.size() + 1);
            continue;
        }
        letters.push_back({lines[i].letter, lines.subspan(i, 1)});
        chineseLetters += isChinese(lines[i].letter) ? 1 : 0;
    }
    if (chineseLetters > mostChineseHeadings) { // they come last
        const std::size_t first = letters.size() - chineseLetters;
        const auto begin = letters[first].lines.data() - lines.data();
        letters.resize(first);
        letters.push_back({LetterLines::chinese, lines.subspan(static_cast<std::size_t>(begin))});
    }
    return letters;
}

DividedList divide(const RecipeList &list, bool mayBeDivided)
{
    DividedList divided{linesByLetter(list.lines), {}};
    if (!mayBeDivided || fitting(list.lines) == list.lines.size())
        return divided;
    for (std::size_t letter = 0; letter < divided.letters.size(); ++letter)
        addParts(divided, list, letter);
    return divided;
}
