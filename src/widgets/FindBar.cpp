#include "widgets/FindBar.h"

#include "ui_FindBar.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLocale>
#include <QShortcut>

#include <algorithm>

FindBar::FindBar(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::FindBar>())
{
    constexpr int longest = 200; // UTF-16 code units, more than a title has
    m_ui->setupUi(this);
    // LineEdit::setMaxInputLength() would make the field as wide as its longest text.
    m_ui->txtFind->setMaxLength(longest);
    m_ui->txtFind->installEventFilter(this);
    setFocusProxy(m_ui->txtFind);
    hide();
    parent->installEventFilter(this);
    new QShortcut(QKeySequence::Find, parent, this, &FindBar::open, Qt::WidgetWithChildrenShortcut);
    connect(m_ui->txtFind, &QLineEdit::textChanged, this, &FindBar::textChanged);
    connect(m_ui->cmdCloseFind, &QToolButton::clicked, this, &FindBar::closeBar);
}

FindBar::~FindBar() = default;

QString FindBar::placeholderText() const
{
    return m_ui->txtFind->placeholderText();
}

void FindBar::setPlaceholderText(const QString &text)
{
    m_ui->txtFind->setPlaceholderText(text);
    m_ui->txtFind->setAccessibleDescription(text);
}

QString FindBar::text() const
{
    return m_ui->txtFind->text();
}

void FindBar::showCount(qsizetype found, qsizetype total)
{
    const QLocale english(QLocale::English);
    const auto count = [&](qsizetype shown) {
        return shown == 0 ? tr("None of %1").arg(english.toString(total))
                          : tr("%1 of %2").arg(english.toString(shown), english.toString(total));
    };
    // The field keeps its width while the count changes.
    const int widest = std::max(m_ui->lblFound->fontMetrics().horizontalAdvance(count(total)),
                                m_ui->lblFound->fontMetrics().horizontalAdvance(count(0)));
    m_ui->lblFound->setMinimumWidth(widest);
    announce(count(found));
}

void FindBar::clearCount()
{
    announce({});
}

// A screen reader says the changed description of the control that has the focus.
void FindBar::announce(const QString &count)
{
    m_ui->lblFound->setText(count);
    m_ui->txtFind->setAccessibleDescription(count.isEmpty() ? placeholderText() : count);
}

void FindBar::announceRow()
{
    const QString row = m_view->currentIndex().siblingAtColumn(0).data().toString();
    const QString count = m_ui->lblFound->text();
    if (!row.isEmpty())
        m_ui->txtFind->setAccessibleDescription(count.isEmpty() ? row
                                                                : tr("%1, %2").arg(count, row));
}

void FindBar::open()
{
    show();
    m_ui->txtFind->setFocus(Qt::ShortcutFocusReason);
    m_ui->txtFind->selectAll();
}

void FindBar::clear()
{
    m_ui->txtFind->clear();
}

// QWidget::hide() would pass the focus to the next control in tab order.
void FindBar::closeBar()
{
    if (!isOpen())
        return;
    if (isAncestorOf(window()->focusWidget()))
        m_view->setFocus();
    hide();
    m_ui->txtFind->clear();
    clearCount();
}

// A key that a control ignores goes to the control's parent, and to the parent of the bar in the
// end.
bool FindBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto &press = static_cast<const QKeyEvent &>(*event);
    if (watched == m_ui->txtFind)
        return requestMove(press);
    if (!isOpen() || !press.matches(QKeySequence::Cancel))
        return false;
    closeBar();
    return true;
}

bool FindBar::requestMove(const QKeyEvent &press)
{
    const Qt::KeyboardModifiers modifiers = press.modifiers() & ~Qt::KeypadModifier;
    switch (press.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (modifiers != Qt::NoModifier)
            return false;
        break;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (modifiers != Qt::ControlModifier)
            return false;
        break;
    default:
        return false;
    }
    Q_EMIT moveRequested(static_cast<Qt::Key>(press.key()));
    announceRow();
    return true;
}

// QToolButton ignores Enter.
void FindBar::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        && (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (isEnter && m_ui->cmdCloseFind->hasFocus())
        closeBar();
    else
        QWidget::keyPressEvent(event);
}
