#include "export/DividedList.h"

#include "export/TitleLetters.h"

#include <QString>

#include <algorithm>

namespace {

// What one page holds: about 40 screens of a phone.
constexpr std::size_t mostLines = 400;
constexpr std::size_t mostTextLines = 800; // a title can need several on a phone
constexpr std::size_t textLineLength = 28; // bytes
constexpr std::size_t mostTextLinesOfTitle = 3; // the style sheets cut off the rest

// If titles begin with more different Chinese characters than this, they share one heading.
constexpr std::size_t mostChineseHeadings = 19;

// The number of lines of text that a title needs on a phone.
std::size_t textLines(const ListLine &line)
{
    return std::min(1 + line.title.size() / textLineLength, mostTextLinesOfTitle);
}

// Returns how many of the lines fit on one page.
std::size_t fitting(std::span<const ListLine> lines)
{
    std::size_t count = 0;
    std::size_t height = 0;
    while (count < lines.size() && count < mostLines) {
        height += textLines(lines[count]);
        if (height > mostTextLines)
            break;
        ++count;
    }
    return count;
}

// Returns the shortest beginning of the title that tells it from the one before it.
std::string startOf(const ListLine &line, const ListLine &before)
{
    constexpr qsizetype longest = 20;
    const QString title = QString::fromUtf8(line.title.data(), std::ssize(line.title));
    const QString other = QString::fromUtf8(before.title.data(), std::ssize(before.title));
    const auto [end, ignored] =
        std::mismatch(title.begin(), title.end(), other.begin(), other.end());
    qsizetype size = std::min<qsizetype>(end - title.begin() + 1, longest);
    if (size < title.size() && title[size - 1].isHighSurrogate())
        ++size;
    return title.left(size).trimmed().toStdString();
}

// The page of a letter: "type_soup_a.html", "letter_a.html" for the main menu; for further pages of
// the letter "letter_a_2.html".
std::string partPage(const SiteList &list, const LetterLines &letter, std::size_t number)
{
    const std::string_view stem = list.page == SiteMap::mainMenuPage
        ? std::string_view("letter")
        : std::string_view(list.page).substr(0, list.page.rfind('.'));
    std::string page(stem);
    page.append("_").append(letter.id());
    if (number > 1)
        page.append("_").append(std::to_string(number));
    return page + ".html";
}

void addParts(DividedList &divided, const SiteList &list, std::size_t letter)
{
    const LetterLines &all = divided.letters[letter];
    std::size_t number = 0;
    for (std::size_t first = 0; first < all.lines.size();) {
        const std::span<const ListLine> rest = all.lines.subspan(first);
        const std::span<const ListLine> lines = rest.first(fitting(rest));
        std::string start;
        if (first > 0)
            start = startOf(lines.front(), all.lines[first - 1]);
        else if (lines.size() < rest.size())
            start = all.heading();
        divided.parts.push_back({partPage(list, all, ++number), lines, letter, std::move(start)});
        first += lines.size();
    }
}

} // namespace

std::string LetterLines::heading() const
{
    if (letter == 0)
        return "#";
    return letter == chinese ? "漢字" : QString::fromUcs4(&letter, 1).toStdString();
}

std::string LetterLines::id() const
{
    constexpr int hexadecimal = 16;
    if (letter == 0)
        return "other";
    if (letter == chinese)
        return "chinese";
    if (letter >= U'A' && letter <= U'Z')
        return {static_cast<char>(letter - U'A' + U'a')};
    return 'u' + QString::number(letter, hexadecimal).toStdString();
}

std::vector<LetterLines> linesByLetter(std::span<const ListLine> lines)
{
    std::vector<LetterLines> letters;
    std::size_t chineseLetters = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!letters.empty() && letters.back().letter == lines[i].letter) {
            letters.back().lines =
                lines.subspan(i - letters.back().lines.size(), letters.back().lines.size() + 1);
            continue;
        }
        letters.push_back({lines[i].letter, lines.subspan(i, 1)});
        chineseLetters += isChinese(lines[i].letter) ? 1 : 0;
    }
    if (chineseLetters > mostChineseHeadings) { // they come last
        const std::size_t first = letters.size() - chineseLetters;
        const auto begin = letters[first].lines.data() - lines.data();
        letters.resize(first);
        letters.push_back({LetterLines::chinese, lines.subspan(static_cast<std::size_t>(begin))});
    }
    return letters;
}

DividedList divide(const SiteList &list, bool mayBeDivided)
{
    DividedList divided{linesByLetter(list.lines), {}};
    if (!mayBeDivided || fitting(list.lines) == list.lines.size())
        return divided;
    for (std::size_t letter = 0; letter < divided.letters.size(); ++letter)
        addParts(divided, list, letter);
    return divided;
}
