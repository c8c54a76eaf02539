#include "Activation.h"

#include "Boundary.h"
#include "ChildWindow.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace {

// Far more than windows need that pass the activation on; it only ends a circle of them.
constexpr int maximumRounds = 16;

QMdiSubWindow *subWindowOf(const ChildWindow &child)
{
    return qobject_cast<QMdiSubWindow *>(child.parentWidget());
}

} // namespace

Activation::Activation(QMdiArea &area, const Boundary &boundary, std::function<void()> beep)
    : m_area(area)
    , m_boundary(boundary)
    , m_beep(std::move(beep))
{
    connect(&area, &QMdiArea::subWindowActivated, this, &Activation::onSubWindowActivated);
}

bool Activation::isRefusedTo(const ChildWindow &next) const
{
    return m_wanted && m_wanted != &next && m_wanted->keepsActivationFrom(next);
}

void Activation::want(ChildWindow &child)
{
    m_wanted = &child;
    if (!m_history.contains(&child)) {
        m_tried.removeOne(&child);
        m_tried.prepend(&child);
    }
    queue();
}

void Activation::leave(ChildWindow &child)
{
    m_history.removeOne(&child);
    m_tried.removeOne(&child);
    if (m_wanted == &child) {
        m_wanted = follower();
        bringToFront(m_wanted);
    }
    if (m_delivered == &child) {
        m_delivered = nullptr;
        runDeactivate(child);
    }
    queue();
}

void Activation::forgetAll()
{
    m_wanted = nullptr;
    m_delivered = nullptr;
    m_history.clear();
    m_tried.clear();
}

void Activation::queue()
{
    if (m_queued || m_settling)
        return;
    m_queued = true;
    const auto deliver = [this] {
        m_queued = false;
        settle();
    };
    QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
}

void Activation::settle()
{
    if (m_settling || QApplication::activeModalWidget())
        return;
    const QScopedValueRollback settling(m_settling, true);
    for (int round = 0; m_delivered != m_wanted && round < maximumRounds; ++round)
        moveOn();
}

// The area says null and the same window again when the frame is minimised and restored, and may
// name a window that is leaving.
void Activation::onSubWindowActivated(QMdiSubWindow *subWindow)
{
    auto *child = subWindow ? qobject_cast<ChildWindow *>(subWindow->widget()) : nullptr;
    if (child && child != m_wanted && isOnStage(child))
        want(*child);
}

// One step from the window whose activation ran last to the one that should be active. Any handler
// may change what should be, or take windows away.
void Activation::moveOn()
{
    if (ChildWindow *old = std::exchange(m_delivered, nullptr)) {
        runDeactivate(*old);
        if (isOnStage(old) && isOnStage(m_wanted) && m_wanted != old
            && old->keepsActivationFrom(*m_wanted))
            takeBack(*old);
    }
    if (!m_wanted)
        return;
    m_tried.removeOne(m_wanted);
    m_history.removeOne(m_wanted);
    m_history.prepend(m_wanted);
    m_delivered = m_wanted;
    bringToFront(m_wanted);
    runActivate(*m_wanted);
}

void Activation::takeBack(ChildWindow &child)
{
    m_wanted = &child;
    if (ChildWindow *editor = onStage(child.compositionEditor())) {
        runActivate(*editor);
        runDeactivate(*editor);
    }
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

bool Activation::isOnStage(ChildWindow *child) const
{
    return m_history.contains(child) || m_tried.contains(child);
}

ChildWindow *Activation::onStage(QByteArrayView className) const
{
    for (ChildWindow *child : m_history + m_tried) {
        if (className == child->metaObject()->className())
            return child;
    }
    return nullptr;
}

ChildWindow *Activation::follower() const
{
    if (!m_history.isEmpty())
        return m_history.first();
    return m_tried.isEmpty() ? nullptr : m_tried.first();
}

void Activation::bringToFront(ChildWindow *child)
{
    m_area.setActiveSubWindow(child ? subWindowOf(*child) : nullptr);
}
