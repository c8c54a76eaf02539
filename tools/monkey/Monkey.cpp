#include "Monkey.h"

#include "data/TypesAndRatings.h"
#include "frame/ChildWindow.h"
#include "search/SearchQuery.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

QString describe(const QWidget &widget)
{
    const QWidget *window = &widget;
    while (window->parentWidget() && !qobject_cast<const ChildWindow *>(window))
        window = window->parentWidget();
    return u"%1 of %2"_s.arg(widget.objectName(), window->objectName());
}

// Whether the middle of the widget can be reached by the mouse.
bool isReachable(const QWidget &widget)
{
    const QPoint middle = widget.mapTo(widget.window(), widget.rect().center());
    return widget.isVisible() && widget.window()->childAt(middle) == &widget;
}

QPoint positionInWindow(const QWidget &widget)
{
    return widget.mapTo(widget.window(), widget.rect().center());
}

} // namespace

Monkey::Monkey(const QString &path, unsigned seed, Report report)
    : m_report(std::move(report))
    , m_random(seed)
    , m_other(path, m_random)
    , m_interaction(m_random)
    , m_main(m_interaction)
    , m_model(m_other)
{
    m_interaction.answered = [this](const AnsweredBox &box) {
        m_report(u"  box \"%1\", \"%2\": %3"_s.arg(box.title, box.text, box.answer));
        m_model.onAnswered(box);
    };
    m_interaction.whileOpen = [this] { writeWhileBoxIsOpen(); };
    qApp->installEventFilter(this);
    m_main.MDIForm_Load({});
    m_main.resize(1100, 800);
    m_main.show();
    m_main.activateWindow();
    if (!QTest::qWaitForWindowActive(&m_main))
        qFatal("the window does not become active");
    send(Qt::Key_F5);
    waitUntilIdle();
}

// A nested event loop would wait for ever.
bool Monkey::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show) {
        if (auto *dialog = qobject_cast<QDialog *>(watched))
            QMetaObject::invokeMethod(dialog, &QDialog::reject, Qt::QueuedConnection);
    }
    return false;
}

QString Monkey::step()
{
    constexpr int longestLock = 3; // steps
    constexpr int integrityInterval = 50; // steps
    if (m_other.isLocked() && ++m_lockedSteps >= longestLock) {
        m_other.setLocked(false);
        m_report(u"another program unlocks the file"_s);
    }
    const Step step = chooseStep();
    m_report(step.text);
    step.take();
    waitUntilIdle();
    m_model.check(step.text);
    if (++m_steps % integrityInterval == 0) {
        if (QString integrity = m_other.integrity(); integrity != "ok"_L1)
            return integrity;
    }
    return m_model.fault().isEmpty() ? m_fault : m_model.fault();
}

Monkey::Step Monkey::chooseStep()
{
    static constexpr std::pair<int, Step (Monkey::*)()> steps[] = {
        {24, &Monkey::clickButton},        {20, &Monkey::typeText},
        {16, &Monkey::pressKey},           {10, &Monkey::pressAccessKey},
        {6, &Monkey::pressMenuKey},        {8, &Monkey::burst},
        {4, &Monkey::clickAnywhere},       {8, &Monkey::doubleClickRecipe},
        {3, &Monkey::pressByScreenReader}, {2, &Monkey::turnWheel},
        {6, &Monkey::writeByOther},        {10, &Monkey::find},
    };
    int sum = 0;
    for (const auto &[weight, step] : steps)
        sum += weight;
    int chosen = m_random.below(sum);
    for (const auto &[weight, step] : steps) {
        if (chosen < weight)
            return (this->*step)();
        chosen -= weight;
    }
    return {};
}

// The other program

Monkey::Step Monkey::writeByOther()
{
    if (m_other.isLocked())
        return pressKey();
    if (m_random.oneIn(3)) {
        return {u"another program locks the file"_s, [this] {
                    m_other.setLocked(true);
                    m_lockedSteps = 0;
                }};
    }
    const QString statement = m_other.write(m_model.tables());
    m_model.takeOver();
    return {u"another program: "_s + statement, [] {}};
}

// Only before the program has written anything in answer to the press.
void Monkey::writeWhileBoxIsOpen()
{
    if (m_random.oneIn(12) && m_model.isPressing() && !m_model.hasBoxInPress()
        && !m_other.isLocked()) {
        m_model.check(u"the box"_s);
        m_other.write(m_model.tables());
        m_model.takeOver();
    }
}

// Keys

Monkey::Step Monkey::pressMenuKey()
{
    static constexpr int keys[] = {Qt::Key_F5, Qt::Key_F5, Qt::Key_F5, Qt::Key_F6, Qt::Key_F6,
                                   Qt::Key_F7, Qt::Key_F7, Qt::Key_F9, Qt::Key_F4, Qt::Key_F11};
    const int key = m_random.oneOf(keys);
    return {QKeySequence(key).toString(), [this, key] { send(key); }};
}

Monkey::Step Monkey::typeText()
{
    QString text = m_random.name();
    if (m_random.oneIn(2))
        text = QString::number(m_random.below(100));
    else if (m_random.oneIn(6))
        text = u"x"_s;
    const bool replaces = m_random.oneIn(2);
    QList<QWidget *> edits;
    if (const auto *child = m_main.findChild<QMdiArea *>()->activeSubWindow()) {
        for (QWidget *widget : child->findChildren<QWidget *>()) {
            const bool isEdit =
                qobject_cast<QLineEdit *>(widget) || qobject_cast<QPlainTextEdit *>(widget);
            if (isEdit && widget->isVisible())
                edits += widget;
        }
    }
    QWidget *edit = edits.isEmpty() || m_random.oneIn(4) ? nullptr : m_random.oneOf(edits);
    return {u"type \"%1\" into %2%3"_s.arg(text, edit ? describe(*edit) : u"the focus"_s,
                                           replaces ? u" instead of its text"_s : QString()),
            [this, text, replaces, edit] {
                if (edit)
                    edit->setFocus(Qt::TabFocusReason);
                if (replaces)
                    send(Qt::Key_A, Qt::ControlModifier);
                sendText(text);
            }};
}

Monkey::Step Monkey::pressKey()
{
    static const QList<QKeyCombination> keys = {
        Qt::Key_Tab,          Qt::Key_Tab,          Qt::SHIFT | Qt::Key_Backtab,
        Qt::Key_Up,           Qt::Key_Down,         Qt::Key_Down,
        Qt::Key_Left,         Qt::Key_Right,        Qt::Key_Return,
        Qt::Key_Return,       Qt::Key_Return,       Qt::Key_Escape,
        Qt::Key_Space,        Qt::Key_Delete,       Qt::Key_Backspace,
        Qt::Key_Home,         Qt::Key_End,          Qt::CTRL | Qt::Key_Tab,
        Qt::CTRL | Qt::Key_W, Qt::CTRL | Qt::Key_Z, Qt::ALT | Qt::Key_Down,
        Qt::CTRL | Qt::Key_F};
    const QKeyCombination key = m_random.oneOf(keys);
    return {QKeySequence(key).toString(),
            [this, key] { send(key.key(), key.keyboardModifiers()); }};
}

// The list of recipes is read again at each letter, so that it shows what the file holds.
Monkey::Step Monkey::find()
{
    static constexpr int keys[] = {Qt::Key_Return, Qt::Key_Down, Qt::Key_Up, Qt::Key_Escape};
    const int key = m_random.oneOf(keys);
    const QString typed = query();
    return {u"find \"%1\", %2"_s.arg(typed, QKeySequence(key).toString()), [this, typed, key] {
                const int boxes = m_model.answeredBoxes();
                send(Qt::Key_F, Qt::ControlModifier);
                sendText(typed);
                const auto *active = m_main.findChild<QMdiArea *>()->activeSubWindow();
                if (!typed.isEmpty() && active
                    && active->widget()->objectName() == "frmRecipes"_L1) {
                    waitUntilIdle();
                    if (m_model.answeredBoxes() == boxes && !m_other.isLocked())
                        checkFound(*active);
                }
                send(key);
            }};
}

// Returns the beginning of a name, or of two, of which the second may be excluded; or nothing,
// which leaves what the find bar holds.
QString Monkey::query()
{
    const auto word = [this] {
        const QString name = m_random.name().section(u' ', 0, 0);
        return name.first(m_random.below(3) + 1);
    };
    if (m_random.oneIn(4))
        return {};
    QString words = word();
    if (m_random.oneIn(3)) {
        words += m_random.oneIn(2) ? u" "_s : u" -"_s;
        words += word();
    }
    return words;
}

void Monkey::checkFound(const QWidget &list)
{
    const auto *field = list.findChild<QLineEdit *>(u"txtFind"_s);
    if (!field->isVisible()) // the keys have gone to no control
        return;
    const Tables &tables = m_model.tables();
    const QString typed = field->text();
    const SearchQuery query(typed);
    QStringList expected;
    for (const auto &[key, recipe] : tables.recipes) {
        QStringList texts{recipe.name, recipe.description, recipe.author,
                          recipeTypes().value(recipe.type)};
        if (const auto links = tables.ingredientLinks.find(key);
            links != tables.ingredientLinks.end()) {
            for (const Link &link : links->second) {
                if (const auto row = tables.ingredients.find(link.key);
                    row != tables.ingredients.end())
                    texts += row->second.name;
            }
        }
        if (query.matches(texts.join(u'\n')))
            expected += recipe.name;
    }
    const QAbstractItemModel &table =
        *list.findChild<QAbstractItemView *>(u"lvwRecipes"_s)->model();
    QStringList shown;
    for (int row = 0; row < table.rowCount(); ++row)
        shown += table.index(row, 0).data().toString();
    expected.sort();
    shown.sort();
    if (shown != expected)
        m_fault =
            u"\"%1\" finds %2 and not %3"_s.arg(typed, shown.join(u", "_s), expected.join(u", "_s));
}

Monkey::Step Monkey::pressAccessKey()
{
    QList<QAbstractButton *> found = buttons(true);
    found.removeIf([](const QAbstractButton *button) {
        return QKeySequence::mnemonic(button->text()).isEmpty();
    });
    if (found.isEmpty())
        return pressMenuKey();
    const QAbstractButton *button = m_random.oneOf(found);
    const int key = QKeySequence::mnemonic(button->text())[0].key();
    return {u"Alt+%1 for %2"_s.arg(QKeySequence(key).toString(), describe(*button)),
            [this, key] { send(key, Qt::AltModifier); }};
}

// Keys that arrive faster than the program handles them.
Monkey::Step Monkey::burst()
{
    QStringList texts;
    QList<std::function<void()>> actions;
    for (int i = m_random.below(3) + 2; i > 0; --i) {
        static constexpr Step (Monkey::*choices[])() = {&Monkey::pressMenuKey, &Monkey::pressKey,
                                                        &Monkey::pressAccessKey,
                                                        &Monkey::pressAccessKey};
        const Step step = (this->*m_random.oneOf(choices))();
        texts += step.text;
        actions += step.take;
    }
    if (m_random.oneIn(2)) {
        const QString text = m_random.name();
        texts += u"type \"%1\""_s.arg(text);
        actions += [this, text] { sendText(text); };
    }
    return {u"at once: "_s + texts.join(", "_L1), [actions] {
                for (const auto &action : actions)
                    action();
            }};
}

QWidget *Monkey::keyTarget()
{
    QWidget *window = QApplication::activePopupWidget();
    if (!window)
        window = &m_main;
    return window->focusWidget() ? window->focusWidget() : window;
}

void Monkey::send(int key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(keyTarget(), static_cast<Qt::Key>(key), modifiers);
}

// Views search for what is typed within an interval, which main() sets to 0: each letter must come
// later than the one before for the run to be repeatable.
void Monkey::sendText(const QString &text)
{
    for (const QChar letter : text) {
        QThread::msleep(2);
        QTest::keyClick(keyTarget(), letter.toLatin1());
    }
}

// Mouse and screen reader

QList<QAbstractButton *> Monkey::buttons(bool inActiveWindow)
{
    const auto *area = m_main.findChild<QMdiArea *>();
    QList<QAbstractButton *> found;
    for (const QMdiSubWindow *child : area->subWindowList()) {
        if (inActiveWindow && child != area->activeSubWindow())
            continue;
        for (QAbstractButton *button : child->findChildren<QAbstractButton *>()) {
            if (button->isVisible() && button->isEnabled() && !button->objectName().isEmpty())
                found += button;
        }
    }
    return found;
}

Monkey::Step Monkey::clickButton()
{
    QList<QAbstractButton *> found = buttons(!m_random.oneIn(6));
    found.removeIf([](const QAbstractButton *button) { return !isReachable(*button); });
    if (found.isEmpty())
        return pressMenuKey();
    QAbstractButton *button = m_random.oneOf(found);
    static const QStringList leaving = {u"cmdDone"_s, u"cmdClose"_s, u"cmdCancel"_s};
    if (leaving.contains(button->objectName()) && m_random.oneIn(2))
        button = m_random.oneOf(found);
    return {u"click on "_s + describe(*button), [this, position = positionInWindow(*button)] {
                QTest::mouseClick(m_main.windowHandle(), Qt::LeftButton, {}, position);
            }};
}

Monkey::Step Monkey::clickAnywhere()
{
    const QPoint position(m_random.below(m_main.width()), m_random.below(m_main.height()));
    const QWidget *widget = m_main.childAt(position);
    // The title bars stay alone: a window that is moved or minimised is not the subject.
    if (!widget || qobject_cast<const QMdiSubWindow *>(widget))
        return clickButton();
    return {u"click at %1, %2"_s.arg(position.x()).arg(position.y()), [this, position] {
                QTest::mouseClick(m_main.windowHandle(), Qt::LeftButton, {}, position);
            }};
}

Monkey::Step Monkey::doubleClickRecipe()
{
    auto *table = m_main.findChild<QAbstractItemView *>(u"lvwRecipes"_s);
    if (!table || !table->isVisible())
        return {u"F5"_s, [this] { send(Qt::Key_F5); }};
    const QPoint inside(m_random.below(table->viewport()->width()),
                        m_random.below(table->viewport()->height()));
    const QModelIndex row = table->indexAt(inside);
    const QPoint position = table->viewport()->mapTo(&m_main, inside);
    if (!row.isValid() || m_main.childAt(position) != table->viewport())
        return clickButton();
    const QString name = row.siblingAtColumn(0).data().toString();
    return {u"double click on \"%1\""_s.arg(name), [this, position, name] {
                const int boxes = m_model.answeredBoxes();
                QTest::mouseDClick(m_main.windowHandle(), Qt::LeftButton, {}, position);
                waitUntilIdle();
                if (m_model.answeredBoxes() == boxes)
                    checkOpened(name);
            }};
}

// A row may show a name that the recipe no longer has, and a window may keep the activation.
void Monkey::checkOpened(const QString &name)
{
    const auto *active = m_main.findChild<QMdiArea *>()->activeSubWindow();
    const QWidget *window = active ? active->widget() : nullptr;
    if (window && window->objectName() == "frmRecipe"_L1 && window->windowTitle() != name
        && findName(m_model.tables().recipes, name, 0) != 0)
        m_fault =
            u"\"%1\" was double-clicked and \"%2\" is shown"_s.arg(name, window->windowTitle());
}

Monkey::Step Monkey::pressByScreenReader()
{
    const QList<QAbstractButton *> found = buttons(false);
    if (found.isEmpty())
        return pressMenuKey();
    QAbstractButton *button = m_random.oneOf(found);
    return {u"screen reader presses "_s + describe(*button), [button] {
                QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(button);
                interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            }};
}

Monkey::Step Monkey::turnWheel()
{
    QList<QComboBox *> boxes = m_main.findChildren<QComboBox *>();
    boxes.removeIf([](const QComboBox *box) { return !isReachable(*box); });
    if (boxes.isEmpty())
        return pressKey();
    const QComboBox *box = m_random.oneOf(boxes);
    const QPoint position = positionInWindow(*box);
    return {u"wheel over "_s + describe(*box), [this, position] {
                QWheelEvent wheel(position, m_main.mapToGlobal(position), {}, {0, -120},
                                  Qt::NoButton, {}, Qt::NoScrollPhase, false);
                QApplication::sendEvent(m_main.windowHandle(), &wheel);
            }};
}

void Monkey::waitUntilIdle()
{
    // Without a window manager no window is active after a dialog is closed.
    if (!QApplication::activeWindow())
        m_main.activateWindow();
    constexpr int longest = 1000; // milliseconds
    for (int i = 0; i < longest; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!isAnyButtonDown())
            return;
        QThread::msleep(1);
    }
}

bool Monkey::isAnyButtonDown() const
{
    const auto all = m_main.findChildren<QAbstractButton *>();
    return std::any_of(all.begin(), all.end(), [](auto *button) { return button->isDown(); });
}
