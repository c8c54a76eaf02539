#pragma once

#include "interaction/Interaction.h"

// Boxes and choosers on the desktop, in front of the window that is active.
class DesktopInteraction final : public Interaction
{
public:
    Button show(const MessageBox &box) override;
    QString ask(const InputBox &box) override;
    QString choose(const FileChooser &chooser) override;
    QString choose(const FolderChooser &chooser) override;
};
