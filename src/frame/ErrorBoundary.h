#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QString>

#include <exception>
#include <functional>
#include <stdexcept>
#include <utility>

class Interaction;

// Thrown if a window cannot be loaded. It carries the window's title, since the error is caught
// by the boundary of the window that opens it.
class LoadError final : public std::runtime_error
{
public:
    // To be called in the handler that has caught `reason`.
    LoadError(const QString &windowTitle, const std::exception &reason);

    QString windowTitle() const { return m_windowTitle; }
    // The exception because of which the window could not be loaded; not a LoadError.
    const std::exception_ptr &reason() const { return m_reason; }

private:
    QString m_windowTitle;
    std::exception_ptr m_reason;
};

// Catches what an event handler throws, shows it to the user with the title of the window, and lets
// the program continue. Every handler runs inside it. Qt does not support exceptions that pass
// through its event loop, so they are caught before they reach it.
class ErrorBoundary
{
    Q_DECLARE_TR_FUNCTIONS(ErrorBoundary)

public:
    explicit ErrorBoundary(Interaction &interaction); // which must outlive it

    // What the application does about an exception that a handler of the window has thrown. Returns
    // whether it has told the user; otherwise the boundary does. Must not throw.
    using ErrorHandler =
        std::function<bool(const QString &windowTitle, const std::exception_ptr &failure)>;
    void setErrorHandler(ErrorHandler handler) { m_errorHandler = std::move(handler); }

    // Called after each handler that does not run inside another one. It must not throw.
    void setAfterHandler(std::function<void()> action) { m_afterHandler = std::move(action); }

    // Returns what the boundary says if a handler of the window fails for this reason.
    static QString text(const QString &windowTitle, const QString &reason);

    // Runs the handler and returns whether it did not throw. what() of an exception must be UTF-8
    // text for the user. Pass the title that the window has before the handler runs.
    bool run(const QString &windowTitle, const std::function<void()> &handler) const;

    // Connects as QObject::connect does; the handler runs inside the boundary. For dialogs and the
    // main window: a child window calls ChildWindow::connect instead.
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

    bool runAndReport(const QString &windowTitle, const std::function<void()> &handler) const;
    static QString reasonOf(const std::exception_ptr &failure);
    void report(const QString &windowTitle, const std::exception_ptr &failure) const;

    Interaction &m_interaction;
    ErrorHandler m_errorHandler;
    std::function<void()> m_afterHandler;
    mutable int m_depth = 0; // of handlers inside each other
};
