#pragma once

#include "platform/UserVisibleError.h"

// Why no web pages were written.
class ExportError : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;
};

// The place for the pages holds something that no export has made.
class ForeignFolderError final : public ExportError
{
public:
    using ExportError::ExportError;
};
