#pragma once

#include <QPixmap>
#include <QWidget>

// A picture of a page style, sharp on screens of up to twice the usual resolution, that can be
// clicked.
class ClickableImage final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString source READ source WRITE setSource)

public:
    using QWidget::QWidget;

    QString source() const { return m_source; }
    void setSource(const QString &path); // of a picture file with twice as many pixels as are shown

    QSize sizeHint() const override;

Q_SIGNALS:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_source;
    QPixmap m_picture;
};
