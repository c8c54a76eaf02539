#pragma once

#include <QString>

#include <functional>

class Interaction;

// Asks for the name of a recipe until one is given that a recipe may have, and tells what is wrong
// with every other. Returns it without blanks around it, or no text where none is given. Whether a
// name is taken is not asked for the current one, which is offered as the answer.
QString askRecipeName(Interaction &interaction, const QString &currentName,
                      const std::function<bool(const QString &)> &isTaken);

void showRecipeNameTaken(Interaction &interaction);
