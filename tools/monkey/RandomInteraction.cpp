#include "RandomInteraction.h"

#include "Randomness.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

RandomInteraction::RandomInteraction(Randomness &random)
    : m_random(random)
{
}

Button RandomInteraction::show(const MessageBox &box)
{
    whileOpen();
    const bool isQuestion =
        std::find(box.buttons.begin(), box.buttons.end(), Button::Yes) != box.buttons.end();
    if (!isQuestion) {
        answered({box.title, box.text, u"Ok"_s});
        return box.buttons.back();
    }
    const bool isYes = m_random.below(3) > 0;
    answered({box.title, box.text, isYes ? u"Yes"_s : u"No"_s});
    return isYes ? Button::Yes : Button::No;
}

QString RandomInteraction::ask(const InputBox &box)
{
    whileOpen();
    QString answer = randomText(box);
    answered({box.title, box.prompt, answer});
    return answer;
}

QString RandomInteraction::randomText(const InputBox &box)
{
    switch (m_random.below(6)) {
    case 0:
        return {};
    case 1:
        return box.defaultText;
    case 2:
        return box.defaultText + u' ' + QString::number(m_random.below(100));
    case 3:
        return u"a/b"_s;
    default:
        return m_random.name();
    }
}

std::unique_ptr<Progress> RandomInteraction::startProgress(const QString & /*title*/)
{
    return std::make_unique<SilentProgress>();
}
