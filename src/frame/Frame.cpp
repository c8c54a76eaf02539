#include "frame/Frame.h"

#include "frame/ChildSubWindow.h"

#include <QEvent>
#include <QMdiArea>

#include <algorithm>
#include <utility>

namespace {

ChildSubWindow &shellOf(const ChildWindow &child)
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
    , m_accessKeys(m_activation)
{
    area.setActivationOrder(QMdiArea::ActivationHistoryOrder);
    area.viewport()->installEventFilter(this);
}

Frame::~Frame()
{
    for (const ChildWindow *child : std::as_const(m_windows))
        delete &shellOf(*child);
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
    auto *shell = new ChildSubWindow(child);
    m_area.addSubWindow(shell);
    m_windows.append(&child);
    try {
        child.Form_Load();
        child.openDataSources();
    } catch (const std::exception &failure) {
        const LoadFailure loadFailure(child.title(), failure);
        remove(child);
        throw loadFailure;
    }
    shell->cascade(m_placed++);
}

void Frame::show(ChildWindow &child)
{
    ChildSubWindow &shell = shellOf(child);
    m_activation.requestActivation(child);
    if (shell.isMinimized())
        shell.showNormal();
    else
        shell.show();
    activate(child);
}

void Frame::activate(ChildWindow &child)
{
    ChildSubWindow &shell = shellOf(child);
    if (shell.isHidden())
        return;
    m_activation.requestActivation(child);
    m_area.setActiveSubWindow(&shell);
}

void Frame::hide(ChildWindow &child)
{
    ChildSubWindow &shell = shellOf(child);
    if (shell.isHidden())
        return;
    m_activation.remove(child);
    shell.hide();
}

void Frame::unload(ChildWindow &child)
{
    hide(child);
    remove(child);
}

void Frame::unloadAll()
{
    m_activation.clear();
    while (!m_windows.isEmpty())
        remove(*m_windows.last());
}

void Frame::remove(ChildWindow &child)
{
    m_windows.removeOne(&child);
    shellOf(child).deleteLater();
}

bool Frame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        for (const ChildWindow *child : std::as_const(m_windows))
            shellOf(*child).keepInside();
    }
    return QObject::eventFilter(watched, event);
}
