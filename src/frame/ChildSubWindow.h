#pragma once

#include <QMdiSubWindow>
#include <QPointer>

class ChildWindow;
class QWindowStateChangeEvent;

// The title bar, border and system menu around a child window. It moves back inside when its area
// becomes smaller, and shows the whole title as a tooltip of the title bar. When it is activated,
// the control that had the focus in it last has it again.
class ChildSubWindow final : public QMdiSubWindow
{
    Q_OBJECT

public:
    explicit ChildSubWindow(ChildWindow &child); // takes ownership of the child

    // Moves it to the position of the new window with this number, from 0: each is one step further
    // right and down, and starts at the top left again if it would not fit into the area. A window
    // that is larger than the area gets the area's size.
    void cascade(int number);
    // Gives it the restoredGeometry() of an earlier window, moved inside the area.
    void reopenAt(const QRect &geometry);
    // Returns the geometry that it has when it is neither minimised nor maximised.
    QRect restoredGeometry() const;
    // Moves it back inside the area, and shrinks it if it is larger, unless it is minimised or
    // maximised.
    void keepInside();

protected:
    bool event(QEvent *event) override;

private:
    bool changeState(QWindowStateChangeEvent &event);
    void takeFocusFromOthers();
    bool isTitleAt(QPoint position) const;

    ChildWindow &m_child;
    QRect m_restoredGeometry; // while it is minimised or maximised
    QPointer<QWidget> m_focus; // the control that had it before the last change of the state
};
