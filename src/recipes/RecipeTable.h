#pragma once

#include <QTreeView>

// A table of rows. Its first two columns share the width that it gains beyond its size hint. It can
// show a grey placeholder text while it is empty. Typed letters search the first column, whichever
// column was clicked.
class RecipeTable final : public QTreeView
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    explicit RecipeTable(QWidget *parent = nullptr);

    QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text) { m_placeholderText = text; }

    void keyboardSearch(const QString &letters) override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QString m_placeholderText;
};
