#pragma once

#include "frame/ErrorBoundary.h"

#include <QByteArrayView>
#include <QList>
#include <QWidget>

class Interaction;
class Frame;
class QAbstractButton;
class QPushButton;

// A window inside the frame. Frame creates, shows, activates, hides and destroys it and finds it by
// its class name; do not call QWidget's show() or hide() on it. Its constructor creates the
// controls and connects them.
//
// Enter presses the focused button or else the default button, Esc presses the cancel button,
// unless the focused control uses the key itself. Ctrl+W presses the close button.
class ChildWindow : public QWidget
{
    Q_OBJECT

public:
    explicit ChildWindow(Frame &frame);

    // The title is the form's windowTitle until another one is set. It may be any text: the window
    // shows it unchanged, "[*]" included, and title() returns it as it was set.
    QString title() const;
    void setTitle(const QString &title);

protected:
    Frame &frame() const { return m_frame; }
    void closeWindow(); // unloads this window; it is destroyed after the running handler returns
    Interaction &interaction() const;

    // Frame calls these handlers. If Form_Load or openDataSources throws, Frame destroys the window
    // and throws a LoadError; if another one throws, the user sees the error and the window
    // remains.
    virtual void Form_Load() { }
    virtual void openDataSources() { } // after Form_Load
    virtual void Form_Activate() { }
    virtual void Form_Deactivate() { }

    // Called if the window is shown while it is active already. A window that shows what other
    // programs may change reads it again.
    virtual void refresh() { }

    // Returns whether this window takes the activation back when next is about to be activated. Not
    // called while this window is hidden or unloaded.
    virtual bool keepsActivationFrom(const ChildWindow &next) const noexcept;
    // The class name of a window that is activated and deactivated once, if it is shown, before
    // this one takes the activation back; empty for none.
    virtual QByteArrayView compositionEditor() const { return {}; }

    // Connects as QObject::connect does; the handler runs inside the boundary. It hides
    // QObject::connect, so that no handler of a window can run outside.
    template <class Sender, class Signal, class Window, class... Args>
    QMetaObject::Connection connect(const Sender *sender, Signal signal, Window *window,
                                    void (Window::*handler)(Args...))
    {
        return boundary().connect(sender, signal, window, handler);
    }

    // Call each at most once, in the constructor; the window must own the button.
    void setDefaultButton(QPushButton *button);
    void setCancelButton(QPushButton *button);
    // The button with which the user leaves the window without losing anything unasked.
    void setCloseButton(QPushButton *button);
    // The access keys of these buttons press again and again while they are held.
    void setAutoRepeatButtons(const QList<QAbstractButton *> &buttons);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override; // unloads the window

private:
    friend class Frame;
    friend class Activation;
    friend class InputFilter;

    const ErrorBoundary &boundary() const;

    Frame &m_frame;
    QString m_title;
    QPushButton *m_defaultButton = nullptr;
    QPushButton *m_cancelButton = nullptr;
    QPushButton *m_closeButton = nullptr;
    QList<QAbstractButton *> m_autoRepeatButtons;
};
