#pragma once

#include <QWidget>

class QLineEdit;

// Marks a line edit whose text is refused: a frame in a warning colour around it, and the reason as
// its tooltip and as its description for screen readers. The mark goes when the text changes. The
// edit owns it.
class WarningFrame final : public QWidget
{
    Q_OBJECT

public:
    explicit WarningFrame(QLineEdit &edit);

    void showReason(const QString &reason); // no mark if it is empty

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QLineEdit &m_edit;
    QString m_description; // of the edit, when no reason is shown
};
