#pragma once

#include <QTreeView>

#include <array>

// A table of rows. Its first two columns share the width that it has beyond its size hint; a column
// that the user has resized keeps its width. It can show a grey placeholder text while it is empty.
// Typed letters search the first column, whichever column was clicked.
class RecipeTable final : public QTreeView
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    explicit RecipeTable(QWidget *parent = nullptr);

    QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text) { m_placeholderText = text; }

    void setColumnWidths(const QList<int> &widths); // in pixels, at the size hint

    void keyboardSearch(const QString &letters) override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void onSectionResized(int column, int oldWidth, int width);
    int automaticWidth(int column) const;

    static constexpr int stretchingColumns = 2;

    QString m_placeholderText;
    QList<int> m_widths; // at the size hint
    std::array<bool, stretchingColumns> m_isUserWidth{};
};
