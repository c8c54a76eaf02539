#pragma once

#include "interaction/Progress.h"

#include <QDialog>

#include <chrono>
#include <memory>

namespace Ui {
class ProgressDialog;
}

// Shows how far work is and lets the user stop it, as soon as it has lasted for half a second.
// While it is shown nothing else of the program can be used. Its owner destroys it when the work is
// over.
class ProgressDialog final : public QDialog, public Progress
{
    Q_OBJECT

public:
    // The parent is the window that the work is done for.
    ProgressDialog(const QString &title, QWidget *parent);
    ~ProgressDialog() override;

    bool update(qsizetype piece, qsizetype pieces, const QString &name) override;

    void reject() override; // stops the work; also by Esc and the close box

private:
    bool isTimeToShow();
    void showPiece(qsizetype piece, qsizetype pieces, const QString &name);

    using Clock = std::chrono::steady_clock;
    Clock::time_point m_last = Clock::now(); // picture; until there is one, piece
    Clock::duration m_worked{}; // until there is a picture
    std::unique_ptr<Ui::ProgressDialog> m_ui;
    bool m_isStopped = false;
};
