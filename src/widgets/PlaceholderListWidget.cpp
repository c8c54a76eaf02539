#include "widgets/PlaceholderListWidget.h"

#include "widgets/TextListView.h"

#include <QCache>

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

// Remembers the sizes of texts. QListView asks for the sizes of all rows whenever one changes, and
// to wrap a text costs more than all else that is done for a row.
class SizeCachingDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const Look look(option.font, option.fontMetrics.lineSpacing(), option.widget->style());
        if (look != m_look) {
            m_sizes.clear();
            m_look = look;
        }
        const Key key(index.data().toString(), option.rect.width());
        if (const QSize *known = m_sizes.object(key))
            return *known;
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        m_sizes.insert(key, new QSize(size)); // the cache takes ownership
        return size;
    }

private:
    using Look = std::tuple<QFont, int, const QStyle *>; // the font, its line spacing, the style
    using Key = std::pair<QString, int>; // the text and the width in which it is wrapped

    static constexpr qsizetype capacity = 4096;
    mutable QCache<Key, QSize> m_sizes{capacity};
    mutable Look m_look;
};

} // namespace

PlaceholderListWidget::PlaceholderListWidget(QWidget *parent)
    : QListWidget(parent)
{
    setItemDelegate(new SizeCachingDelegate(this));
}

void PlaceholderListWidget::setPlaceholderText(const QString &text)
{
    setAccessibleDescription(text);
    viewport()->update();
}

void PlaceholderListWidget::setTexts(const QStringList &texts)
{
    clear();
    addItems(texts);
    scrollToTop();
}

void PlaceholderListWidget::updateTexts(const QStringList &texts)
{
    const int before = count();
    const auto after = static_cast<int>(texts.size());
    const int shorter = std::min(before, after);
    int head = 0;
    while (head < shorter && item(head)->text() == texts[head])
        ++head;
    int tail = 0;
    while (tail < shorter - head && item(before - tail - 1)->text() == texts[after - tail - 1])
        ++tail;
    model()->removeRows(head, before - head - tail);
    insertItems(head, texts.sliced(head, after - head - tail));
}

void PlaceholderListWidget::paintEvent(QPaintEvent *event)
{
    QListWidget::paintEvent(event);
    paintPlaceholderText(*this, accessibleDescription());
}
