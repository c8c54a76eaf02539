#pragma once

#include <QSet>
#include <QString>

// The names of pages: lower-case ASCII, safe on every file system and in every link.

// "type_grains-bean-rice.html". No recipe's page has such a name.
QString typePageName(const QString &type);

// Names for recipes, each given once. A name is made from the title alone, so that links keep
// leading to a recipe whatever is added, deleted or sorted in another way: where it does not say
// all of the title ("Crème", "Soup!"), a sign of the whole title stands behind it.
class RecipePageNames
{
public:
    // The key tells recipes of the same title apart, of which the first keeps the bare name.
    QString take(const QString &title, qint64 key);

private:
    QSet<QString> m_taken;
};
