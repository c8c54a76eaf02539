#pragma once

#include <QPoint>
#include <QStringList>

class QWidget;

// The user's hands on a window: real keys and a real mouse where there is an X server, events on
// the native window elsewhere. They may return before the program has seen what they did.
class Hands
{
public:
    explicit Hands(QWidget &window);

    static bool areReal();

    void type(const QStringList &keys) const; // in one burst; "F6", "ctrl+Tab"
    void click(QPoint globalPosition, int times = 1) const;
    void move(QPoint globalPosition) const; // real hands alone
    void wheelDown(QPoint globalPosition) const;

private:
    QWidget &m_window;
};
