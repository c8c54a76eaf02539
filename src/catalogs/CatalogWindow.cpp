#include "catalogs/CatalogWindow.h"

#include "data/Criterion.h"
#include "data/Database.h"
#include "data/DatabaseError.h"
#include "data/DatabaseFunctions.h"
#include "data/GeneralFuctions.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "widgets/LineEdit.h"
#include "widgets/ListBox.h"
#include "widgets/ListBoxFinder.h"
#include "widgets/StandardWidgets.h"
#include "widgets/WarningFrame.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>

QList<ListBox::Row> namesOf(RecordCursor &cursor, QLatin1StringView keyField,
                            QLatin1StringView nameField)
{
    const RowSet &rows = cursor.rows();
    const int key = rows.columnNumber(keyField);
    const int name = rows.columnNumber(nameField);
    QList<ListBox::Row> names;
    names.reserve(rows.size());
    for (qsizetype row = 0; row < rows.size(); ++row)
        names.append({toVariant(rows.cell(row, name)).toString(),
                      toVariant(rows.cell(row, key)).toLongLong()});
    return names;
}

void CatalogWindow::setCatalog(const Catalog &catalog)
{
    m_catalog = catalog;
    m_catalog.others += {m_catalog.name, m_catalog.previous, m_catalog.next, m_catalog.newRow};
    m_finder = new ListBoxFinder(*m_catalog.findBar, *m_catalog.list);
    m_nameWarning = new WarningFrame(*m_catalog.name);
    QSizePolicy policy = m_catalog.newMark->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_catalog.newMark->setSizePolicy(policy);
    m_catalog.newMark->setForegroundRole(QPalette::PlaceholderText);
    enableControls();

    setDefaultButton(m_catalog.save);
    setAutoRepeatButtons({m_catalog.previous, m_catalog.next});
    using Window = CatalogWindow;
    connect(m_catalog.previous, &QPushButton::clicked, this, &Window::cmdPrevious_Click);
    connect(m_catalog.next, &QPushButton::clicked, this, &Window::cmdNext_Click);
    connect(m_catalog.newRow, &QPushButton::clicked, this, &Window::cmdNew_Click);
    connect(m_catalog.save, &QPushButton::clicked, this, &Window::cmdSave_Click);
    connect(m_catalog.list, &ListBox::rowSelected, this, &Window::onRowSelected);
    connect(m_finder, &ListBoxFinder::narrowed, this, &Window::onNarrowed);
    connect(m_finder, &ListBoxFinder::entered, this, &Window::onFindEntered);
    connect(m_finder, &ListBoxFinder::moved, this, &Window::onFindMoved);
}

RecordCursor &CatalogWindow::rows() const
{
    return m_catalog.source->Recordset();
}

// Loading and showing

void CatalogWindow::openDataSources()
{
    m_sources.open();
}

void CatalogWindow::Form_Activate()
{
    fillList();
    selectNear(0);
    if (m_catalog.list->count() == 0)
        m_catalog.name->setFocus();
}

void CatalogWindow::refresh()
{
    if (!m_changed || !m_isRead)
        Form_Activate();
}

void CatalogWindow::fillList()
{
    try {
        m_sources.requery();
        m_catalog.list->setRows(namesOf(rows(), m_catalog.keyField, m_catalog.nameField));
    } catch (...) {
        showUnread();
        throw;
    }
    m_isRead = true;
    enableControls();
    if (m_catalog.list->count() == 0 && m_currentId != 0)
        showNew();
}

void CatalogWindow::selectNear(int row)
{
    ListBox &list = *m_catalog.list;
    const int shown = list.nearestShownRow(row);
    list.selectRow(shown >= 0 ? shown : std::min(row, list.count() - 1));
    m_finder->revealSelected();
}

// A disabled control would pass the focus on to Done, which the next Enter would press.
void CatalogWindow::showUnread()
{
    m_isRead = false;
    m_catalog.list->setFocus();
    enableControls();
    m_catalog.list->showUnavailable(m_catalog.unreadText);
    showNone();
}

void CatalogWindow::enableControls()
{
    for (QWidget *control : std::as_const(m_catalog.others))
        control->setEnabled(m_isRead);
    setEnabledPassingFocus(*m_catalog.save, m_isRead && m_changed, *m_catalog.list);
    m_catalog.newMark->setVisible(m_isRead && m_currentId == 0);
}

// For rows that another program has added: keeps the selection and what is on the screen.
void CatalogWindow::listAgain()
{
    ListBox &list = *m_catalog.list;
    const QSignalBlocker blocker(list);
    const qint64 selected = list.selectedKey();
    list.setRows(namesOf(rows(), m_catalog.keyField, m_catalog.nameField));
    list.selectRow(list.rowOf(selected));
}

void CatalogWindow::goTo(qint64 key)
{
    rows().FindFirst(criterion(m_catalog.keyField, key));
    if (rows().NoMatch())
        throw RowNotFound();
}

void CatalogWindow::withRow(const std::function<void()> &action)
{
    try {
        action();
    } catch (const RowNotFound &) {
        Form_Activate();
        throw;
    }
}

void CatalogWindow::showRow(const std::function<void()> &action)
{
    try {
        withRow(action);
    } catch (const RowNotFound &) {
        throw;
    } catch (...) {
        showUnread();
        throw;
    }
}

void CatalogWindow::showKeyAndName()
{
    m_catalog.name->showStored(
        ValueOrDefault(rows().value(m_catalog.nameField), QString()).toString());
    m_nameWarning->showReason({});
    setCurrentId(ValueOrDefault(rows().value(m_catalog.keyField), 0).toLongLong());
}

void CatalogWindow::showNone()
{
    m_catalog.name->showStored({});
    m_nameWarning->showReason({});
    setCurrentId(0);
    setShown();
}

void CatalogWindow::setCurrentId(qint64 key)
{
    m_currentId = key;
    m_catalog.name->setAccessibleDescription(key == 0 ? m_catalog.newMark->text() : QString());
    enableControls();
}

void CatalogWindow::setShown()
{
    m_shown = fieldsOnScreen();
    setChanged(false);
}

// Editing

void CatalogWindow::setChanged(bool changed)
{
    m_changed = changed;
    enableControls();
}

QVariant CatalogWindow::shownValue(QLatin1StringView column) const
{
    const auto found = std::find_if(m_shown.begin(), m_shown.end(), [column](const Field &field) {
        return field.column == column;
    });
    return found == m_shown.end() ? QVariant() : found->shown;
}

bool CatalogWindow::isEdited() const
{
    const Fields entered = fieldsOnScreen();
    return m_currentId == 0
        || std::any_of(entered.begin(), entered.end(), [this](const Field &field) {
               return field.shown != shownValue(field.column);
           });
}

void CatalogWindow::offerToSave()
{
    if (m_changed && interaction().confirm(tr("Save Changes"), m_catalog.saveQuestion))
        save();
}

void CatalogWindow::cmdNew_Click()
{
    offerToSave();
    showNew();
    m_catalog.name->setFocus();
}

void CatalogWindow::cmdNext_Click()
{
    step(1);
}

void CatalogWindow::cmdPrevious_Click()
{
    step(-1);
}

// Starts from the selected row, since a refused save may have moved the cursor to another one.
void CatalogWindow::step(int by)
{
    if (m_catalog.list->count() > 0) {
        offerToSave();
        m_catalog.list->selectRow(m_catalog.list->selectedRow() + by);
        m_finder->revealSelected();
    }
    m_catalog.name->setFocus();
}

// Finding

void CatalogWindow::onNarrowed()
{
    m_isRowChosen = false;
}

void CatalogWindow::onRowSelected()
{
    m_isRowChosen = true;
}

// The selection does not follow what is typed into the find bar, since the fields may have been
// edited. Enter shows what is found best, unless a row has been selected since then.
void CatalogWindow::onFindEntered()
{
    if (frame().input().isAutoRepeat())
        return;
    onFindMoved(m_isRowChosen ? m_catalog.list->selectedRow() : m_finder->bestRow());
    m_finder->setFocus();
}

// Saving may list other rows.
void CatalogWindow::onFindMoved(int row)
{
    ListBox &list = *m_catalog.list;
    const qint64 key = list.keyAt(row);
    if (key == 0 || (key == m_currentId && row == list.selectedRow()))
        return;
    offerToSave();
    list.clickRow(list.rowOf(key));
}

// Storing

void CatalogWindow::cmdSave_Click()
{
    save();
    m_finder->revealSelected();
    m_finder->setFocus();
}

QString CatalogWindow::reasonNameIsInvalid() const
{
    const QString name = m_catalog.name->text();
    if (trimSpaces(name).isEmpty())
        return tr("Not saved: type a name first.");
    if (ContainsInvalidChars(name).isEmpty())
        return tr("Not saved: a name cannot contain any of \\ / : * ? \" ' < > | ( )");
    return {};
}

void CatalogWindow::store()
{
    const QString reason = reasonNameIsInvalid();
    m_nameWarning->showReason(reason);
    const bool areOthersValid = checkFields();
    if (!reason.isEmpty() || !areOthersValid)
        return;

    std::optional<qint64> key;
    withRow([&] { key = storeRow(); });
    if (!key) {
        listAgain();
        return;
    }
    setCurrentId(*key);
    setShown();
    fillList();
    m_catalog.list->selectRow(m_catalog.list->rowOf(*key));
}

// Returns the row's key, or nothing if another row has the name.
std::optional<qint64> CatalogWindow::storeRow()
{
    Transaction transaction(m_catalog.source->Database());
    rows().Requery(); // another program may have taken the name or deleted the row
    const QString reason = reasonNameIsTaken(rows());
    m_nameWarning->showReason(reason);
    if (!reason.isEmpty())
        return {};
    const qint64 key = write();
    transaction.commit();
    return key;
}

// In the row of a stored entry only those columns are written that the user has changed or that are
// null. The others may have been changed by another program.
qint64 CatalogWindow::write()
{
    RecordCursor &row = rows();
    Fields fields = fieldsOnScreen();
    if (m_currentId == 0) {
        row.AddNew();
    } else {
        goTo(m_currentId);
        fields.removeIf([&](const Field &field) {
            return field.shown == shownValue(field.column) && row.value(field.column).isValid();
        });
        if (fields.isEmpty())
            return m_currentId;
        row.Edit();
    }
    for (const Field &field : std::as_const(fields))
        row.setValue(field.column, field.stored);
    row.Update();
    if (m_currentId != 0)
        return m_currentId;
    row.MoveLast();
    return row.value(m_catalog.keyField).toLongLong();
}
