#pragma once

#include <QListWidget>

// A list of texts, which may be wrapped. While it is empty, it shows a grey placeholder text, which
// is also its description for screen readers.
class PlaceholderListWidget final : public QListWidget
{
    Q_OBJECT

public:
    explicit PlaceholderListWidget(QWidget *parent = nullptr);

    void setPlaceholderText(const QString &text);

    // Lists other texts, from the first one; none is selected.
    void setTexts(const QStringList &texts);
    // Lists what the texts have become. The scroll position stays, and rows before and after the
    // first and the last change stay selected.
    void updateTexts(const QStringList &texts);

protected:
    void paintEvent(QPaintEvent *event) override;
};
