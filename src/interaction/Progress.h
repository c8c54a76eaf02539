#pragma once

#include <QString>

// Watches work of many pieces that may last, and lets the user stop it between two of them.
class Progress
{
public:
    Progress() = default;
    virtual ~Progress() = default;

    // In front of piece number piece, counted from 1, of pieces; name is what the user knows it by.
    // Returns whether to go on with it. May paint and handle events, so nothing may be half done.
    virtual bool update(qsizetype piece, qsizetype pieces, const QString &name) = 0;

private:
    Q_DISABLE_COPY_MOVE(Progress)
};
