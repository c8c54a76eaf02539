#include "Kitchen.h"

#include "DatabasePath.h"
#include "Schema.h"

#include <QTest>

#include <SQLiteCpp/SQLiteCpp.h>

using namespace Qt::Literals::StringLiterals;

Kitchen::Kitchen()
{
    DatabasePath = folder.filePath(u"data.rbk"_s);
    SQLite::Database(DatabasePath.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec(creationScript());
    window.setCentralWidget(&area);
    window.resize(1000, 800);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        qFatal("the window does not become active");
}

void Kitchen::sql(const QByteArray &statements) const
{
    SQLite::Database(DatabasePath.toStdString(), SQLite::OPEN_READWRITE).exec(statements);
}

QString Kitchen::stored(const QByteArray &query) const
{
    SQLite::Database database(DatabasePath.toStdString());
    SQLite::Statement statement(database, query.toStdString());
    QStringList values;
    while (statement.executeStep()) {
        for (int i = 0; i < statement.getColumnCount(); ++i) {
            const SQLite::Column column = statement.getColumn(i);
            values += column.isNull() ? u"null"_s
                : column.isText()
                ? u"'"_s + QString::fromLatin1(QByteArray(column.getText()).toPercentEncoding(" "))
                    + u"'"_s
                : QString::fromStdString(column.getString());
        }
    }
    return values.join(u'|');
}

void Kitchen::settle() const
{
    QCoreApplication::processEvents();
}

void press(const QWidget &form, const char *button)
{
    QTest::mouseClick(control<QPushButton>(form, button), Qt::LeftButton);
    QCoreApplication::processEvents();
}
