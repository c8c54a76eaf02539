#pragma once

#include <QString>
#include <QStringList>

#include <string>
#include <string_view>
#include <vector>

// Stored text made fit for pages: without control characters, noncharacters and lone surrogates,
// which HTML does not allow, and trimmed. The text of a page is UTF-8.

// Returns the text as one line: each line break or tab becomes a space.
QString pageLine(const QString &text);
std::string pageLine(std::string_view text);

// Returns the title as one line, or "Untitled recipe" if nothing of it is left.
QString pageTitle(const QString &text);

// Returns the lines that are not blank: people end a line after each paragraph or step.
std::vector<std::string> pageParagraphs(std::string_view text);

// The texts of recipeTypes() and recipeRatings() in the spelling that other people are to read.
QStringList pageTypes();
QStringList pageRatings();
