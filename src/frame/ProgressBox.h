#pragma once

#include "Progress.h"

#include <QDialog>
#include <QElapsedTimer>

#include <memory>

namespace Ui {
class ProgressBox;
}

// Shows how far work is and lets the user stop it, as soon as it has lasted for half a second. While
// it is shown nothing else of the program can be used. Its owner destroys it when the work is over.
class ProgressBox final : public QDialog, public Progress
{
    Q_OBJECT

public:
    // The parent is the window that the work is done for.
    ProgressBox(const QString &title, QWidget *parent);
    ~ProgressBox() override;

    bool goOn(qsizetype piece, qsizetype pieces, const QString &name) override;

    void reject() override; // stops the work; also by Esc and the close box

private:
    bool isTimeToShow();
    void showPiece(qsizetype piece, qsizetype pieces, const QString &name);

    std::unique_ptr<Ui::ProgressBox> m_ui;
    QElapsedTimer m_sinceShown; // or since the piece before, while the box is not shown
    qint64 m_worked = 0; // milliseconds until the box is shown
    bool m_isStopped = false;
};
