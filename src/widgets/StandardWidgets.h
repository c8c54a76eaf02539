#pragma once

#include <QSize>
#include <QString>

class QListWidget;
class QPlainTextEdit;
class QTextDocument;
class QWidget;

// What several windows need of Qt's own widgets.

// Returns the text of an edit of several lines, with CR LF between the lines. It keeps no-break
// spaces, which QPlainTextEdit::toPlainText() replaces by spaces.
QString documentText(const QTextDocument &document);

// Shows the text. If the edit has the same text already, its caret, scroll position and undo
// history stay.
void updateText(QPlainTextEdit &edit, const QString &text);

// Lets the user select several rows and copy them with Ctrl+C, Ctrl+A or the context menu. Each row
// is copied as one line, from top to bottom.
void makeCopyable(QListWidget &list);

// Gives a read-only edit the background of its parent, and another one its own colours. To be
// called again when the parent's palette has changed.
void showReadOnlyColors(QWidget &edit, bool readOnly);

// Returns a size in logical inches of the widget's screen as pixels.
QSize inches(const QWidget &widget, double width, double height);

// Enables or disables a control of a window. If it is disabled while it has the window's focus,
// `next` gets the focus: QWidget::setEnabled() would pass it to the next control in tab order,
// which may be a button that the next Enter presses.
void setEnabledPassingFocus(QWidget &control, bool enabled, QWidget &next);
