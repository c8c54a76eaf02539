#pragma once

#include <QtGlobal>

// A mouse cursor that shows that the user has to wait.
class BusyCursor
{
public:
    BusyCursor() = default;
    virtual ~BusyCursor() = default;

    virtual void show() = 0;
    virtual void hide() noexcept = 0; // restores the previous cursor

private:
    Q_DISABLE_COPY_MOVE(BusyCursor)
};

// The desktop's wait cursor, over all windows of the program.
class WaitCursor final : public BusyCursor
{
public:
    void show() override;
    void hide() noexcept override;
};
