#include "interaction/TerminalInteraction.h"

#include "interaction/ControlCharacters.h"

#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

bool saysYes(const QString &answer)
{
    return answer.compare(u"y", Qt::CaseInsensitive) == 0
        || answer.compare(u"yes", Qt::CaseInsensitive) == 0;
}

// A text may come from a recipe file, whose control characters must not control the terminal.
QString printable(const QString &text)
{
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        line = escapeControlCharacters(line);
    return lines.join(u'\n');
}

} // namespace

Button TerminalInteraction::show(const MessageBox &box)
{
    QTextStream err(stderr);
    err << printable(box.title + u": "_s + box.text) << Qt::endl;
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
