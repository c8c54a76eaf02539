#include "catalogs/CatalogWindow.h"

#include "data/Criterion.h"
#include "data/DatabaseError.h"
#include "data/DatabaseFunctions.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "widgets/LineEdit.h"
#include "widgets/ListBox.h"

#include <QPushButton>

QStringList textsOf(RecordCursor &cursor, QLatin1StringView field)
{
    const RowSet &rows = cursor.rows();
    const int column = rows.columnNumber(field);
    QStringList texts;
    texts.reserve(rows.size());
    for (qsizetype row = 0; row < rows.size(); ++row)
        texts.append(toVariant(rows.cell(row, column)).toString());
    return texts;
}

void CatalogWindow::setCatalog(const Catalog &catalog)
{
    m_catalog = catalog;
    setDefaultButton(m_catalog.save);
    setAutoRepeatButtons({m_catalog.previous, m_catalog.next});
    using Window = CatalogWindow;
    connect(m_catalog.previous, &QPushButton::clicked, this, &Window::cmdPrevious_Click);
    connect(m_catalog.next, &QPushButton::clicked, this, &Window::cmdNext_Click);
    connect(m_catalog.newRow, &QPushButton::clicked, this, &Window::cmdNew_Click);
    connect(m_catalog.save, &QPushButton::clicked, this, &Window::cmdSave_Click);
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
    m_catalog.list->selectRow(0);
    if (m_catalog.list->count() == 0)
        m_catalog.name->setFocus();
}

void CatalogWindow::refresh()
{
    if (!m_changed)
        Form_Activate();
}

void CatalogWindow::fillList()
{
    m_catalog.list->setTexts({});
    m_sources.requery();
    m_catalog.list->setTexts(textsOf(rows(), m_catalog.nameField));
    if (rows().RecordCount() == 0 && m_currentId != 0)
        showNew();
}

void CatalogWindow::goToSelected()
{
    rows().FindFirst(
        criterion(m_catalog.nameField, Comparison::Equal, m_catalog.list->selectedText()));
}

void CatalogWindow::goToShown()
{
    rows().FindFirst(criterion(m_catalog.keyField, m_currentId));
    if (rows().NoMatch())
        throw RowNotFound();
}

int CatalogWindow::shownRow() const
{
    const RowSet &catalog = rows().rows();
    const int column = catalog.columnNumber(m_catalog.keyField);
    for (qsizetype row = 0; row < catalog.size(); ++row) {
        if (catalog.cell(row, column) == Cell(m_currentId))
            return static_cast<int>(row);
    }
    return -1;
}

void CatalogWindow::showKeyAndName()
{
    m_currentId = ValueOrDefault(rows().value(m_catalog.keyField), 0).toLongLong();
    m_catalog.name->showStored(
        ValueOrDefault(rows().value(m_catalog.nameField), QString()).toString());
}

void CatalogWindow::showNew()
{
    m_currentId = 0;
    m_catalog.name->showStored({});
    setChanged(false);
}

// Editing

void CatalogWindow::setChanged(bool changed)
{
    m_changed = changed;
    m_catalog.save->setEnabled(changed);
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
    }
    m_catalog.name->setFocus();
}

// Storing

void CatalogWindow::cmdSave_Click()
{
    save();
    m_catalog.list->setFocus();
}

void CatalogWindow::store()
{
    try {
        write();
    } catch (const RowNotFound &) {
        Form_Activate();
        throw;
    }
    fillList();
    m_catalog.list->selectRow(shownRow());
    setChanged(false);
}

void CatalogWindow::write()
{
    RecordCursor &row = rows();
    const bool isNew = m_currentId == 0;
    if (isNew) {
        row.AddNew();
    } else {
        goToShown();
        row.Edit();
    }
    setFields(row, isNew);
    row.Update();
    if (isNew) {
        row.MoveLast();
        m_currentId = row.value(m_catalog.keyField).toLongLong();
    }
}
