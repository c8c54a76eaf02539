#include "export/SiteMap.h"

#include "export/PageText.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longestName = 60; // without the hash
constexpr qsizetype hashLength = 6;

// The replacement of a letter that normalization does not decompose into an ASCII letter and
// accents.
QLatin1StringView asciiLetters(QChar letter)
{
    switch (letter.unicode()) {
    case u'ß':
        return "ss"_L1;
    case u'æ':
        return "ae"_L1;
    case u'œ':
        return "oe"_L1;
    case u'ø':
        return "o"_L1;
    case u'ð':
    case u'đ':
        return "d"_L1;
    case u'þ':
        return "th"_L1;
    case u'ł':
        return "l"_L1;
    case u'ı':
        return "i"_L1;
    default:
        return {};
    }
}

bool isPlain(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'0' && character <= u'9');
}

// The title's letters and digits, with a hyphen for anything between them but apostrophes.
QString asciiWords(const QString &title)
{
    QString words;
    bool isNewWord = false;
    const QString decomposed = title.normalized(QString::NormalizationForm_KD).toLower();
    for (const QChar character : decomposed) {
        const QLatin1StringView letters = asciiLetters(character);
        if (isPlain(character) || !letters.isEmpty()) {
            if (isNewWord && !words.isEmpty())
                words += u'-';
            isNewWord = false;
            if (letters.isEmpty())
                words += character;
            else
                words += letters;
        } else if (!character.isMark() && character != u'\'' && character != u'’') {
            isNewWord = true;
        }
    }
    words.truncate(longestName);
    while (words.endsWith(u'-'))
        words.chop(1);
    return words;
}

// The names that Windows reserves for devices, with any extension, and that of the main menu.
bool isReserved(const QString &name)
{
    static const QRegularExpression reserved(u"\\A(index|con|prn|aux|nul|(com|lpt)[0-9])\\z"_s);
    return reserved.match(name).hasMatch();
}

QString titleHash(const QString &foldedTitle)
{
    const QByteArray hash =
        QCryptographicHash::hash(foldedTitle.toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().first(hashLength));
}

// A name without a hash contains no underscore, so that it differs from all names with one.
QString recipeName(const QString &title)
{
    const QString folded = title.toCaseFolded();
    QString words = asciiWords(title);
    const bool isComplete = QString(words).replace(u'-', u' ') == folded && !folded.contains(u'-');
    if (isComplete && !words.isEmpty() && !isReserved(words))
        return words;
    return (words.isEmpty() ? u"recipe"_s : words) + u'_' + titleHash(folded);
}

// In the order of their keys, which never changes, so that of two recipes with the same title
// always the same one has its key in the name.
void namePages(std::vector<RecipeEntry> &recipes)
{
    std::vector<RecipeEntry *> byKey;
    byKey.reserve(recipes.size());
    for (RecipeEntry &recipe : recipes)
        byKey.push_back(&recipe);
    std::sort(byKey.begin(), byKey.end(),
              [](const auto *a, const auto *b) { return a->key < b->key; });
    RecipePageNames names;
    for (RecipeEntry *recipe : byKey) {
        recipe->page = names.take(recipe->title, recipe->key);
        recipe->title = pageTitle(recipe->title);
    }
}

} // namespace

SiteMap siteMapOf(std::vector<RecipeEntry> recipes)
{
    namePages(recipes);
    const QStringList names = pageTypes();
    std::vector<qsizetype> counts(static_cast<std::size_t>(names.size()));
    for (const RecipeEntry &recipe : recipes)
        ++counts[static_cast<std::size_t>(recipe.type)];

    SiteMap site{std::move(recipes), {}};
    for (int type = 0; type < names.size(); ++type) {
        if (const qsizetype count = counts[static_cast<std::size_t>(type)]; count > 0)
            site.types.push_back({type, names[type], typePageName(names[type]), count});
    }
    return site;
}

QStringList fileNames(const SiteMap &site)
{
    QStringList names{SiteMap::mainMenuPage, SiteMap::styleSheet};
    for (const TypeEntry &type : site.types)
        names += type.page;
    for (const RecipeEntry &recipe : site.recipes)
        names += recipe.page;
    return names;
}

QString typePageName(const QString &type)
{
    return "type_"_L1 + asciiWords(type) + ".html"_L1;
}

QString RecipePageNames::take(const QString &title, qint64 key)
{
    const QString name = recipeName(title);
    QString free = name;
    if (m_taken.contains(free))
        free += u'_' + QString::number(key);
    while (m_taken.contains(free))
        free += u'_';
    m_taken.insert(free);
    return free + ".html"_L1;
}
