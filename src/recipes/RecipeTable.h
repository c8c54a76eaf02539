#pragma once

#include <QTreeView>

// A table of rows, whose first two columns grow with it beyond its first size. It can say in grey
// why it is empty, and letters that are typed look for the first column wherever the row was
// clicked.
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
