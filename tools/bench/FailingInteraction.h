#pragma once

#include "interaction/Interaction.h"

#include <stdexcept>

// Throws for every message box, since a benchmark must not wait for a user.
class FailingInteraction final : public Interaction
{
public:
    Button show(const MessageBox &box) override
    {
        throw std::runtime_error(box.text.toStdString());
    }
    QString ask(const InputBox &) override { return {}; }
    QString choose(const FileChooser &) override { return {}; }
    QString choose(const FolderChooser &) override { return {}; }
    std::unique_ptr<Progress> startProgress(const QString &) override
    {
        return std::make_unique<SilentProgress>();
    }
};
