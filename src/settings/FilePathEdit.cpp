#include "settings/FilePathEdit.h"

#include <QAction>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>

FilePathEdit::FilePathEdit(QWidget *parent)
    : QLineEdit(parent)
    , m_missingMark(
          addAction(style()->standardIcon(QStyle::SP_MessageBoxWarning), TrailingPosition))
{
    setReadOnly(true);
    m_missingMark->setVisible(false);
    m_missingMark->setText(tr("There is no such file."));
    connect(m_missingMark, &QAction::triggered, this, &FilePathEdit::clicked);
}

// QLineEdit::setText() puts the cursor at the end, so that the end of a long path is visible.
void FilePathEdit::setPath(const QString &path)
{
    setText(path);
    const bool isMissing = !path.isEmpty() && !QFileInfo(path).isFile();
    m_missingMark->setVisible(isMissing);
    const QString warning = isMissing ? m_missingMark->text() : QString();
    setAccessibleDescription(warning);
    setToolTip(isMissing ? path + u'\n' + warning : path);
}

// Accepts Enter, which would otherwise also press the default button of the dialog.
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

// A user who has selected a part of the path wants to copy it.
void FilePathEdit::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())
        && !hasSelectedText())
        Q_EMIT clicked();
}
