// What must be stored after a press: the part of Model that knows the rules of saving.

#include "Model.h"

#include "OtherProgram.h"

#include <QPushButton>
#include <QWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isNumber(const QString &typed)
{
    bool isOne = true;
    if (!typed.isEmpty())
        typed.toDouble(&isOne);
    return isOne;
}

bool isInvalidName(const QString &name)
{
    return name.trimmed().isEmpty() || std::any_of(name.begin(), name.end(), [](QChar c) {
               return u"\\/:*?\"'<>|()"_s.contains(c);
           });
}

template <class Value>
void enter(Value &stored, const Value &shown, const Value &entered, bool isNew)
{
    if (isNew || entered != shown)
        stored = entered;
}

// Returns the key of the row that only the file has, or of the one that it should have.
template <class Row>
Key newKey(const std::map<Key, Row> &stored, const std::map<Key, Row> &known)
{
    for (const auto &[key, row] : stored) {
        if (!known.contains(key))
            return key;
    }
    return known.empty() ? 1 : known.rbegin()->first + 1;
}

} // namespace

// The title may have changed during the press, and with it the key of the recipe shown.
void Model::recipePressed(const Press &press, Shown &shown)
{
    const QString button = press.button->objectName();
    const QString title = press.window->windowTitle();
    const bool isChange = button.startsWith("cmdChange"_L1);
    const bool isSaved = button == "cmdSave"_L1 || (isChange && press.isChanged)
        || press.answerTo(u"Save Changes"_s) == "Yes"_L1;
    if (isSaved && !press.isRefused() && press.shown.key != none)
        recipeSaved(press, shown);
    else
        expect(m_tables, press);

    const QString name = press.answerTo(u"Recipe Name"_s).trimmed();
    if (button == "cmdNew"_L1 && !press.hasFailed() && !name.isEmpty() && title == name) {
        shown.key = 0;
        shown.description = QString();
    }
    for (auto &[window, editor] : m_windows) {
        if (isChange && isEditor(*window) && editor.key == none)
            editor.key = shown.key;
    }
}

void Model::recipeSaved(const Press &press, Shown &shown)
{
    const Recipe &entered = press.recipe;
    const Recipe &found = press.shown.recipe;
    const bool isNew = press.shown.key == 0;
    const Key key = isNew ? newKey(m_file.read().recipes, m_tables.recipes) : press.shown.key;
    Tables after = m_tables;
    if (isNew || after.recipes.contains(key)) {
        Recipe &row = after.recipes[key];
        enter(row.name, found.name, entered.name, isNew);
        row.description = press.shown.description.value_or(row.description);
        enter(row.author, found.author, entered.author, isNew);
        enter(row.type, found.type, entered.type, isNew);
        enter(row.instructions, found.instructions, entered.instructions, isNew);
        enter(row.rating, found.rating, entered.rating, isNew);
        enter(row.serves, found.serves, entered.serves, isNew);
    } else if (press.boxes.empty()) {
        addFault(u"the recipe on the screen is gone, and the user was not told"_s);
    }
    expect(after, press);

    const QString title = press.window->windowTitle();
    if (isNew && title == entered.name && m_tables.recipes.contains(key))
        shown.key = key;
    if (press.button->objectName() == "cmdSave"_L1 && !press.hasFailed() && title != entered.name
        && entered.name != found.name)
        addFault(u"\"%1\" was saved and \"%2\" is shown"_s.arg(entered.name, title));
}

bool Model::isIngredientRefused(const Ingredient &entered, const Shown &shown) const
{
    const bool isShelfLifeEntered = entered.shelfLife != shown.ingredient.shelfLife;
    return isInvalidName(entered.name) || (isShelfLifeEntered && !isNumber(entered.shelfLife))
        || std::any_of(
               m_tables.ingredients.begin(), m_tables.ingredients.end(), [&](const auto &row) {
                   return row.first != shown.key && isSameText(row.second.name, entered.name);
               });
}

void Model::ingredientPressed(const Press &press, const Shown &shown)
{
    const QString button = press.button->objectName();
    Tables after = m_tables;
    if (button == "cmdDelete"_L1) {
        if (press.answerTo(u"Confirm"_s) == "Yes"_L1)
            after.ingredients.erase(shown.key);
    } else if (button == "cmdSave"_L1 || press.answerTo(u"Save Changes"_s) == "Yes"_L1) {
        const Ingredient &entered = press.ingredient;
        const bool isNew = shown.key == 0;
        const Key key = isNew ? newKey(m_file.read().ingredients, m_tables.ingredients) : shown.key;
        if (!isIngredientRefused(entered, shown) && (isNew || after.ingredients.contains(key))) {
            Ingredient &row = after.ingredients[key];
            enter(row.name, shown.ingredient.name, entered.name, isNew);
            enter(row.type, shown.ingredient.type, entered.type, isNew);
            enter(row.shelfLife, shown.ingredient.shelfLife, entered.shelfLife, isNew);
            enter(row.vegetarian, shown.ingredient.vegetarian, entered.vegetarian, isNew);
        }
    }
    expect(after, press);
}

void Model::utensilPressed(const Press &press, const Shown &shown)
{
    const QString button = press.button->objectName();
    Tables after = m_tables;
    if (button == "cmdSave"_L1 || press.answerTo(u"Save Changes"_s) == "Yes"_L1) {
        const QString name = press.utensil.trimmed();
        const bool isNew = shown.key == 0;
        const Key key = isNew ? newKey(m_file.read().utensils, m_tables.utensils) : shown.key;
        if (!isInvalidName(name) && findName(m_tables.utensils, name, none) == none
            && (isNew || after.utensils.contains(key)))
            after.utensils[key].name = name;
    }
    expect(after, press);
}

// A row that was renamed is known by its key, and one that was deleted and added again by its name.
std::optional<std::vector<Link>> Model::linksOf(const Press &press) const
{
    const bool ingredients = isIngredientEditor(*press.window);
    std::vector<Link> links;
    for (const Line &line : press.lines) {
        Key key = line.key;
        if (ingredients ? !m_tables.ingredients.contains(key) : !m_tables.utensils.contains(key))
            key = ingredients ? findName(m_tables.ingredients, line.name, none)
                              : findName(m_tables.utensils, line.name, none);
        if (key == none)
            return {};
        links.push_back({key, line.quantity});
    }
    return links;
}

void Model::editorPressed(const Press &press, const Shown &shown)
{
    const bool ingredients = isIngredientEditor(*press.window);
    for (const Line &line : press.lines)
        checkKey(line, ingredients ? m_ingredients : m_utensils);
    Tables after = m_tables;
    if (press.button->objectName() == "cmdDone"_L1) {
        const auto links = linksOf(press);
        if (!press.hasFailed() && press.isRefused() != !links)
            addFault(links ? u"lines were refused that the catalog has"_s
                           : u"lines were not refused that the catalog lacks"_s);
        if (!m_tables.recipes.contains(shown.key)) {
            if (!press.hasFailed())
                addFault(u"the recipe is gone, and the user was not told"_s);
        } else if (links) {
            (ingredients ? after.ingredientLinks : after.utensilLinks)[shown.key] = *links;
        }
    }
    expect(after, press);
}
