#include "GeneratedRecipe.h"

#include <algorithm>
#include <array>
#include <random>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 25> styles = {
    "Baked",       "braised",   "Smoked",   "Crème",     "Grandma's", "glazed", "Hearty",
    "Überbackene", "light",     "Marbled",  "Żytni",     "Pickled",   "quick",  "Roast",
    "Spiced",      "Sweet",     "Summer",   "éclair of", "Toasted",   "Warm",   "Winter",
    "Zesty",       "Œufs à la", "Jalapeño", "Little",
};

constexpr std::array<std::string_view, 40> dishes = {
    "broth",    "cake",    "casserole", "chowder", "crêpes",   "curry",   "dumplings", "flan",
    "fritters", "gratin",  "Gemüse",    "Knödel",  "lasagna",  "loaf",    "mousse",    "noodles",
    "omelette", "paella",  "pancakes",  "pie",     "pilaf",    "pudding", "purée",     "quiche",
    "ragoût",   "risotto", "roll",      "salad",   "sandwich", "sauce",   "skewers",   "soufflé",
    "soup",     "stew",    "Strudel",   "tart",    "terrine",  "toast",   "wrap",      "борщ",
};

constexpr std::array<std::string_view, 40> foods = {
    "almonds", "apples",   "asparagus", "barley",    "beans",    "beef",    "beetroot",  "butter",
    "cabbage", "carrots",  "celery",    "cheese",    "cherries", "chicken", "chickpeas", "cod",
    "dates",   "eggs",     "fennel",    "figs",      "garlic",   "ginger",  "hazelnuts", "honey",
    "leeks",   "lentils",  "lemon",     "mushrooms", "Äpfel",    "oats",    "onions",    "peas",
    "peppers", "potatoes", "pumpkin",   "rice",      "salmon",   "spinach", "tomatoes",  "yogurt",
};

constexpr std::array<std::string_view, 4> occasions = {"", " for guests", " of the house",
                                                       " in a hurry"};

constexpr std::array<std::string_view, 8> days = {
    "",           " on Monday",   " on Tuesday", " on Wednesday", " on Thursday",
    " on Friday", " on Saturday", " on Sunday",
};

constexpr std::array<std::string_view, 25> qualities = {
    "fresh", "dried", "frozen",  "tinned", "smoked", "salted", "sweet",  "sour",   "ripe",
    "young", "wild",  "organic", "red",    "green",  "white",  "black",  "golden", "small",
    "large", "whole", "peeled",  "hot",    "mild",   "râpé",   "coarse",
};

constexpr std::array<std::string_view, 10> cuts = {
    "",          ", chopped", ", diced",  ", ground", ", halved",
    ", roasted", ", sliced",  ", soaked", ", washed", ", weiß",
};

constexpr std::array<std::string_view, 40> tools = {
    "baking sheet", "basket",      "blender",   "board", "bowl",    "brush",   "casserole",
    "colander",     "cup",         "cutter",    "fork",  "funnel",  "grater",  "grill",
    "jar",          "jug",         "knife",     "ladle", "lid",     "mill",    "mixer",
    "mortar",       "mould",       "oven dish", "pan",   "peeler",  "pot",     "press",
    "rolling pin",  "scale",       "scissors",  "sieve", "skillet", "spatula", "spoon",
    "steamer",      "thermometer", "timer",     "tongs", "whisk",
};

constexpr std::array<std::string_view, 8> sentences = {
    "Heat the oil in a wide pan and let it get hot but not smoking. ",
    "Add the onions and cook them slowly until they are soft and golden. ",
    "Stir from time to time, so that nothing sticks to the bottom.\r\n",
    "Pour in the stock, bring it to the boil and turn the heat down. ",
    "Season with salt, pepper and a little nutmeg; taste it before you go on. ",
    "Preheat the oven to 180 °C and butter the dish well.\r\n",
    "Let it rest for ten minutes under a cloth. ",
    "Serve warm with bread and a green salad.\r\n",
};

constexpr std::array<std::string_view, 6> authors = {"Anna", "Bérénice", "Carl",
                                                     "",     "Doris",    "Émile"};

constexpr std::array<std::string_view, 6> quantities = {
    "1 cup", "2 tablespoons (heaped)", "500 g", "a pinch", "3", "½ liter (lukewarm)"};

// Maps the numbers below `range` to themselves in a scattered order, so that names are not
// generated in sorted order. The multiplication is a permutation because the only prime factors of
// every range here are 2, 3 and 5.
std::size_t permuted(int number, std::size_t range)
{
    constexpr std::size_t prime = 48271;
    return static_cast<std::size_t>(number) * prime % range;
}

// Returns an element that `number` selects, and removes this choice from the number.
template <std::size_t count>
std::string_view take(std::size_t &number, const std::array<std::string_view, count> &from)
{
    const std::string_view taken = from[number % count];
    number /= count;
    return taken;
}

class RandomChoices
{
public:
    explicit RandomChoices(int seed)
        : m_engine(static_cast<unsigned>(seed) + 1)
    {
    }

    int below(int end) { return static_cast<int>(m_engine() % static_cast<unsigned>(end)); }

    template <std::size_t count>
    std::string one(const std::array<std::string_view, count> &from)
    {
        return std::string(from[m_engine() % count]);
    }

private:
    std::minstd_rand m_engine;
};

std::string generatedInstructions(RandomChoices &choices)
{
    const int length = 1000 + choices.below(920);
    std::string text;
    while (std::ssize(text) < length)
        text += choices.one(sentences);
    return text;
}

} // namespace

CatalogSizes catalogSizes(int recipes)
{
    return {std::clamp(recipes / 10, 500, 10'000), std::clamp(recipes / 100, 100, 1'000)};
}

std::string generatedRecipeName(int number)
{
    constexpr std::size_t namesOfDay =
        styles.size() * dishes.size() * foods.size() * occasions.size();
    static_assert(generatedRecipes == namesOfDay * days.size());
    std::size_t rest = permuted(number, namesOfDay);
    std::string name(take(rest, styles));
    name.append(" ").append(take(rest, dishes));
    name.append(" with ").append(take(rest, foods));
    name.append(take(rest, occasions));
    return name.append(days[static_cast<std::size_t>(number) / namesOfDay]);
}

GeneratedRecipe generatedRecipe(int number, CatalogSizes catalogs)
{
    RandomChoices choices(number);
    GeneratedRecipe recipe;
    recipe.name = generatedRecipeName(number);
    recipe.description = "A dish for " + choices.one(authors) + " and friends, made with "
        + choices.one(foods) + " -  Prep time: " + std::to_string(choices.below(90)) + " min";
    recipe.author = choices.one(authors);
    recipe.type = choices.below(16);
    recipe.instructions = generatedInstructions(choices);
    recipe.rating = choices.below(6);
    recipe.serves = 1 + choices.below(12);
    for (int i = 0; i < 10; ++i)
        recipe.ingredients.push_back(
            {choices.below(catalogs.ingredients), choices.one(quantities)});
    for (int i = 0; i < 3; ++i)
        recipe.utensils.push_back(choices.below(catalogs.utensils));
    return recipe;
}

GeneratedIngredient generatedIngredient(int number)
{
    constexpr std::size_t range = qualities.size() * foods.size() * cuts.size();
    std::size_t rest = permuted(number, range);
    std::string name(take(rest, qualities));
    name.append(" ").append(take(rest, foods)).append(take(rest, cuts));
    return {name, number % 12, 1 + number % 365, number % 3 != 0};
}

std::string generatedUtensilName(int number)
{
    constexpr std::size_t range = qualities.size() * tools.size();
    std::size_t rest = permuted(number, range);
    std::string name(take(rest, qualities));
    return name.append(" ").append(take(rest, tools));
}

std::string srfText(const GeneratedRecipe &recipe)
{
    const std::string end = "\r\n";
    std::string text = "Recipe" + end + recipe.name + end + recipe.author + end
        + std::to_string(recipe.type) + end + std::to_string(recipe.serves) + end
        + recipe.description + end + "<Instructions>" + end + recipe.instructions;
    if (!recipe.instructions.ends_with(end))
        text += end;
    text += "</Instructions>" + end + "<Ingredients>" + end;
    for (const GeneratedLine &line : recipe.ingredients) {
        const GeneratedIngredient ingredient = generatedIngredient(line.ingredient);
        text += ingredient.name + '|' + std::to_string(ingredient.type) + '|'
            + std::to_string(ingredient.shelfLife) + '|'
            + (ingredient.vegetarian ? "True" : "False") + "||" + line.quantity + end;
    }
    text += "</Ingredients>" + end + "<Utensils>" + end;
    for (const int utensil : recipe.utensils)
        text += generatedUtensilName(utensil) + end;
    return text + "</Utensils>" + end;
}
