#pragma once

#include "BusyPointer.h"

// The desktop's own sign for having to wait, over all windows of the program.
class WaitCursor final : public BusyPointer
{
public:
    void show() override;
    void hide() noexcept override;
};
