#pragma once

#include <QString>

// What the settings say about the web pages: full paths of the template files, each empty where
// there is none, and which of the two styles is chosen.
QString mainMenuTemplate();
QString categoryTemplate();
QString recipeTemplate();
bool isSecondHtmlStyle();
