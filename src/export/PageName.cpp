#include "export/PageName.h"

#include <QCryptographicHash>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longest = 60;
constexpr qsizetype hashLength = 6;

// What letters become that are not made of a base letter and accents.
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

// Letters and digits, with a hyphen for each run of anything else between them. Apostrophes join.
QString asciiWords(const QString &title)
{
    QString words;
    bool isApart = false;
    const QString decomposed = title.normalized(QString::NormalizationForm_KD).toLower();
    for (const QChar character : decomposed) {
        const QLatin1StringView letters = asciiLetters(character);
        if (isPlain(character) || !letters.isEmpty()) {
            if (isApart && !words.isEmpty())
                words += u'-';
            isApart = false;
            letters.isEmpty() ? words += character : words += letters;
        } else if (!character.isMark() && character != u'\'' && character != u'’') {
            isApart = true;
        }
    }
    words.truncate(longest);
    while (words.endsWith(u'-'))
        words.chop(1);
    return words;
}

// Names that Windows keeps for devices, whatever follows the point, and the main menu.
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

// An underscore never stands in the name of a title that is all said.
QString recipeName(const QString &title)
{
    const QString folded = title.toCaseFolded();
    QString words = asciiWords(title);
    const bool isAllSaid = QString(words).replace(u'-', u' ') == folded && !folded.contains(u'-');
    if (isAllSaid && !words.isEmpty() && !isReserved(words))
        return words;
    return (words.isEmpty() ? u"recipe"_s : words) + u'_' + titleHash(folded);
}

} // namespace

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
