#include "recipes/RecipeName.h"

#include "data/GeneralFuctions.h"
#include "interaction/Interaction.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("RecipeName", text);
}

void showNameError(Interaction &interaction, const QString &text)
{
    interaction.showError(tr("Error"), text, Icon::Information);
}

} // namespace

QString askRecipeName(Interaction &interaction, const QString &currentName,
                      const std::function<bool(const QString &)> &isTaken)
{
    for (;;) {
        const QString answer = interaction.ask({.prompt = tr("Enter title of the recipe"),
                                                .title = tr("Recipe Name"),
                                                .defaultText = currentName});
        QString name = trimSpaces(answer).toString();
        if (name.isEmpty())
            return {};
        if (ContainsInvalidChars(name).isEmpty()) {
            showNameError(interaction,
                          tr("Recipe can't have the following charaters in it")
                              + u"\r\\/:*?\"<>|()"_s);
        } else if (name != currentName && isTaken(name)) {
            showRecipeNameTaken(interaction);
        } else {
            return name;
        }
    }
}

void showRecipeNameTaken(Interaction &interaction)
{
    showNameError(interaction, tr("Recipe Name must be unique"));
}
