#pragma once

#include <QTreeView>

#include <array>

class QPushButton;
class SearchQuery;
class TextRowDelegate;

// A table of rows. Its first two columns share the width that it has beyond its size hint; a column
// that the user has resized keeps its width. In these two columns it marks the letters that a query
// finds. It can show a grey placeholder text while it is empty, and a button below it.
// Typed letters search the first column, whichever column was clicked. Rows are numbered from 0.
class RecipeTable final : public QTreeView
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    explicit RecipeTable(QWidget *parent = nullptr);

    QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text); // also the description for screen readers

    // The button below the placeholder text. Without a caption it is hidden.
    QPushButton &placeholderButton() const { return *m_placeholderButton; }
    void setPlaceholderButton(const QString &caption);

    void mark(const SearchQuery &query);

    // In pixels, at the size hint. Call it after setModel() and before the table is shown.
    void setColumnWidths(const QList<int> &widths);

    int firstVisibleRow() const;
    int rowAt(QPoint globalPosition) const; // -1 if there is no visible row
    void selectRow(int row); // does not scroll; selects none if there is no such row
    // Scrolls until there are this many rows above the row in the view, as far as it can.
    void scrollToRow(int row, int rowsAbove);
    void moveSelection(Qt::Key key); // as an arrow or page key, Home or End does
    // The next mouse press has no effect.
    void discardNextPress() { m_discardsPress = true; }

    void keyboardSearch(const QString &letters) override;
    QSize sizeHint() const override;

Q_SIGNALS:
    void emptyTableDoubleClicked();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void onSectionResized(int column, int oldWidth, int width);
    int automaticWidth(int column) const;
    void placeButton();

    static constexpr int stretchingColumns = 2;

    TextRowDelegate *m_markingDelegate; // of the stretching columns
    QPushButton *m_placeholderButton;
    QString m_placeholderText;
    QList<int> m_widths; // at the size hint
    std::array<bool, stretchingColumns> m_isUserWidth{};
    bool m_discardsPress = false;
};
