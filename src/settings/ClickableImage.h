#pragma once

#include <QPixmap>
#include <QWidget>

// An image that can be clicked. Its file has two pixels for each one that is shown, so that it is
// sharp on high-resolution screens.
class ClickableImage final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString source READ source WRITE setSource)

public:
    using QWidget::QWidget;

    QString source() const { return m_source; }
    void setSource(const QString &path);

    QSize sizeHint() const override;

Q_SIGNALS:
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_source;
    QPixmap m_image;
};
