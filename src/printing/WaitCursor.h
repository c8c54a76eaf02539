#pragma once

#include "printing/BusyCursor.h"

// The desktop's own sign for having to wait, over all windows of the program.
class WaitCursor final : public BusyCursor
{
public:
    void show() override;
    void hide() noexcept override;
};
