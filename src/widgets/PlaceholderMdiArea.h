#pragma once

#include <QMdiArea>

// An area of child windows that tells what can be done while it shows none.
class PlaceholderMdiArea final : public QMdiArea
{
    Q_OBJECT
    Q_PROPERTY(QString hint READ hint WRITE setHint)

public:
    using QMdiArea::QMdiArea;

    QString hint() const { return m_hint; }
    void setHint(const QString &hint); // a screen reader has it as the area's description

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override; // of each child

private:
    bool showsChild() const;

    QString m_hint;
};
