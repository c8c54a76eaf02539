#pragma once

#include <QString>

// Shows the progress of work that consists of many items, and lets the user cancel it between two.
class Progress
{
public:
    Progress() = default;
    virtual ~Progress() = default;

    // Call before each item: done of total items are finished, and the label names the next one.
    // Returns false if the user cancelled the work; then the caller must not begin the next item.
    // May process events, so no item may be half done.
    virtual bool update(qsizetype done, qsizetype total, const QString &label) = 0;

private:
    Q_DISABLE_COPY_MOVE(Progress)
};

// For work that nobody watches: shows nothing and is never cancelled.
class SilentProgress final : public Progress
{
public:
    bool update(qsizetype /*done*/, qsizetype /*total*/, const QString & /*label*/) override
    {
        return true;
    }
};
