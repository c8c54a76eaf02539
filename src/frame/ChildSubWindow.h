#pragma once

#include <QMdiSubWindow>

class ChildWindow;

// The frame around a child window in the area: title bar, border, system menu. It cannot leave the
// area when the area becomes smaller, and shows its title as a tooltip of the title bar.
class ChildSubWindow final : public QMdiSubWindow
{
    Q_OBJECT

public:
    explicit ChildSubWindow(ChildWindow &child); // owns the child; not yet in an area

    // The place and size for the number-th new window, inside the area.
    void cascade(int number);
    // Back into the area, unless it is minimised or maximised.
    void keepInside();

protected:
    bool event(QEvent *event) override;

private:
    bool isCaptionAt(QPoint position) const;

    ChildWindow &m_child;
};
