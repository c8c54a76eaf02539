#pragma once

#include "frame/Frame.h"
#include "support/MockInteraction.h"
#include "support/TestDatabase.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QTest>

// A database and a main window whose child windows work on it. The test expects and answers
// their boxes through the interaction.
class WindowFixture : public QMainWindow
{
public:
    explicit WindowFixture(const QByteArray &statements = {});

    // Both use a separate connection, as another program does.
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

    // Performs steps, which are separated by ", ":
    //   cmdSave        presses the button
    //   cmdSave?Yes    the same, and answers the question that it asks with Yes or No
    //   cmdEdit Soup   the same, and answers "Soup" to the input box for the recipe's name
    //   chkVegetarian  presses the check box
    //   txtAuthor X    types X at the end of the text
    //   txtAuthor =X   replaces the text by X
    //   cmbType 2      selects the entry at this position, from 0
    //   cmbAmount =X   replaces the text by X
    //   lstUtensils 2  clicks on the row at this position, from 0; "2 twice" is a double click
    //   key Ctrl+F     presses the key in the control that has the focus
    void perform(const ChildWindow &window, const QString &steps,
                 SourceLine line = SourceLine::current());
    // Expects the question that the button asks: whether to delete for cmdDelete, else to save.
    void expectQuestion(const ChildWindow &window, const QString &button, const QString &answer,
                        SourceLine line = SourceLine::current());
    // Returns the title and the contents of all controls but buttons and hidden ones, in the order
    // of the form.
    static QString shown(const ChildWindow &window);

    static InputBox nameBox(const QString &defaultText);
    static MessageBox error(const QString &text);
    static MessageBox warning(const QString &text, const QString &title);
    static MessageBox failure(const QString &window, const QString &text);

    TestDatabase file;
    MockInteraction interaction;
    int beeps = 0;
    QMdiArea area;
    Frame frame{interaction, area, [this] { ++beeps; }};
};

// Returns the control with this object name.
template <class Control>
Control &control(const QWidget &window, const QString &name)
{
    auto *found = window.findChild<Control *>(name);
    if (!found)
        qFatal("no control %s", qUtf8Printable(name));
    return *found;
}

// Clicks on a button with the mouse.
void press(const QWidget &window, const QString &button);
