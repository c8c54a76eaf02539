#pragma once

#include <QString>

// The order of recipes and ingredients in lists. The numbers are the positions in the lists of the
// settings window, and they are stored.
enum class SortOrder { CategoryThenName = 0, Name = 1 };

enum class PageStyle { PlainCard, Cookbook };

// How web pages are exported. A template is the full path of a file; if it is empty, the page is
// made with the program's own template.
struct PageSettings {
    QString mainMenuTemplate;
    QString categoryTemplate;
    QString recipeTemplate;
    PageStyle style = PageStyle::PlainCard;
};

// What the user has chosen in the settings window. A window loads the settings when it needs them
// and does not keep them, so that windows loaded after a change follow it.
struct Settings {
    SortOrder ingredientOrder = SortOrder::CategoryThenName;
    SortOrder recipeOrder = SortOrder::CategoryThenName;
    PageSettings pages;

    // A value that is missing or makes no sense becomes the default.
    static Settings load();

    // Does not report a failure: the values that cannot be written stay as they were.
    void save() const;
};

// What follows "ORDER BY" in a query of recipes or ingredients, according to the stored settings.
// Begins with a space.
QString recipeOrderByClause();
QString ingredientOrderByClause();
