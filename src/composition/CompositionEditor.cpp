#include "composition/CompositionEditor.h"

#include "catalogs/frmIngredient.h"
#include "catalogs/frmUtensil.h"
#include "composition/ComposedRecipe.h"
#include "data/Criterion.h"
#include "data/Database.h"
#include "data/DatabaseError.h"
#include "frame/Frame.h"
#include "interaction/ControlCharacters.h"
#include "interaction/Interaction.h"
#include "platform/UserVisibleError.h"
#include "widgets/ListBoxFinder.h"
#include "widgets/StandardWidgets.h"

#include <QPushButton>
#include <QShortcut>

#include <optional>

using namespace Qt::Literals::StringLiterals;

void CompositionEditor::setComposition(const Composition &composition)
{
    m_composition = composition;
    m_finder = new ListBoxFinder(*m_composition.findBar, *m_composition.catalogList);
    setCancelButton(m_composition.cancel);
    setCloseButton(m_composition.done);
    auto *deleteKey = new QShortcut(QKeySequence::Delete, m_composition.lineList);
    deleteKey->setContext(Qt::WidgetShortcut);
    using Window = CompositionEditor;
    connect(m_composition.add, &QPushButton::clicked, this, &Window::cmdAdd_Click);
    connect(m_composition.catalogList, &ListBox::doubleClicked, this, &Window::cmdAdd_Click);
    connect(m_composition.remove, &QPushButton::clicked, this, &Window::cmdRemove_Click);
    connect(deleteKey, &QShortcut::activated, this, &Window::cmdRemove_Click);
    connect(m_composition.cancel, &QPushButton::clicked, this, &Window::cmdCancel_Click);
    connect(m_composition.done, &QPushButton::clicked, this, &Window::cmdDone_Click);
    connect(m_finder, &ListBoxFinder::narrowed, this, &Window::selectFound);
    connect(m_finder, &ListBoxFinder::entered, this, &Window::onFindEntered);
    connect(m_finder, &ListBoxFinder::moved, this, &Window::onFindMoved);
}

void CompositionEditor::openDataSources()
{
    m_sources.open();
}

// Compares classes, not captions: the caption of the recipe window is the recipe's name, which may
// be "Utensils".
bool CompositionEditor::keepsActivationFrom(const ChildWindow &next) const noexcept
{
    return !qobject_cast<const frmIngredient *>(&next) && !qobject_cast<const frmUtensil *>(&next);
}

const ComposedRecipe &CompositionEditor::takeRecipe()
{
    const auto *shown = dynamic_cast<const ComposedRecipe *>(frame().find("frmRecipe"));
    if (!shown)
        throw platform::UserVisibleError(tr("There is no recipe open to change."));
    m_recipeId = shown->recipeId();
    m_recipes.RecordSource = u"SELECT RecipeID FROM Recipes"_s;
    return *shown;
}

void CompositionEditor::readCatalog()
{
    ListBox &list = *m_composition.catalogList;
    const qint64 selected = list.selectedKey();
    std::optional<ReadTransaction> snapshot;
    try {
        snapshot.emplace(m_composition.catalog->Database());
        m_sources.requery();
        list.setRows(namesOf(m_composition.catalog->Recordset(), m_composition.keyField,
                             m_composition.nameField));
    } catch (...) {
        setEnabledPassingFocus(*m_composition.add, false, list);
        list.showUnavailable(m_composition.unreadText);
        throw;
    }
    m_composition.add->setEnabled(true);
    if (const int row = list.rowOf(selected); list.isNarrowed() && list.isShown(row))
        list.selectRow(row);
    else
        selectFound();
    findKeys();
}

void CompositionEditor::focusCatalog()
{
    m_finder->setFocus();
}

// So that Enter adds what is found.
void CompositionEditor::selectFound()
{
    if (m_composition.catalogList->isNarrowed())
        m_composition.catalogList->selectRow(m_finder->bestRow());
}

// The recipe window gives no keys. Its lines are in the order of the recipe's link rows, which have
// them. If another program has changed these since, or for lines that were added before a copy of
// the file was put in its place, the names decide.
void CompositionEditor::findKeys()
{
    const int fileNumber = m_composition.catalog->Database().fileNumber();
    if (m_fileNumber == fileNumber)
        return;
    RecordCursor &links = m_composition.lines->Recordset();
    RecordCursor &catalog = m_composition.catalog->Recordset();
    QList<ListBox::Row> linked;
    const QString criteria = criterion("RecipeID"_L1, m_recipeId);
    for (links.FindFirst(criteria); !links.NoMatch(); links.FindNext(criteria)) {
        const qint64 key = links.value(m_composition.keyField).toLongLong();
        catalog.FindFirst(criterion(m_composition.keyField, key));
        if (!catalog.NoMatch())
            linked.append({catalog.value(m_composition.nameField).toString(), key});
    }
    const QStringList used = names();
    for (int line = 0; line < used.size(); ++line) {
        const bool isLinked = line < linked.size() && linked[line].text == used[line];
        m_composition.lineList->setKeyAt(line,
                                         isLinked ? linked[line].key : keyInCatalog(0, used[line]));
    }
    m_fileNumber = fileNumber;
}

// Returns the entry's key if it is still in the catalog, else the key of the entry that has the
// name now, or 0. Moves the catalog's cursor.
qint64 CompositionEditor::keyInCatalog(qint64 key, const QString &name)
{
    RecordCursor &catalog = m_composition.catalog->Recordset();
    catalog.FindFirst(criterion(m_composition.keyField, key));
    if (catalog.NoMatch())
        catalog.FindFirst(criterion(m_composition.nameField, Comparison::Equal, name));
    return catalog.NoMatch() ? 0 : catalog.value(m_composition.keyField).toLongLong();
}

bool CompositionEditor::isListed(const ListBox::Row &entry) const
{
    return names().contains(entry.text) || m_composition.lineList->rowOf(entry.key) >= 0;
}

void CompositionEditor::cmdAdd_Click()
{
    addSelected();
    focusCatalog();
}

void CompositionEditor::onFindEntered()
{
    if (m_composition.catalogList->shownCount() > 0 && !frame().input().isAutoRepeat())
        cmdAdd_Click();
}

void CompositionEditor::onFindMoved(int row)
{
    m_composition.catalogList->selectRow(row);
}

void CompositionEditor::cmdCancel_Click()
{
    closeWindow();
}

void CompositionEditor::cmdDone_Click()
{
    const QStringList missing = writeBack();
    if (missing.isEmpty())
        closeWindow();
    else
        showMissing(missing);
}

QStringList CompositionEditor::writeBack()
{
    Transaction transaction(m_composition.lines->Database());
    m_sources.requery();
    m_recipes.Recordset().FindFirst(criterion("RecipeID"_L1, m_recipeId));
    if (m_recipes.Recordset().NoMatch()) {
        throw DatabaseError(
            tr("This recipe has been deleted by another program. Nothing was stored."));
    }
    findKeys();
    const QStringList used = names();
    QList<qint64> keys;
    QStringList missing;
    for (int line = 0; line < used.size(); ++line) {
        keys += keyInCatalog(m_composition.lineList->keyAt(line), used[line]);
        if (keys.last() == 0)
            missing += m_composition.lineList->texts()[line];
    }
    if (!missing.isEmpty())
        return missing;

    m_composition.lines->Database().Execute(
        u"DELETE %1.* From %1 WHERE (((%1.RecipeID)=%2))"_s.arg(m_composition.lines->RecordSource)
            .arg(m_recipeId));
    RecordCursor &rows = m_composition.lines->Recordset();
    for (qsizetype line = 0; line < keys.size(); ++line) {
        rows.AddNew();
        rows.setValue("RecipeID"_L1, m_recipeId);
        setFields(rows, line);
        rows.setValue(m_composition.keyField, keys[line]);
        rows.Update();
    }
    transaction.commit();
    return {};
}

void CompositionEditor::showMissing(const QStringList &missing)
{
    constexpr qsizetype most = 10; // so that the message box fits on a small screen
    QStringList named;
    for (qsizetype i = 0; i < qMin(most, missing.size()); ++i)
        named += excerpt(missing[i]);
    if (missing.size() > most)
        named += tr("and %1 more").arg(missing.size() - most);
    interaction().showError(tr("Can't save"),
                            QString(m_composition.missingText).replace("%1"_L1, named.join(u'\n')));
}
