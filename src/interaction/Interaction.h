#pragma once

#include "interaction/Progress.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

// The icon of a message box.
enum class Icon { None, Information, Question, Exclamation };

enum class Button { Ok, Yes, No, Stop, Open, Close };

struct MessageBox {
    QString text; // plain text: tags are shown as they are
    QString title;
    Icon icon = Icon::None;
    std::vector<Button> buttons = {Button::Ok};
    Button defaultButton = Button::Ok;
    QString checkBox = {}; // the caption of a check box below the text; none if empty
    bool *isChecked = nullptr; // set to the state of the check box; not null if there is one
    QString details = {}; // lines below the text that scroll and can be copied; none if empty
};

enum class Lines { One, Several };

struct InputBox {
    QString prompt; // plain text: tags are shown as they are
    QString title;
    QString defaultText;
    Lines lines = Lines::One;
};

struct FileChooser {
    QString title;
    QString description; // names the kind of files: "HTML Documents"
    QStringList patterns; // select the files to list: "*.htm"
    QString defaultSuffix; // is added to a typed name that has none: "htm"
    QString directory; // the one that is shown when the chooser opens
};

struct FolderChooser {
    QString title;
    QString directory; // the one that is shown when the chooser opens
};

// All message boxes, input boxes, choosers and progress boxes go through this interface, so that
// code without widgets can use them and tests can answer them. Code that needs it is given a
// reference.
class Interaction
{
public:
    Interaction() = default;
    virtual ~Interaction() = default;

    // Shows the box, waits, and returns the button that the user pressed. Esc presses No if there
    // is one, else Stop or Close, and the only button of a box with one.
    virtual Button show(const MessageBox &box) = 0;

    // Shows an error that leaves the user nothing to choose.
    void showError(const QString &title, const QString &text, Icon icon = Icon::Exclamation);

    // Asks a question with the buttons Yes and No; returns whether the user pressed Yes.
    bool confirm(const QString &title, const QString &text, Button defaultButton = Button::Yes);

    // Returns the text as typed, not trimmed, or an empty one if the user cancelled. A default text
    // that the user did not change is returned as it was given. In a changed text of several lines,
    // CR LF separates the lines.
    virtual QString ask(const InputBox &box) = 0;

    // Returns the full path of an existing file or folder, or an empty one if the user cancelled.
    virtual QString choose(const FileChooser &chooser) = 0;
    virtual QString choose(const FolderChooser &chooser) = 0;

    // Returns the progress display for work that begins now. It appears only if the work takes a
    // while, and disappears when the caller destroys it.
    virtual std::unique_ptr<Progress> startProgress(const QString &title) = 0;

private:
    Q_DISABLE_COPY_MOVE(Interaction)
};
