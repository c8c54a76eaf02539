#pragma once

#include "frame/ChildWindow.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

// Returns a window as a user meets it, as one text: a line with its title and its labels, and one
// for each control that is not hidden, in tab order, such as
//   > cmbType: Misc, *Fruit, Fish
//   cmdSave: &Save, disabled
// ">" marks the focus, "*" the selected entry.
inline QString formText(const ChildWindow &window)
{
    const auto entries = [](const QAbstractItemModel &model, const auto &isSelected) {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts += (isSelected(row) ? QStringLiteral("*") : QString())
                + model.index(row, 0).data().toString();
        return texts.join(QStringLiteral(", "));
    };
    const auto contents = [&](const QWidget *control) -> QString {
        if (const auto *list = qobject_cast<const QAbstractItemView *>(control))
            return entries(*list->model(),
                           [list](int row) { return list->selectionModel()->isRowSelected(row); });
        if (const auto *combo = qobject_cast<const QComboBox *>(control))
            return entries(*combo->model(),
                           [combo](int row) { return combo->currentIndex() == row; });
        if (const auto *edit = qobject_cast<const QLineEdit *>(control))
            return edit->text();
        if (const auto *box = qobject_cast<const QCheckBox *>(control))
            return box->text() + (box->isChecked() ? QStringLiteral(", checked") : QString());
        if (const auto *button = qobject_cast<const QPushButton *>(control))
            return button->text();
        return {};
    };

    QStringList head{window.title()};
    for (const auto *label : window.findChildren<QLabel *>()) {
        if (label->isVisibleTo(&window))
            head += label->text();
    }
    QStringList lines{head.join(QStringLiteral(", "))};
    for (const QWidget *control = window.nextInFocusChain(); control && control != &window;
         control = control->nextInFocusChain()) {
        const QString name = control->objectName();
        if (!window.isAncestorOf(control) || !control->isVisibleTo(&window)
            || !(control->focusPolicy() & Qt::TabFocus) || name.isEmpty()
            || name.startsWith(QStringLiteral("qt_")))
            continue;
        lines += (control->hasFocus() ? QStringLiteral("> ") : QString()) + name
            + QStringLiteral(": ") + contents(control)
            + (control->isEnabled() ? QString() : QStringLiteral(", disabled"));
    }
    return lines.join(u'\n');
}
