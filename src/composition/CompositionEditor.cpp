#include "CompositionEditor.h"

#include "ComposedRecipe.h"
#include "Doorway.h"
#include "Frame.h"
#include "frmIngredient.h"
#include "frmUtensil.h"

// By class and not by caption: a recipe may be called "Utensils", and its name is the caption of
// the recipe window.
bool CompositionEditor::keepsActivationFrom(const ChildWindow &next) const noexcept
{
    return !qobject_cast<const frmIngredient *>(&next) && !qobject_cast<const frmUtensil *>(&next);
}

const ComposedRecipe &CompositionEditor::recipe() const
{
    const auto *shown = dynamic_cast<const ComposedRecipe *>(frame().find("frmRecipe"));
    if (!shown)
        throw std::runtime_error(tr("There is no recipe open to change.").toStdString());
    return *shown;
}

void CompositionEditor::warn(const QString &text, const QString &title)
{
    doorway().show({.text = text, .title = title, .icon = Icon::Exclamation});
}

void CompositionEditor::refuse(const QString &text, const QStringList &missing)
{
    constexpr qsizetype most = 10; // fits on every screen
    QStringList named = missing.first(qMin(most, missing.size()));
    if (missing.size() > most)
        named += tr("and %1 more").arg(missing.size() - most);
    warn(QString(text).replace(QLatin1StringView("%1"), named.join(u'\n')), tr("Can't save"));
}

void CompositionEditor::leave()
{
    frame().hide(*this);
    frame().unload(*this);
}
