#pragma once

#include "interaction/Interaction.h"

// Messages for a start without a desktop: texts go to standard error. A question is asked on
// standard input where that is a terminal, and answered No otherwise; the answer is printed. Input
// boxes and choosers count as cancelled.
class TerminalInteraction final : public Interaction
{
public:
    Button show(const MessageBox &box) override;
    QString ask(const InputBox & /*box*/) override { return {}; }
    QString choose(const FileChooser & /*chooser*/) override { return {}; }
    QString choose(const FolderChooser & /*chooser*/) override { return {}; }
};
