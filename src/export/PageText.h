#pragma once

#include <QString>
#include <QStringList>

// Stored text as pages can hold it: without control characters and what is no character at all,
// which are errors in a page. Blanks at the ends are dropped.

// In one line: each line break or tab becomes a blank.
QString pageLine(const QString &text);

// A title in one line, which says something in any case.
QString pageTitle(const QString &text);

// Its lines that are not blank: people end a line where a paragraph or a step ends.
QStringList pageParagraphs(const QString &text);
