#pragma once

#include <QSet>
#include <QString>

// Returns the letters and digits of a text in ASCII, with a hyphen for anything between them but
// apostrophes, of limited length: "creme-brulee".
QString asciiWords(const QString &text);

// Makes the unique file names of pages. They consist of lower-case ASCII letters, digits, hyphens
// and underscores: valid on every file system and in every link. A name depends only on the text,
// so that links to a page stay valid when other pages are added or removed. If the text does not
// fit into the name completely ("Crème", "Soup!"), a hash of it is appended.
class PageNames
{
public:
    // Of several recipes with the same title, all but the first get their key in the name.
    QString takeRecipe(const QString &title, qint64 key);

    // Returns a name that begins with the prefix, which consists of lower-case ASCII letters, and
    // an underscore: "ingredient_leek.html". A name without underscore is the name of a recipe.
    QString take(QLatin1StringView prefix, const QString &text, qint64 key);

private:
    QString takeFree(const QString &name, qint64 key);

    QSet<QString> m_taken;
};
