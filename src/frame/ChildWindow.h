#pragma once

#include "frame/ErrorBoundary.h"

#include <QByteArrayView>
#include <QWidget>

class Interaction;
class Frame;
class QPushButton;

// A window inside the frame. The class name is the name by which the frame finds it; the frame
// makes it, shows, activates, hides and destroys it (Frame.h), and nobody calls QWidget's show or
// hide on it. The constructor makes the controls and connects them.
//
// Enter presses the button that has the focus, else the default button; Esc presses the cancel
// button. Both come here only where no control wanted the key.
class ChildWindow : public QWidget
{
    Q_OBJECT

public:
    explicit ChildWindow(Frame &frame);

    // The form's caption until a title is set. A title may be any text: it is shown as it stands,
    // elided where the caption is too narrow, and given back as it was set.
    QString title() const;
    void setTitle(const QString &title);

protected:
    Frame &frame() const { return m_frame; }
    void closeWindow(); // unloads this window; it is destroyed after the running handler
    Interaction &interaction() const;

    // Run by the frame, each inside the boundary. Where Form_Load or openDataSources throws, the
    // window is gone again and the one who loads it gets a LoadFailure; where another one throws,
    // the user is told and the window stays as it is.
    virtual void Form_Load() { }
    virtual void openDataSources() { } // runs when Form_Load has returned
    virtual void Form_Activate() { }
    virtual void Form_Deactivate() { }

    // Whether this window takes the activation back when next is about to get it. It is not asked
    // while it is being hidden or unloaded.
    virtual bool keepsActivationFrom(const ChildWindow &next) const noexcept;
    // The class name of the window that is activated once, if it is loaded, before this one takes
    // the activation back; empty for none.
    virtual QByteArrayView compositionEditor() const { return {}; }

    // Connects as QObject::connect does, with the boundary around the handler, and hides that one
    // so that no handler of a window is left outside.
    template <class Sender, class Signal, class Window, class... Args>
    QMetaObject::Connection connect(const Sender *sender, Signal signal, Window *window,
                                    void (Window::*handler)(Args...))
    {
        return boundary().connect(sender, signal, window, handler);
    }

    // Once each, by the constructor; the buttons live as long as the window.
    void setDefaultButton(QPushButton *button);
    void setCancelButton(QPushButton *button);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override; // unloads the window

private:
    friend class Frame;
    friend class Activation;

    const ErrorBoundary &boundary() const;

    Frame &m_frame;
    QString m_title;
    QPushButton *m_defaultButton = nullptr;
    QPushButton *m_cancelButton = nullptr;
};
