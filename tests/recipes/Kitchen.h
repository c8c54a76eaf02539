#pragma once

#include "Frame.h"
#include "StrictDoorway.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QTemporaryDir>

// A main window with a frame on an empty recipe file, with a strict doorway in front.
class Kitchen
{
public:
    Kitchen();

    // Runs statements as another program does.
    void sql(const QByteArray &statements) const;
    // What a query yields, with bars between them; a text in quotes, percent-encoded.
    QString stored(const QByteArray &query) const;

    template <class Window>
    Window &show()
    {
        auto &window = frame.load<Window>();
        frame.show(window);
        settle();
        return window;
    }
    void settle() const; // what is queued happens

    QTemporaryDir folder;
    StrictDoorway doorway;
    QMainWindow window;
    QMdiArea area;
    Frame frame{doorway, area, [] {}};
};

template <class Control>
Control *control(const QWidget &form, const char *name)
{
    return form.findChild<Control *>(QString::fromLatin1(name));
}

// Presses a button as the mouse does.
void press(const QWidget &form, const char *button);
