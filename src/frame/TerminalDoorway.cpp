#include "TerminalDoorway.h"

#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

bool saysYes(const QString &answer)
{
    return answer.compare(u"y", Qt::CaseInsensitive) == 0
        || answer.compare(u"yes", Qt::CaseInsensitive) == 0;
}

} // namespace

Button TerminalDoorway::show(const MessageBox &box)
{
    QTextStream err(stderr);
    err << box.title << ": " << box.text << Qt::endl;
    if (std::find(box.buttons.begin(), box.buttons.end(), Button::Yes) == box.buttons.end())
        return box.defaultButton;

    const bool terminal = isatty(STDIN_FILENO) != 0;
    Button answer = Button::No;
    if (terminal) {
        err << "[y/N] " << Qt::flush;
        QTextStream in(stdin);
        if (saysYes(in.readLine().trimmed()))
            answer = Button::Yes;
    }
    err << (answer == Button::Yes ? "Yes" : "No") << Qt::endl;
    return answer;
}
