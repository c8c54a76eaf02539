#pragma once

#include <QString>
#include <QStringList>

#include <vector>

// What a box shows beside its text.
enum class Icon { None, Information, Question, Exclamation };

enum class Button { Ok, Yes, No, Stop, Open, Close };

struct MessageBox {
    QString text; // plain text, never taken for rich text
    QString title;
    Icon icon = Icon::None;
    std::vector<Button> buttons = {Button::Ok};
    Button defaultButton = Button::Ok;
};

enum class Lines { One, Several };

struct InputBox {
    QString prompt; // plain text
    QString title;
    QString defaultText;
    Lines lines = Lines::One;
};

struct FileChooser {
    QString title;
    QString description; // of the kind of files, "HTML Documents"
    QStringList patterns; // of their names, "*.htm"
    QString defaultSuffix; // of a name typed without one, "htm"
    QString directory; // where it starts
};

struct FolderChooser {
    QString title;
    QString directory; // where it starts
};

// The one way to ask the user anything that blocks. Windows and the importer get it handed in.
class Interaction
{
public:
    Interaction() = default;
    virtual ~Interaction() = default;

    // Shows the box, waits, and returns the button that was pressed; Esc is No, Stop or Close.
    virtual Button show(const MessageBox &box) = 0;

    // Shows an error that leaves the user nothing to choose.
    void showError(const QString &title, const QString &text, Icon icon = Icon::Exclamation);

    // Asks a question with the buttons Yes and No; returns whether the user pressed Yes.
    bool confirm(const QString &title, const QString &text, Button defaultButton = Button::Yes);

    // The answer as typed, not trimmed; empty also for Cancel. A default text that is not changed
    // comes back as it was given; in a changed text of several lines each ends with CR LF.
    virtual QString ask(const InputBox &box) = 0;

    // The full path of an existing file or folder; empty where the user cancelled.
    virtual QString choose(const FileChooser &chooser) = 0;
    virtual QString choose(const FolderChooser &chooser) = 0;

private:
    Q_DISABLE_COPY_MOVE(Interaction)
};
