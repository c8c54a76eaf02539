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

// What every link to a list has.
TemplateFields listLink()
{
    return {{"name"}, {"link"}, {"count"}, {"recipeCount"}};
}

// The lines under a letter.
TemplateField letters(const TemplateFields &line)
{
    return {"letters", Kind::List, {{"letter"}, {"anchor"}, {"recipes", Kind::List, line}}};
}

TemplateField letterPages()
{
    return {"letterPages",
            Kind::List,
            {{"letter"}, {"link"}, {"count"}, {"recipeCount"}, {"isCurrent", Kind::YesNo}}};
}

TemplateFields mainMenu()
{
    return page({{"count"},
                 {"recipeCount"},
                 {"hasRecipes", Kind::YesNo},
                 {"types", Kind::List, listLink()},
                 {"hasLists", Kind::YesNo},
                 {"lists", Kind::List, listLink()},
                 {"search"},
                 {"hasLetters", Kind::YesNo},
                 letters(recipeLink()),
                 {"hasLetterPages", Kind::YesNo},
                 letterPages()});
}

TemplateFields category()
{
    TemplateFields line = recipeLink();
    line.push_back({"recipeCount"});
    return page({{"name"},
                 {"link"},
                 {"count"},
                 {"recipeCount"},
                 {"trail", Kind::List, listLink()},
                 {"up"},
                 {"hasTypes", Kind::YesNo},
                 {"types", Kind::List, listLink()},
                 {"hasRecipes", Kind::YesNo},
                 {"recipes", Kind::List, line},
                 {"hasLetters", Kind::YesNo},
                 letters(line),
                 {"hasLetterPages", Kind::YesNo},
                 letterPages(),
                 {"search"},
                 {"hasParts", Kind::YesNo},
                 {"parts", Kind::List, {{"name"}, {"link"}, {"isCurrent", Kind::YesNo}}},
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
