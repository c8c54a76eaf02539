#include "frame/ChildWindow.h"

#include "frame/Frame.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isPlainEnter(const QKeyEvent &event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        && (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

ChildWindow::ChildWindow(Frame &frame)
    : m_frame(frame)
{
}

QString ChildWindow::title() const
{
    return m_title.isNull() ? windowTitle() : m_title;
}

void ChildWindow::setTitle(const QString &title)
{
    m_title = title.isNull() ? u""_s : title;
    // QWidget replaces "[*]" by a mark for a modified document, and "[*][*]" by "[*]".
    setWindowTitle(QString(m_title).replace("[*]"_L1, "[*][*]"_L1));
}

Interaction &ChildWindow::interaction() const
{
    return m_frame.interaction();
}

void ChildWindow::closeWindow()
{
    m_frame.unload(*this);
}

const ErrorBoundary &ChildWindow::boundary() const
{
    return m_frame.boundary();
}

bool ChildWindow::keepsActivationFrom(const ChildWindow & /*next*/) const noexcept
{
    return false;
}

void ChildWindow::setDefaultButton(QPushButton *button)
{
    m_defaultButton = button;
    button->setDefault(true); // outside a QDialog this changes only its look
    button->installEventFilter(this);
}

void ChildWindow::setCancelButton(QPushButton *button)
{
    m_cancelButton = button;
}

void ChildWindow::setCloseButton(QPushButton *button)
{
    m_closeButton = button;
}

void ChildWindow::setAutoRepeatButtons(const QList<QAbstractButton *> &buttons)
{
    m_autoRepeatButtons = buttons;
}

bool ChildWindow::eventFilter(QObject *watched, QEvent *event)
{
    // A focused default button handles Enter itself and would be pressed again and again while
    // the key is held.
    if (event->type() == QEvent::KeyPress && watched == m_defaultButton) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (m_frame.input().isAutoRepeat() && isPlainEnter(key))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void ChildWindow::keyPressEvent(QKeyEvent *event)
{
    QPushButton *button = nullptr;
    if (isPlainEnter(*event)) {
        button = qobject_cast<QPushButton *>(focusWidget());
        if (!button)
            button = m_defaultButton;
    } else if (event->matches(QKeySequence::Cancel)) {
        button = m_cancelButton;
    } else if (event->matches(QKeySequence::Close)) {
        button = m_closeButton;
    }

    if (!button) {
        QWidget::keyPressEvent(event);
    } else if (!m_frame.input().isAutoRepeat() && button->isVisible() && button->isEnabled()) {
        button->click();
    }
}

void ChildWindow::closeEvent(QCloseEvent *event)
{
    event->ignore(); // Qt would close the window and leave its QMdiSubWindow; Frame destroys both
    closeWindow();
}
