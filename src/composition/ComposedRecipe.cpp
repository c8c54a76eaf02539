#include "composition/ComposedRecipe.h"

#include "data/GeneralFuctions.h"

#include <QTextBoundaryFinder>

using namespace Qt::Literals::StringLiterals;

QString IngredientLine::text() const
{
    return name + " ("_L1 + quantity + u')';
}

static QString cut(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    graphemes.setPosition(length);
    if (!graphemes.isAtBoundary())
        graphemes.toPreviousBoundary();
    return text.first(graphemes.position());
}

QString quantityText(const QString &amount, const QString &unit, const QString &preparation)
{
    const QString measure = amount + u' ' + unit;
    const QString whole = trimSpaces(measure).toString() + u' ' + preparation;
    return cut(trimSpaces(whole).toString(), 25);
}
