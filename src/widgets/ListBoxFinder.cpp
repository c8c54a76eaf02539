#include "widgets/ListBoxFinder.h"

#include "search/Folding.h"
#include "widgets/FindBar.h"
#include "widgets/ListBox.h"

#include <QKeyEvent>

#include <string>

ListBoxFinder::ListBoxFinder(FindBar &bar, ListBox &list)
    : QObject(&bar)
    , m_bar(bar)
    , m_list(list)
{
    m_bar.setView(m_list);
    m_bar.focusProxy()->installEventFilter(this);
    connect(&m_bar, &FindBar::textChanged, this, &ListBoxFinder::narrow);
    connect(&m_bar, &FindBar::moveRequested, this,
            [this](Qt::Key key) { Q_EMIT moved(m_list.rowReachedBy(key)); });
    connect(m_list.model(), &QAbstractItemModel::modelReset, this, &ListBoxFinder::showCount);
}

int ListBoxFinder::bestRow() const
{
    const std::string typed = folded(m_bar.text().trimmed());
    int best = m_list.nearestShownRow(0);
    bool isBeginning = false; // of the best row's text
    for (int row = best; row >= 0 && row < m_list.count(); ++row) {
        const std::string text = m_list.isShown(row) ? folded(m_list.textAt(row)) : std::string();
        if (text == typed)
            return row;
        if (!isBeginning && text.starts_with(typed)) {
            best = row;
            isBeginning = true;
        }
    }
    return best;
}

void ListBoxFinder::setFocus()
{
    if (m_bar.isOpen())
        m_bar.open();
    else
        m_list.setFocus();
}

void ListBoxFinder::revealSelected()
{
    const int selected = m_list.selectedRow();
    if (selected >= 0 && !m_list.isShown(selected))
        m_bar.clear();
}

void ListBoxFinder::narrow(const QString &text)
{
    m_list.narrow(SearchQuery(text));
    Q_EMIT narrowed();
}

void ListBoxFinder::showCount()
{
    if (m_list.isNarrowed() && m_list.count() > 0)
        m_bar.showCount(m_list.shownCount(), m_list.count());
    else
        m_bar.clearCount();
}

bool ListBoxFinder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto &press = static_cast<const QKeyEvent &>(*event);
        const bool isEnter = press.key() == Qt::Key_Return || press.key() == Qt::Key_Enter;
        if (isEnter && (press.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier) {
            Q_EMIT entered();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
