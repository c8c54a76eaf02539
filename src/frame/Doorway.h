#pragma once

#include <QString>

#include <vector>

// What a box shows beside its text.
enum class Icon { None, Information, Question, Exclamation };

enum class Button { Ok, Yes, No };

struct MessageBox {
    QString text; // plain text, never taken for rich text
    QString title;
    Icon icon = Icon::None;
    std::vector<Button> buttons = {Button::Ok};
    Button defaultButton = Button::Ok;
};

// The one way to ask the user anything that blocks. Windows and the importer get it handed in.
class Doorway
{
public:
    Doorway() = default;
    virtual ~Doorway() = default;

    // Shows the box, waits, and returns the button that was pressed; Esc on Yes and No is No.
    virtual Button show(const MessageBox &box) = 0;

private:
    Q_DISABLE_COPY_MOVE(Doorway)
};
