#include "widgets/DesktopInteraction.h"

#include "widgets/DocumentText.h"
#include "widgets/Inches.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextDocument>

using namespace Qt::Literals::StringLiterals;

namespace {

QMessageBox::Icon toQt(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

// The toolkit has all buttons but Stop, for which its Abort stands with another text.
QMessageBox::StandardButton toQt(Button button)
{
    switch (button) {
    case Button::Yes:
        return QMessageBox::Yes;
    case Button::No:
        return QMessageBox::No;
    case Button::Stop:
        return QMessageBox::Abort;
    case Button::Open:
        return QMessageBox::Open;
    case Button::Close:
        return QMessageBox::Close;
    case Button::Ok:
        break;
    }
    return QMessageBox::Ok;
}

// A box belongs to the window in front. Where another program has the keyboard none is active, and
// the program's own window is the one to stand before.
QWidget *windowInFront()
{
    if (QWidget *active = QApplication::activeWindow())
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->windowType() == Qt::Window && window->isVisible())
            return window;
    }
    return nullptr;
}

} // namespace

Button DesktopInteraction::show(const MessageBox &box)
{
    QMessageBox dialog(toQt(box.icon), box.title, box.text, QMessageBox::NoButton, windowInFront());
    dialog.setTextFormat(Qt::PlainText);
    for (const Button button : box.buttons) {
        QPushButton *added = dialog.addButton(toQt(button));
        if (button == Button::Stop)
            added->setText(QCoreApplication::translate("DesktopInteraction", "&Stop"));
        if (button == Button::No)
            dialog.setEscapeButton(added); // also where Stop, an Abort to the toolkit, is there
    }
    dialog.setDefaultButton(toQt(box.defaultButton));

    const int pressed = dialog.exec();
    for (const Button button : box.buttons) {
        if (pressed == toQt(button))
            return button;
    }
    return box.defaultButton;
}

QString DesktopInteraction::ask(const InputBox &box)
{
    QInputDialog dialog(windowInFront());
    dialog.setWindowTitle(box.title);
    dialog.setLabelText(box.prompt);
    dialog.setOption(QInputDialog::UsePlainTextEditForTextInput, box.lines == Lines::Several);
    dialog.setTextValue(box.defaultText);
    dialog.findChild<QLabel *>()->setTextFormat(Qt::PlainText);
    auto *edit = dialog.findChild<QPlainTextEdit *>();
    if (edit) {
        edit->setTabChangesFocus(true); // so that the keyboard reaches the buttons
        edit->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    }
    dialog.resize(inches(dialog, 4, edit ? 2.5 : 0).expandedTo(dialog.sizeHint()));

    if (dialog.exec() != QDialog::Accepted)
        return {};
    if (!edit)
        return dialog.textValue();
    return edit->document()->isModified() ? documentText(*edit->document()) : box.defaultText;
}

QString DesktopInteraction::choose(const FileChooser &chooser)
{
    const QString filter = u"%1 (%2)"_s.arg(chooser.description, chooser.patterns.join(u' '));
    QFileDialog dialog(windowInFront(), chooser.title, chooser.directory, filter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(chooser.defaultSuffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString DesktopInteraction::choose(const FolderChooser &chooser)
{
    return QFileDialog::getExistingDirectory(windowInFront(), chooser.title, chooser.directory);
}
