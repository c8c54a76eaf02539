#pragma once

#include "platform/UserVisibleError.h"

// Why no web pages were exported.
class ExportError : public platform::UserVisibleError
{
public:
    using UserVisibleError::UserVisibleError;
};

// The folder for the pages contains something that was not exported.
class ForeignFolderError final : public ExportError
{
public:
    using ExportError::ExportError;
};
