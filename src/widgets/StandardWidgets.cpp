#include "widgets/StandardWidgets.h"

#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QListWidget>
#include <QPlainTextEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(StandardWidgets)
};

void copySelectedRows(const QListWidget &list)
{
    QStringList lines;
    for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->isSelected())
            lines += list.item(row)->text();
    }
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

template <class Handler>
void addAction(QListWidget &list, const QString &text, QKeySequence::StandardKey key,
               Handler handler)
{
    auto *action = new QAction(text, &list);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, &list, handler);
    list.addAction(action);
}

} // namespace

QString documentText(const QTextDocument &document)
{
    QString text = document.toRawText();
    text.replace(QChar::ParagraphSeparator, "\r\n"_L1);
    text.replace(QChar::LineSeparator, "\r\n"_L1); // Shift+Enter
    return text;
}

void updateText(QPlainTextEdit &edit, const QString &text)
{
    QTextDocument document;
    document.setPlainText(text);
    if (document.toRawText() != edit.document()->toRawText())
        edit.setPlainText(text);
}

void makeCopyable(QListWidget &list)
{
    addAction(list, Text::tr("&Copy"), QKeySequence::Copy, [&list] { copySelectedRows(list); });
    addAction(list, Text::tr("Select &All"), QKeySequence::SelectAll,
              [&list] { list.selectAll(); });
    list.setContextMenuPolicy(Qt::ActionsContextMenu);
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
}

void showReadOnlyColors(QWidget &edit, bool readOnly)
{
    QPalette palette;
    if (readOnly)
        palette.setBrush(QPalette::Base, edit.parentWidget()->palette().window());
    edit.setPalette(palette);
}

QSize inches(const QWidget &widget, double width, double height)
{
    return {qRound(width * widget.logicalDpiX()), qRound(height * widget.logicalDpiY())};
}

void setEnabledPassingFocus(QWidget &control, bool enabled, QWidget &next)
{
    if (!enabled && control.parentWidget()->focusWidget() == &control)
        next.setFocus();
    control.setEnabled(enabled);
}
