#pragma once

#include "ChildWindow.h"

class ComposedRecipe;

// What both composition editors do. An editor takes a copy of the recipe's lines when it is loaded,
// with the key of that recipe, for which it stores them at Done. It keeps the activation, except
// from the catalogs.
class CompositionEditor : public ChildWindow
{
    Q_OBJECT

protected:
    using ChildWindow::ChildWindow;

    bool keepsActivationFrom(const ChildWindow &next) const noexcept final;

    // The recipe shown in the recipe window; throws where that is not loaded.
    const ComposedRecipe &recipe() const;

    void warn(const QString &text, const QString &title);
    // Tells that Done is refused, since what these lines name is not in the catalog any more; the
    // text says so and what to do, with %1 in the place of the lines.
    void refuse(const QString &text, const QStringList &missing);

    void leave(); // hides and unloads the window
};
