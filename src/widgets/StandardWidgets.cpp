#include "widgets/StandardWidgets.h"

#include <QComboBox>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

void selectStored(QComboBox &list, const QVariant &stored)
{
    const bool isInteger =
        stored.typeId() == QMetaType::LongLong || stored.typeId() == QMetaType::Int;
    const qint64 position = isInteger ? stored.toLongLong() : -1;
    const bool isEntry = position >= 0 && position < list.count();
    list.setCurrentIndex(isEntry ? static_cast<int>(position) : -1);
}

QString documentText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, "\r\n"_L1);
    text.replace(QChar::LineSeparator, "\r\n"_L1); // Shift+Enter
    return text;
}

QSize inches(const QWidget &widget, double width, double height)
{
    return {qRound(width * widget.logicalDpiX()), qRound(height * widget.logicalDpiY())};
}
