#pragma once

#include "Frame.h"
#include "RecipeFile.h"
#include "StrictDoorway.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QTest>

class QLineEdit;

// A recipe file and a main window whose child windows work on it. Nobody but the strict doorway
// answers their boxes.
class Kitchen : public QMainWindow
{
public:
    explicit Kitchen(const QByteArray &statements = {});

    // Runs statements as another program does.
    void sql(const QByteArray &statements) const;
    // The rows of a query, as another program sees them: "1|Salt, 2|null".
    QString stored(const QByteArray &query) const;

    template <class Window>
    Window &open()
    {
        auto &window = frame.load<Window>();
        frame.show(window);
        QCoreApplication::processEvents();
        return window;
    }

    static MessageBox error(const QString &text);
    static MessageBox warning(const QString &text, const QString &title);
    static MessageBox failure(const QString &window, const QString &text);
    static MessageBox saveChanges(const char *what); // "recipe"

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

// Presses a button as the mouse does.
void press(const QWidget &window, const QString &button);

// As from the clipboard, in the place of what stands there.
void retype(QLineEdit &edit, const QString &text);
