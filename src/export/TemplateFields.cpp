#include "export/TemplateFields.h"

namespace {

using Kind = TemplateField::Kind;

// The fields of every page, followed by others.
TemplateFields page(TemplateFields others)
{
    TemplateFields fields{{"stylesheet"}, {"script"},         {"mainMenu"},
                          {"themeColor"}, {"themeColorDark"}, {"icon"},
                          {"exportedOn"}, {"recipeTotal"},    {"pageDescription"}};
    fields.insert(fields.end(), others.begin(), others.end());
    return fields;
}

// What every link to a recipe has.
TemplateFields recipeLink()
{
    return {{"title"}, {"link"}, {"vegetarian", Kind::YesNo}};
}

TemplateFields mainMenu()
{
    return page(
        {{"count"},
         {"recipeCount"},
         {"hasRecipes", Kind::YesNo},
         {"types", Kind::List, {{"name"}, {"link"}, {"count"}, {"recipeCount"}}},
         {"letters", Kind::List, {{"letter"}, {"anchor"}, {"recipes", Kind::List, recipeLink()}}}});
}

TemplateFields category()
{
    return page({{"name"},
                 {"link"},
                 {"count"},
                 {"recipeCount"},
                 {"recipes", Kind::List, recipeLink()},
                 {"jsonLd", Kind::Json}});
}

TemplateFields recipe()
{
    const TemplateFields paragraphs{{"paragraph"}};
    return page({{"title"},
                 {"type"},
                 {"typeLink"},
                 {"author"},
                 {"servings"},
                 {"yield"},
                 {"rating"},
                 {"vegetarian", Kind::YesNo},
                 {"hasDescription", Kind::YesNo},
                 {"description", Kind::List, paragraphs},
                 {"hasIngredients", Kind::YesNo},
                 {"ingredients",
                  Kind::List,
                  {{"quantity"}, {"amount"}, {"name"}, {"preparation"}, {"link"}}},
                 {"hasUtensils", Kind::YesNo},
                 {"utensils", Kind::List, {{"name"}, {"link"}}},
                 {"hasInstructions", Kind::YesNo},
                 {"hasOwnNumbers", Kind::YesNo},
                 {"instructions", Kind::List, paragraphs},
                 {"previous", Kind::Page, recipeLink()},
                 {"next", Kind::Page, recipeLink()},
                 {"jsonLd", Kind::Json}});
}

} // namespace

const TemplateFields &templateFields(PageKind kind)
{
    static const TemplateFields ofMainMenu = mainMenu();
    static const TemplateFields ofCategory = category();
    static const TemplateFields ofRecipe = recipe();
    switch (kind) {
    case PageKind::MainMenu:
        return ofMainMenu;
    case PageKind::Category:
        return ofCategory;
    case PageKind::Recipe:
        break;
    }
    return ofRecipe;
}
