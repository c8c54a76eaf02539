#pragma once

#include <QString>
#include <QStringList>

// Stored text made fit for pages: without control characters, noncharacters and lone surrogates,
// which HTML does not allow, and trimmed.

// Returns the text as one line: each line break or tab becomes a space.
QString pageLine(const QString &text);

// Returns the title as one line, or "Untitled recipe" if nothing of it is left.
QString pageTitle(const QString &text);

// Returns the lines that are not blank: people end a line after each paragraph or step.
QStringList pageParagraphs(const QString &text);
