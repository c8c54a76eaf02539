#pragma once

#include <QLineEdit>

class QAction;

// Shows the path of a template file, of a long one the end, and marks a file that is not there. It
// is not typed into: a click, Enter or the blank ask for another file.
class FilePathEdit final : public QLineEdit
{
    Q_OBJECT

public:
    explicit FilePathEdit(QWidget *parent = nullptr);

    QString path() const { return text(); }
    void setPath(const QString &path); // empty for none

Q_SIGNALS:
    void clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QAction *m_missing; // the mark
};
