#pragma once

#include "interaction/Interaction.h"

// For a start without a desktop: prints texts to standard error. Asks a question on standard input
// if that is a terminal, otherwise takes No as its answer, and prints the answer. A check
// box stays unticked. Input boxes and choosers return as if cancelled. Progress is not shown;
// Ctrl+C ends the program.
class TerminalInteraction final : public Interaction
{
public:
    Button show(const MessageBox &box) override;
    QString ask(const InputBox & /*box*/) override { return {}; }
    QString choose(const FileChooser & /*chooser*/) override { return {}; }
    QString choose(const FolderChooser & /*chooser*/) override { return {}; }
    std::unique_ptr<Progress> startProgress(const QString & /*title*/) override
    {
        return std::make_unique<SilentProgress>();
    }
};
