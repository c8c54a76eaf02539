#include "widgets/DocumentText.h"

#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

QString documentText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, "\r\n"_L1);
    text.replace(QChar::LineSeparator, "\r\n"_L1); // Shift+Enter
    return text;
}
