#pragma once

#include "frame/Frame.h"
#include "support/MockInteraction.h"
#include "support/RecipeFile.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QTest>

// A recipe file and a main window whose child windows work on it. Nobody but the strict interaction
// answers their boxes.
class WindowFixture : public QMainWindow
{
public:
    explicit WindowFixture(const QByteArray &statements = {});

    // Runs statements as another program does.
    void sql(const QByteArray &statements) const { file.write(QString::fromUtf8(statements)); }
    QString stored(const QByteArray &query) const { return file.stored(query); }

    template <class Window>
    Window &open()
    {
        auto &window = frame.load<Window>();
        frame.show(window);
        QCoreApplication::processEvents();
        return window;
    }

    // Does one step after the other, separated by commas: presses "cmdSave" or "chkVegetarian",
    // types "txtAuthor X" at the end or "txtAuthor =X" in the place of what stands there, takes the
    // N-th of "cmbType N" or "lstUtensils N", from 0. "cmdEdit X" answers X when asked for a
    // recipe's name; "?Yes" and "?No" behind a button answer whether to save or to delete.
    void perform(const ChildWindow &window, const QString &steps);
    void expectQuestion(const ChildWindow &window, const QString &button, const QString &answer);
    // The title and what the other controls than buttons show, in the order of the form.
    static QString shown(const ChildWindow &window);

    static InputBox nameBox(const QString &defaultText);
    static MessageBox error(const QString &text);
    static MessageBox warning(const QString &text, const QString &title);
    static MessageBox failure(const QString &window, const QString &text);

    RecipeFile file;
    MockInteraction interaction;
    int beeps = 0;
    QMdiArea area;
    Frame frame{interaction, area, [this] { ++beeps; }};
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
