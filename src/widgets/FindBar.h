#pragma once

#include <QWidget>

#include <memory>

class QAbstractItemView;
class QKeyEvent;

namespace Ui {
class FindBar;
}

// A bar in which the user types what to find in a list. It is hidden until the find key (Ctrl+F) is
// pressed in its parent widget, and takes no space until then. While the user types, the list has
// to show only what is found: connect textChanged() to that.
//
// While it is open, Esc closes it before the parent widget gets the key, whichever of the parent's
// controls has the focus. Enter goes on to the window, which presses its default button. Screen
// readers say the count whenever it changes, without a change of the focus.
class FindBar final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    explicit FindBar(QWidget *parent);
    ~FindBar() override;

    // The list, which gets the focus when the bar is closed. To be called once, before open().
    void setView(QAbstractItemView &view) { m_view = &view; }

    // What is shown in the field while it is empty; also its description for screen readers.
    QString placeholderText() const;
    void setPlaceholderText(const QString &text);

    bool isOpen() const { return !isHidden(); }
    QString text() const; // what is typed; empty while the bar is closed

    // Says how many rows are found, such as "23 of 5,000".
    void showCount(qsizetype found, qsizetype total);
    void clearCount(); // when nothing is searched for

    void open(); // with the focus in the field, whose text is selected
    void clear(); // empties the field; the focus stays where it is
    void closeBar(); // and empties the field

Q_SIGNALS:
    // Also emitted if the bar is closed with a text.
    void textChanged(const QString &text);
    void closed(); // after textChanged()
    // The user wants to move in the list while the field has the focus. The key is Up, Down,
    // PageUp, PageDown, Home or End; the last two are pressed with Ctrl.
    void moveRequested(Qt::Key key);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool requestMove(const QKeyEvent &press);
    void announce(const QString &count);

    std::unique_ptr<Ui::FindBar> m_ui;
    QAbstractItemView *m_view = nullptr;
};
