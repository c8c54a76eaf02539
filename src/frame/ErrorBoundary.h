#pragma once

#include <QMetaObject>
#include <QObject>
#include <QString>

#include <functional>
#include <stdexcept>

class Interaction;

// A window that could not be loaded. It names the window, so that the boundary of whoever wanted to
// open it tells the user about the right one.
class LoadFailure final : public std::runtime_error
{
public:
    LoadFailure(const QString &window, const std::exception &reason);

    QString window() const { return m_window; }

private:
    QString m_window;
};

// The boundary around every handler: what a handler throws is told to the user, with the title of
// the window, and the program goes on. It stands around the handler itself and not around the event
// loop, because Qt's widgets are built without clean-up for exceptions that pass through them.
class ErrorBoundary
{
public:
    explicit ErrorBoundary(Interaction &interaction);

    // Runs the handler and returns whether it came to its end. what() of anything thrown is UTF-8
    // text for the user; the title is the one that the window had before.
    bool run(const QString &windowTitle, const std::function<void()> &handler) const;

    // QObject::connect for member functions, with the boundary around the handler. For dialogs and
    // the main window; a child window has it as its own connect.
    template <class Sender, class Signal, class Window, class... Args>
    QMetaObject::Connection connect(const Sender *sender, Signal signal, Window *window,
                                    void (Window::*handler)(Args...)) const
    {
        return QObject::connect(sender, signal, window, [this, window, handler](Args... args) {
            run(titleOf(*window), [&] { (window->*handler)(args...); });
        });
    }

private:
    template <class Window>
    static QString titleOf(const Window &window)
    {
        if constexpr (requires { window.title(); })
            return window.title();
        else
            return window.windowTitle();
    }

    void tell(const QString &windowTitle, const std::exception &failure) const;

    Interaction &m_interaction;
};
