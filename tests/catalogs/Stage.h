#pragma once

#include "DatabasePath.h"
#include "Frame.h"
#include "RecipeFile.h"
#include "StrictDoorway.h"

#include <SQLiteCpp/Statement.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QTest>

// A recipe file and a main window whose child windows work on it. Nobody but the strict doorway
// answers their boxes.
class Stage : public QMainWindow
{
public:
    explicit Stage(const QString &rows = {})
    {
        file.write(rows);
        DatabasePath = file.path();
        setCentralWidget(&area);
        resize(1000, 760);
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("the window does not become active");
    }

    template <class Window>
    Window &open()
    {
        auto &window = frame.load<Window>();
        frame.show(window);
        QCoreApplication::processEvents();
        return window;
    }

    // The rows of a query, as another program sees them: "1|Salt, 2|Oil".
    QString rowsOf(const char *query) const
    {
        SQLite::Database database = file.other();
        SQLite::Statement statement(database, query);
        QStringList rows;
        while (statement.executeStep()) {
            QStringList cells;
            for (int i = 0; i < statement.getColumnCount(); ++i)
                cells += QString::fromStdString(statement.getColumn(i).getString());
            rows += cells.join(u'|');
        }
        return rows.join(QStringLiteral(", "));
    }

    void expectFailure(const QString &window, const QString &text)
    {
        doorway.expect({QStringLiteral("Something went wrong in \"%1\":\n%2").arg(window, text),
                        QStringLiteral("Error"), Icon::Exclamation});
    }

    RecipeFile file;
    StrictDoorway doorway;
    int beeps = 0;
    QMdiArea area;
    Frame frame{doorway, area, [this] { ++beeps; }};
};

// A control of a window by its name.
template <class Control>
Control &control(const QWidget &window, const QString &name)
{
    auto *found = window.findChild<Control *>(name);
    if (!found)
        qFatal("no control %s", qUtf8Printable(name));
    return *found;
}

inline void press(const QWidget &window, const QString &button)
{
    QTest::mouseClick(&control<QAbstractButton>(window, button), Qt::LeftButton);
    QCoreApplication::processEvents();
}

// As from the clipboard, in the place of what stands there.
inline void retype(QLineEdit &edit, const QString &text)
{
    edit.setFocus();
    edit.selectAll();
    edit.insert(text);
}
