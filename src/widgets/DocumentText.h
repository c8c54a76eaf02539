#pragma once

#include <QString>

class QTextDocument;

// The text that was typed into an edit of several lines, each of which ends in CR LF. No-break
// spaces stay what they are, which the edit itself would give as blanks.
QString documentText(const QTextDocument &document);
