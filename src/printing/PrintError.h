#pragma once

#include "platform/UserVisibleError.h"

// Why nothing was printed, or why printing stopped.
class PrintError final : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;
};
