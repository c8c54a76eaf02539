#pragma once

#include "frame/Activation.h"
#include "frame/ChildWindow.h"
#include "frame/ErrorBoundary.h"
#include "frame/InputFilter.h"

#include <QApplication>
#include <QHash>
#include <QList>
#include <QObject>
#include <QRect>

#include <functional>
#include <optional>
#include <utility>

class Interaction;
class QMdiArea;

// Loads, shows, activates, hides and unloads the child windows in a QMdiArea; there is at most one
// window of each class. A window that is loaded again is where its predecessor was, and as large.
// Form_Activate and Form_Deactivate run after the handler that caused them has returned, so a
// handler may show a window first and set its content afterwards.
//
// The main window has a Frame as a member, and calls unloadAll() in its closeEvent.
class Frame final : public QObject
{
    Q_OBJECT

public:
    // The interaction and the area must outlive it.
    Frame(Interaction &interaction, QMdiArea &area,
          std::function<void()> beep = &QApplication::beep);
    ~Frame() override;

    Interaction &interaction() const { return m_interaction; }
    const ErrorBoundary &boundary() const { return m_boundary; }
    ErrorBoundary &boundary() { return m_boundary; }
    const InputFilter &input() const { return m_inputFilter; }

    // Returns the window of this class. If it is not loaded yet, creates it with the frame and
    // args, runs its Form_Load and openDataSources, and does not show it. Throws LoadError, and the
    // window is not loaded then.
    template <class Window, class... Args>
    Window &load(Args &&...args)
    {
        Window *window = find<Window>();
        if (!window) {
            window = new Window(*this, std::forward<Args>(args)...); // add() gives it to the area
            add(*window);
        }
        return *window;
    }

    // Returns the window of this class, or null if it is not loaded.
    template <class Window>
    Window *find() const
    {
        return static_cast<Window *>(find(Window::staticMetaObject.className()));
    }
    ChildWindow *find(QByteArrayView className) const;

    // Returns the window that is active or is to become active, or null.
    ChildWindow *activeChild() const { return m_activation.requested(); }
    // Returns whether the child's Form_Activate has run and no other handler is due or held up by a
    // modal window.
    bool isActive(const ChildWindow &child) const { return m_activation.isActive(child); }

    // The global position of the mouse press that activates a window, while its Form_Activate runs.
    // The control under the mouse gets the press afterwards.
    std::optional<QPoint> pendingPress() const { return m_inputFilter.pendingPress(); }

    // Restores the window if it is minimised, and activates it; refreshes it if it is active.
    void show(ChildWindow &child);
    void activate(ChildWindow &child); // does nothing if it is hidden
    void hide(ChildWindow &child); // and activates the window that was active before it
    void unload(ChildWindow &child); // hides it; it is destroyed after the running handler returns
    void unloadAll(); // runs no handler

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(ChildWindow &child);
    void destroyLater(ChildWindow &child);

    Interaction &m_interaction;
    QMdiArea &m_area;
    ErrorBoundary m_boundary;
    Activation m_activation;
    InputFilter m_inputFilter;
    QList<ChildWindow *> m_windows; // owned by the area
    QHash<QByteArray, QRect> m_geometries; // of the unloaded windows, by class name
    int m_loadedCount = 0; // windows placed by ChildSubWindow::cascade() so far
};
