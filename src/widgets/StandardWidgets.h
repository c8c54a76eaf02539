#pragma once

#include <QSize>
#include <QString>

class QComboBox;
class QTextDocument;
class QVariant;
class QWidget;

// What several windows need of Qt's own widgets.

// Selects the entry at the stored position, from 0. Selects none if the stored value is not an
// integer or the list has no such entry.
void selectStored(QComboBox &list, const QVariant &stored);

// Returns the text of an edit of several lines, with CR LF between the lines. It keeps no-break
// spaces, which QPlainTextEdit::toPlainText() replaces by spaces.
QString documentText(const QTextDocument &document);

// Returns a size in logical inches of the widget's screen as pixels.
QSize inches(const QWidget &widget, double width, double height);
