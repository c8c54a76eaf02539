#pragma once

#include <QMdiArea>

// A QMdiArea that shows a text while no child window is visible.
class PlaceholderMdiArea final : public QMdiArea
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    using QMdiArea::QMdiArea;

    QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text); // also the description for screen readers

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override; // watches the children

private:
    bool hasVisibleChild() const;

    QString m_placeholderText;
};
