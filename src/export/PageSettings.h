#pragma once

#include <QString>

enum class PageStyle { PlainCard, Cookbook };

// What the settings say of the pages. An empty path stands for the generic template.
struct PageSettings {
    QString mainMenuTemplate;
    QString categoryTemplate;
    QString recipeTemplate;
    PageStyle style = PageStyle::PlainCard;
};

PageSettings storedPageSettings();
