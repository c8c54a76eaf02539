#include "export/PageNames.h"

#include "export/TitleLetters.h"

#include <QCryptographicHash>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t longestName = 60; // without prefix and hash
constexpr qsizetype hashLength = 10;

bool isPlain(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'0' && character <= u'9');
}

// The names that Windows reserves for devices, with any extension, and that of the main menu.
bool isReserved(const QString &name)
{
    static const QSet<QString> names{u"index"_s, u"con"_s, u"prn"_s, u"aux"_s, u"nul"_s};
    constexpr qsizetype portLength = 4; // of "com1"
    const bool isPort = name.size() == portLength && name.back().isDigit()
        && (name.startsWith("com"_L1) || name.startsWith("lpt"_L1));
    return isPort || names.contains(name);
}

QString hashOf(const QString &foldedText)
{
    const QByteArray hash = QCryptographicHash::hash(foldedText.toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().first(hashLength));
}

// Whether the words, which are those of the folded text, are all of it.
bool isComplete(const QString &words, const QString &folded)
{
    return !words.isEmpty() && QString(words).replace(u'-', u' ') == folded
        && !folded.contains(u'-');
}

} // namespace

QString asciiWords(const QString &text)
{
    const QString base = baseLetters(text);
    std::string words;
    bool isNewWord = false;
    for (const QChar character : base) {
        if (isPlain(character)) {
            if (isNewWord && !words.empty())
                words += '-';
            isNewWord = false;
            words += character.toLatin1();
        } else if (character != u'\'' && character != u'’') {
            isNewWord = true;
        }
        if (words.size() >= longestName)
            break;
    }
    if (words.size() > longestName)
        words.resize(longestName);
    while (words.ends_with('-'))
        words.pop_back();
    return QString::fromLatin1(words);
}

// A name without a hash contains no underscore, so that it differs from all names with one.
QString PageNames::takeRecipe(const QString &title, qint64 key)
{
    const QString folded = title.toCaseFolded();
    const QString words = asciiWords(title);
    if (isComplete(words, folded) && !isReserved(words))
        return takeFree(words, key);
    return takeFree((words.isEmpty() ? u"recipe"_s : words) + u'_' + hashOf(folded), key);
}

QString PageNames::take(QLatin1StringView prefix, const QString &text, qint64 key)
{
    const QString folded = text.toCaseFolded();
    const QString words = asciiWords(text);
    QString name = prefix;
    if (!words.isEmpty())
        name += u'_' + words;
    if (!isComplete(words, folded))
        name += u'_' + hashOf(folded);
    return takeFree(name, key);
}

QString PageNames::takeFree(const QString &name, qint64 key)
{
    QString free = name;
    if (m_taken.contains(free))
        free += u'_' + QString::number(key);
    while (m_taken.contains(free))
        free += u'_';
    m_taken.insert(free);
    return free + ".html"_L1;
}
