#pragma once

#include <QtGlobal>

// The mouse pointer of the screen while the user has to wait.
class BusyCursor
{
public:
    BusyCursor() = default;
    virtual ~BusyCursor() = default;

    virtual void show() = 0;
    virtual void hide() noexcept = 0; // shows the usual one again

private:
    Q_DISABLE_COPY_MOVE(BusyCursor)
};
