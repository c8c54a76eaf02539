#pragma once

#include "export/SiteLists.h"

#include <span>

// How a list is divided into letters, and a long one into pages.

// Neighbouring lines under one heading.
struct LetterLines {
    // All Chinese characters together have one heading if the list would have many for them.
    static constexpr char32_t chinese = 0x110000;

    std::string heading() const; // "A"; "#" for lines without a letter
    std::string id() const; // "a": for anchors and file names, the same in every list

    char32_t letter; // 0 for lines without one
    std::span<const ListLine> lines;
};

std::vector<LetterLines> linesByLetter(std::span<const ListLine> lines);

// A page of a list.
struct ListPart {
    std::string page; // file name
    std::span<const ListLine> lines;
    std::size_t letter = 0; // number of its letter in DividedList::letters
    std::string start = {}; // with what its first line begins, if its letter has several pages
};

// A list of more than some hundred lines has a page for each letter. A letter of more than some
// hundred lines has several pages. The first page of the list then leads to these pages and has no
// lines.
struct DividedList {
    std::vector<LetterLines> letters;
    std::vector<ListPart> parts; // in the order of their lines; none if the list has one page
};

// The list must be valid as long as the result. A list that must not be divided has one page.
DividedList divide(const SiteList &list, bool mayBeDivided);
