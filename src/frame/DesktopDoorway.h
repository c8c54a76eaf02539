#pragma once

#include "Doorway.h"

// Boxes and choosers on the desktop, in front of the window that is active.
class DesktopDoorway final : public Doorway
{
public:
    Button show(const MessageBox &box) override;
    QString ask(const InputBox &box) override;
    QString choose(const FileChooser &chooser) override;
    QString choose(const FolderChooser &chooser) override;
};
