#pragma once

#include "interaction/Interaction.h"

#include <QCoreApplication>

#include <chrono>
#include <functional>

class WorkTime;

// Boxes, choosers and progress on the desktop, each in front of the window that is active.
class DesktopInteraction final : public Interaction
{
    Q_DECLARE_TR_FUNCTIONS(DesktopInteraction)

public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    // The clock decides when progress appears.
    explicit DesktopInteraction(Clock clock = std::chrono::steady_clock::now);

    Button show(const MessageBox &box) override;
    QString ask(const InputBox &box) override;
    QString choose(const FileChooser &chooser) override;
    QString choose(const FolderChooser &chooser) override;

    // The box appears when the items have taken half a second in all, without the time in which
    // other boxes are open. While it is visible, the user can use nothing else of the program;
    // Stop, Esc and its close box cancel the work.
    std::unique_ptr<Progress> startProgress(const QString &title) override;

private:
    Clock m_now;
    std::weak_ptr<WorkTime> m_workTime; // of the progress that was started last
};
