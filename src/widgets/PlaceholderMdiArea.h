#pragma once

#include <QMdiArea>

// A QMdiArea that shows another widget in its place while no child window is visible, and gives it
// the focus.
class PlaceholderMdiArea final : public QMdiArea
{
    Q_OBJECT

public:
    using QMdiArea::QMdiArea;

    void setPlaceholder(QWidget *placeholder); // call once; takes ownership

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override; // watches the children

private:
    bool hasVisibleChild() const;

    QWidget *m_placeholder = nullptr;
};
