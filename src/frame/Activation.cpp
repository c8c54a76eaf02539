#include "frame/Activation.h"

#include "frame/ChildWindow.h"
#include "frame/ErrorBoundary.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace {

// Windows whose handlers activate each other need a few rounds; more of them are an endless loop.
constexpr int maximumRounds = 16;

QMdiSubWindow *subWindowOf(const ChildWindow &child)
{
    return qobject_cast<QMdiSubWindow *>(child.parentWidget());
}

} // namespace

Activation::Activation(QMdiArea &area, const ErrorBoundary &boundary, std::function<void()> beep)
    : m_area(area)
    , m_boundary(boundary)
    , m_beep(std::move(beep))
{
    connect(&area, &QMdiArea::subWindowActivated, this, &Activation::onSubWindowActivated);
}

bool Activation::isActive(const ChildWindow &child) const
{
    return m_active == &child && m_requested == &child && !QApplication::activeModalWidget();
}

bool Activation::isRefusedTo(const ChildWindow &next) const
{
    return m_requested && m_requested != &next && m_requested->keepsActivationFrom(next);
}

void Activation::requestActivation(ChildWindow &child)
{
    m_requested = &child;
    if (!m_history.contains(&child)) {
        m_neverActivated.removeOne(&child);
        m_neverActivated.prepend(&child);
    }
    schedule();
}

void Activation::prepareToHide(ChildWindow &child)
{
    m_history.removeOne(&child);
    m_neverActivated.removeOne(&child);
    if (m_requested == &child) {
        m_requested = nextInHistory();
        bringToFront(m_requested);
    }
    if (m_active == &child) {
        m_active = nullptr;
        runDeactivate(child);
    }
    schedule();
}

void Activation::reset()
{
    m_requested = nullptr;
    m_active = nullptr;
    m_history.clear();
    m_neverActivated.clear();
}

void Activation::schedule()
{
    if (m_scheduled || m_processing)
        return;
    m_scheduled = true;
    const auto process = [this] {
        m_scheduled = false;
        processPending();
    };
    QMetaObject::invokeMethod(this, process, Qt::QueuedConnection);
}

void Activation::processPending()
{
    if (m_processing || QApplication::activeModalWidget())
        return;
    const QScopedValueRollback processing(m_processing, true);
    for (int round = 0; m_active != m_requested && round < maximumRounds; ++round)
        switchToRequested();
}

// When the main window is minimised and restored, QMdiArea reports null and then the same window
// again. It may also report a window that is being hidden.
void Activation::onSubWindowActivated(QMdiSubWindow *subWindow)
{
    auto *child = subWindow ? qobject_cast<ChildWindow *>(subWindow->widget()) : nullptr;
    if (child && child != m_requested && isShown(child))
        requestActivation(*child);
}

// One switch from the active window to the requested one. Any handler may request another window,
// or hide and unload windows.
void Activation::switchToRequested()
{
    if (ChildWindow *old = std::exchange(m_active, nullptr)) {
        runDeactivate(*old);
        if (isShown(old) && isShown(m_requested) && m_requested != old
            && old->keepsActivationFrom(*m_requested))
            restore(*old);
    }
    if (!m_requested)
        return;
    m_neverActivated.removeOne(m_requested);
    m_history.removeOne(m_requested);
    m_history.prepend(m_requested);
    m_active = m_requested;
    bringToFront(m_requested);
    runActivate(*m_requested);
}

void Activation::restore(ChildWindow &child)
{
    m_requested = &child;
    if (ChildWindow *editor = findShown(child.compositionEditor())) {
        runActivate(*editor);
        runDeactivate(*editor);
    }
    if (QMdiSubWindow *subWindow = subWindowOf(child); subWindow->isMinimized())
        subWindow->showNormal(); // the user must see which window keeps the activation
    m_beep();
}

void Activation::runActivate(ChildWindow &child)
{
    m_boundary.run(child.title(), [&] { child.Form_Activate(); });
}

void Activation::runDeactivate(ChildWindow &child)
{
    m_boundary.run(child.title(), [&] { child.Form_Deactivate(); });
}

bool Activation::isShown(ChildWindow *child) const
{
    return m_history.contains(child) || m_neverActivated.contains(child);
}

ChildWindow *Activation::findShown(QByteArrayView className) const
{
    for (ChildWindow *child : m_history + m_neverActivated) {
        if (className == child->metaObject()->className())
            return child;
    }
    return nullptr;
}

ChildWindow *Activation::nextInHistory() const
{
    if (!m_history.isEmpty())
        return m_history.first();
    return m_neverActivated.isEmpty() ? nullptr : m_neverActivated.first();
}

void Activation::bringToFront(ChildWindow *child)
{
    m_area.setActiveSubWindow(child ? subWindowOf(*child) : nullptr);
    // QMdiArea gives the focus to no control if the one that had it is disabled.
    QWidget *focus = child ? child->focusWidget() : nullptr;
    if (focus && !focus->isEnabled()) {
        focus->clearFocus();
        child->focusNextChild(); // the first one
    }
}
