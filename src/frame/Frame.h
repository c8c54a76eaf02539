#pragma once

#include "frame/AccessKeys.h"
#include "frame/Activation.h"
#include "frame/ChildWindow.h"
#include "frame/ErrorBoundary.h"
#include "frame/InputFilter.h"

#include <QApplication>
#include <QList>
#include <QObject>

#include <functional>
#include <utility>

class Interaction;
class QMdiArea;

// The life of the child windows in an area: one instance a class, made by load and destroyed by
// unload. All program code shows, activates, hides and unloads them here. Activations run when the
// handler that caused them has ended: to show a window and then to set what it shows is fine.
//
// The main window has one as a member, over the area of its form, gives it to the windows that it
// loads, and calls unloadAll() in its closeEvent.
class Frame final : public QObject
{
    Q_OBJECT

public:
    Frame(Interaction &interaction, QMdiArea &area,
          std::function<void()> beep = &QApplication::beep);
    ~Frame() override;

    Interaction &interaction() const { return m_interaction; }
    const ErrorBoundary &boundary() const { return m_boundary; }

    // The loaded window of that class: made, its Form_Load run and its data sources opened if it
    // was not loaded yet, and not shown. What its constructor takes beside the frame follows.
    // Throws LoadFailure, and then nothing is loaded.
    template <class Window, class... Args>
    Window &load(Args &&...args)
    {
        Window *window = find<Window>();
        if (!window) {
            window = new Window(*this, std::forward<Args>(args)...); // an area owns its windows
            add(*window);
        }
        return *window;
    }

    // A loaded window, or null.
    template <class Window>
    Window *find() const
    {
        return static_cast<Window *>(find(Window::staticMetaObject.className()));
    }
    ChildWindow *find(QByteArrayView className) const;

    // The window that is active or about to become so, or null.
    ChildWindow *activeChild() const { return m_activation.active(); }

    void show(ChildWindow &child); // on top, restored if it was minimised, and activated
    void activate(ChildWindow &child); // nothing where it is not shown
    void hide(ChildWindow &child); // the one that was active before it becomes active
    void unload(ChildWindow &child); // hides; destroyed when the running handler has ended
    void unloadAll(); // runs no handler and asks nothing

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(ChildWindow &child);
    void remove(ChildWindow &child);

    Interaction &m_interaction;
    QMdiArea &m_area;
    ErrorBoundary m_boundary;
    Activation m_activation;
    InputFilter m_inputFilter;
    AccessKeys m_accessKeys;
    QList<ChildWindow *> m_windows; // owned by the area
    int m_placed = 0; // new windows so far, for the cascade
};
