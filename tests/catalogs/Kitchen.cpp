#include "Kitchen.h"

#include "DatabasePath.h"

#include <QLineEdit>

#include <SQLiteCpp/Statement.h>

using namespace Qt::Literals::StringLiterals;

Kitchen::Kitchen(const QByteArray &statements)
{
    sql(statements);
    DatabasePath = file.path();
    setCentralWidget(&area);
    resize(1000, 800);
    show();
    activateWindow();
    if (!QTest::qWaitForWindowActive(this))
        qFatal("the window does not become active");
}

void Kitchen::sql(const QByteArray &statements) const
{
    file.other().exec(statements.toStdString());
}

QString Kitchen::stored(const QByteArray &query) const
{
    SQLite::Database database = file.other();
    SQLite::Statement statement(database, query.toStdString());
    QStringList rows;
    while (statement.executeStep()) {
        QStringList cells;
        for (int i = 0; i < statement.getColumnCount(); ++i) {
            const SQLite::Column cell = statement.getColumn(i);
            cells += cell.isNull() ? u"null"_s : QString::fromStdString(cell.getString());
        }
        rows += cells.join(u'|');
    }
    return rows.join(u", "_s);
}

MessageBox Kitchen::error(const QString &text)
{
    return {text, u"Error"_s, Icon::Information};
}

MessageBox Kitchen::warning(const QString &text, const QString &title)
{
    return {text, title, Icon::Exclamation};
}

MessageBox Kitchen::failure(const QString &window, const QString &text)
{
    return warning(u"Something went wrong in \"%1\":\n%2"_s.arg(window, text), u"Error"_s);
}

MessageBox Kitchen::saveChanges(const char *what)
{
    return {u"Do you want to save changes to this "_s + QLatin1StringView(what),
            u"Save Changes"_s,
            Icon::Question,
            {Button::Yes, Button::No},
            Button::Yes};
}

void press(const QWidget &window, const QString &button)
{
    QTest::mouseClick(&control<QPushButton>(window, button), Qt::LeftButton);
    QCoreApplication::processEvents();
}

void retype(QLineEdit &edit, const QString &text)
{
    edit.setFocus();
    edit.selectAll();
    edit.insert(text);
}
