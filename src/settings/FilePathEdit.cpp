#include "settings/FilePathEdit.h"

#include <QAction>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>

FilePathEdit::FilePathEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_missing(addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning), TrailingPosition))
{
    setReadOnly(true);
    m_missing->setVisible(false);
    m_missing->setToolTip(tr("There is no such file."));
    connect(m_missing, &QAction::triggered, this, &FilePathEdit::clicked);
}

// The cursor, which stands at the end after this, decides which part of a long text is seen.
void FilePathEdit::setPath(const QString &path)
{
    setText(path);
    const bool isMissing = !path.isEmpty() && !QFileInfo(path).isFile();
    m_missing->setVisible(isMissing);
    const QString complaint = isMissing ? m_missing->toolTip() : QString();
    setAccessibleDescription(complaint);
    setToolTip(isMissing ? path + u'\n' + complaint : path);
}

// Enter is accepted here, so that it does not press the default button as well.
void FilePathEdit::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        event->accept();
        Q_EMIT clicked();
        break;
    default:
        QLineEdit::keyPressEvent(event);
    }
}

// Whoever marks a part of the path wants to copy it.
void FilePathEdit::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())
        && !hasSelectedText())
        Q_EMIT clicked();
}
