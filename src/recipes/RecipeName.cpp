#include "RecipeName.h"

#include "Blanks.h"
#include "Doorway.h"
#include "GeneralFuctions.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("RecipeName", text);
}

void tell(Doorway &doorway, const QString &text)
{
    doorway.show({.text = text, .title = tr("Error"), .icon = Icon::Information});
}

} // namespace

QString askRecipeName(Doorway &doorway, const QString &currentName,
                      const std::function<bool(const QString &)> &isTaken)
{
    for (;;) {
        const QString answer = doorway.ask({.prompt = tr("Enter title of the recipe"),
                                            .title = tr("Recipe Name"),
                                            .defaultText = currentName});
        QString name = withoutBlanks(answer).toString();
        if (name.isEmpty())
            return {};
        if (ContainsInvalidChars(name).isEmpty()) {
            tell(doorway,
                 tr("Recipe can't have the following charaters in it") + u"\r\\/:*?\"<>|()"_s);
        } else if (name != currentName && isTaken(name)) {
            tellRecipeNameTaken(doorway);
        } else {
            return name;
        }
    }
}

void tellRecipeNameTaken(Doorway &doorway)
{
    tell(doorway, tr("Recipe Name must be unique"));
}
