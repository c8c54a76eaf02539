#pragma once

#include "search/SearchQuery.h"

#include <QListView>
#include <QStyledItemDelegate>

// Draws rows of one-line texts, elided if they are too long. All rows have the height of the
// view's font and all texts of a row the same baseline, even if a glyph comes from another font.
// A selection is pale unless the view has the focus. Letters that a query finds are marked.
class TextRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    // The query whose words are marked. The caller updates the view.
    void setQuery(const SearchQuery &query) { m_query = query; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    static int rowHeight(const QFontMetrics &font);
    static int margin(const QWidget &view); // in pixels, on either side of a text

private:
    SearchQuery m_query;
};

// Returns where in the viewport the placeholder text is written.
QRect placeholderRect(const QAbstractItemView &view, const QString &text);

// Call in the view's paintEvent. If the view has no rows, writes the text where they would be, in
// the palette's colour for placeholder text, and frames the view if it has the focus.
void paintPlaceholderText(QAbstractItemView &view, const QString &text);

// A list of one-line texts from any model. It shows the placeholder text while it is empty, and the
// whole of an elided text as a tooltip. With MultiSelection, typing a letter moves to a row without
// selecting it.
class TextListView : public QListView
{
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

public:
    explicit TextListView(QWidget *parent = nullptr);

    QString placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString &text) { m_placeholderText = text; }

    QSize sizeHint() const override; // 14 rows of 45 characters

protected:
    virtual QString textWhenEmpty() const { return m_placeholderText; } // shown without rows
    QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex &index, const QEvent *event = nullptr) const override;
    void paintEvent(QPaintEvent *event) override;
    bool viewportEvent(QEvent *event) override;

private:
    QString elidedTextAt(QPoint position) const; // the whole text; empty if it is not elided

    QString m_placeholderText;
};
