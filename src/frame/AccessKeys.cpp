#include "frame/AccessKeys.h"

#include "frame/Activation.h"
#include "frame/ChildWindow.h"

#include <QApplication>
#include <QPushButton>
#include <QShortcutEvent>

AccessKeys::AccessKeys(const Activation &activation)
    : m_activation(activation)
{
    qApp->installEventFilter(this);
}

bool AccessKeys::eventFilter(QObject *watched, QEvent *event)
{
    const ChildWindow *child = m_activation.active();
    if (event->type() != QEvent::Shortcut || !child || QApplication::activeModalWidget())
        return QObject::eventFilter(watched, event);
    const auto &shortcut = static_cast<const QShortcutEvent &>(*event);
    if (!shortcut.isAmbiguous())
        return QObject::eventFilter(watched, event);
    const auto buttons = child->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->isVisible() && button->isEnabled()
            && QKeySequence::mnemonic(button->text()) == shortcut.key()) {
            button->animateClick();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
