#pragma once

#include <QPlainTextEdit>

// An edit of several lines, in which Tab moves the focus. Ctrl and the wheel scroll it as the wheel
// alone does: QPlainTextEdit would enlarge a read-only text, and nothing could undo that.
class TextEdit final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit TextEdit(QWidget *parent = nullptr)
        : QPlainTextEdit(parent)
    {
        setTabChangesFocus(true);
    }

protected:
    void wheelEvent(QWheelEvent *event) override
    {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call): QPlainTextEdit's own enlarges the text
        QAbstractScrollArea::wheelEvent(event);
    }
};
