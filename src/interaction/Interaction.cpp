#include "interaction/Interaction.h"

void Interaction::showError(const QString &title, const QString &text, Icon icon)
{
    show({.text = text, .title = title, .icon = icon});
}

bool Interaction::confirm(const QString &title, const QString &text, Button defaultButton)
{
    return show({.text = text,
                 .title = title,
                 .icon = Icon::Question,
                 .buttons = {Button::Yes, Button::No},
                 .defaultButton = defaultButton})
        == Button::Yes;
}
