#pragma once

#include <QLineEdit>

class QAction;

// A read-only line edit that shows the path of a file and marks a file that does not exist. A
// click, Enter or Space asks for another file with clicked().
class FilePathEdit final : public QLineEdit
{
    Q_OBJECT

public:
    explicit FilePathEdit(QWidget *parent = nullptr);

    QString path() const { return text(); }
    void setPath(const QString &path); // empty if there is no file

Q_SIGNALS:
    void clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QAction *m_missingMark;
};
