#include "frame/Frame.h"

#include "frame/ChildSubWindow.h"

#include <QEvent>
#include <QMdiArea>

#include <algorithm>
#include <utility>

namespace {

ChildSubWindow &subWindowOf(const ChildWindow &child)
{
    return *static_cast<ChildSubWindow *>(child.parentWidget());
}

} // namespace

Frame::Frame(Interaction &interaction, QMdiArea &area, std::function<void()> beep)
    : m_interaction(interaction)
    , m_area(area)
    , m_boundary(interaction)
    , m_activation(area, m_boundary, std::move(beep))
    , m_inputFilter(area, m_activation)
{
    area.setActivationOrder(QMdiArea::ActivationHistoryOrder);
    area.viewport()->installEventFilter(this);
}

Frame::~Frame()
{
    for (const ChildWindow *child : std::as_const(m_windows))
        delete &subWindowOf(*child);
}

ChildWindow *Frame::find(QByteArrayView className) const
{
    const auto isNamed = [&](const ChildWindow *child) {
        return className == child->metaObject()->className();
    };
    const auto found = std::find_if(m_windows.begin(), m_windows.end(), isNamed);
    return found == m_windows.end() ? nullptr : *found;
}

void Frame::add(ChildWindow &child)
{
    auto *subWindow = new ChildSubWindow(child);
    m_area.addSubWindow(subWindow);
    m_windows.append(&child);
    try {
        child.Form_Load();
        child.openDataSources();
    } catch (const std::exception &failure) {
        const LoadError error(child.title(), failure);
        destroyLater(child);
        throw error;
    }
    const auto earlier = m_geometries.constFind(child.metaObject()->className());
    if (earlier == m_geometries.constEnd())
        subWindow->cascade(m_loadedCount++);
    else
        subWindow->reopenAt(*earlier);
}

void Frame::show(ChildWindow &child)
{
    ChildSubWindow &subWindow = subWindowOf(child);
    const bool wasActive = m_activation.isActive(child);
    m_activation.requestActivation(child);
    if (subWindow.isMinimized())
        subWindow.showNormal();
    else
        subWindow.show();
    activate(child);
    if (wasActive)
        m_boundary.run(child.title(), [&] { child.refresh(); });
}

void Frame::activate(ChildWindow &child)
{
    ChildSubWindow &subWindow = subWindowOf(child);
    if (subWindow.isHidden())
        return;
    m_activation.requestActivation(child);
    m_area.setActiveSubWindow(&subWindow);
}

void Frame::hide(ChildWindow &child)
{
    ChildSubWindow &subWindow = subWindowOf(child);
    if (subWindow.isHidden())
        return;
    m_activation.prepareToHide(child);
    subWindow.hide();
}

void Frame::unload(ChildWindow &child)
{
    m_geometries.insert(child.metaObject()->className(), subWindowOf(child).restoredGeometry());
    hide(child);
    destroyLater(child);
}

void Frame::unloadAll()
{
    m_activation.reset();
    while (!m_windows.isEmpty())
        destroyLater(*m_windows.last());
}

void Frame::destroyLater(ChildWindow &child)
{
    m_windows.removeOne(&child);
    subWindowOf(child).deleteLater();
}

bool Frame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        for (const ChildWindow *child : std::as_const(m_windows))
            subWindowOf(*child).keepInside();
    }
    return QObject::eventFilter(watched, event);
}
