#include "interaction/TerminalInteraction.h"

#include "interaction/ControlCharacters.h"

#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

bool saysYes(const QString &answer)
{
    return answer.compare(u"y", Qt::CaseInsensitive) == 0
        || answer.compare(u"yes", Qt::CaseInsensitive) == 0;
}

// QTextStream would also take what was typed ahead for the next question, and lose it.
QString lineFromTerminal()
{
    std::string line;
    std::getline(std::cin, line);
    return QString::fromStdString(line);
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
    if (!box.details.isEmpty())
        err << printable(box.details) << Qt::endl;
    if (std::find(box.buttons.begin(), box.buttons.end(), Button::Yes) == box.buttons.end())
        return box.defaultButton;

    const bool terminal = isatty(STDIN_FILENO) != 0;
    Button answer = Button::No;
    if (terminal) {
        err << "[y/N] " << Qt::flush;
        if (saysYes(lineFromTerminal().trimmed()))
            answer = Button::Yes;
    }
    err << (answer == Button::Yes ? "Yes" : "No") << Qt::endl;
    return answer;
}
