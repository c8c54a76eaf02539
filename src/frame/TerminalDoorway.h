#pragma once

#include "Doorway.h"

// Messages for a start without a desktop: texts go to standard error. A question is asked on
// standard input where that is a terminal, and answered No otherwise; the answer is printed.
class TerminalDoorway final : public Doorway
{
public:
    Button show(const MessageBox &box) override;
};
