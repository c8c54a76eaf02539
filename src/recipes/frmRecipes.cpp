#include "recipes/frmRecipes.h"

#include "data/DatabaseError.h"
#include "data/DatabasePath.h"
#include "data/settings/Settings.h"
#include "frame/Frame.h"
#include "recipes/frmRecipe.h"
#include "ui_frmRecipes.h"
#include "widgets/StandardWidgets.h"

#include <QHeaderView>
#include <QShortcut>

#include <algorithm>
#include <optional>

using namespace Qt::Literals::StringLiterals;

frmRecipes::frmRecipes(Frame &frame)
    : ChildWindow(frame)
    , m_ui(std::make_unique<Ui::frmRecipes>())
{
    m_ui->setupUi(this);
    m_ui->lvwRecipes->setModel(&m_recipes);
    m_ui->cmdView->setEnabled(false);
    setDefaultButton(m_ui->cmdView);
    setCancelButton(m_ui->cmdClose);
    setCloseButton(m_ui->cmdClose);
    setUpColumns();
    setUpFindBar();
    connect(m_ui->lvwRecipes, &QAbstractItemView::doubleClicked, this,
            &frmRecipes::lvwRecipes_DblClick);
    connect(m_ui->lvwRecipes, &RecipeTable::emptyTableDoubleClicked, this,
            &frmRecipes::lvwRecipes_DblClick);
    connect(m_ui->lvwRecipes->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmRecipes::lvwRecipes_SelectionChange);
    connect(m_ui->cmdView, &QPushButton::clicked, this, &frmRecipes::cmdView_Click);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmRecipes::cmdClose_Click);
}

frmRecipes::~frmRecipes() = default;

void frmRecipes::setUpColumns()
{
    QList<int> widths;
    for (const double width : {2.0, 2.25, 0.5, 0.5}) // inches
        widths += inches(*this, width, 0).width();
    m_ui->lvwRecipes->setColumnWidths(widths);
    QHeaderView *header = m_ui->lvwRecipes->header();
    header->setSortIndicator(m_recipes.sortColumn(), Qt::AscendingOrder);
    connect(header, &QHeaderView::sectionClicked, this, &frmRecipes::lvwRecipes_ColumnClick);
    for (int column = 0; column < RecipeListModel::columns; ++column) {
        // QHeaderView takes no focus, so each column gets a shortcut.
        auto *key =
            new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + column)), this);
        key->setContext(Qt::WidgetWithChildrenShortcut);
        QObject::connect(key, &QShortcut::activated, header,
                         [header, column] { Q_EMIT header->sectionClicked(column); });
    }
}

void frmRecipes::setUpFindBar()
{
    m_ui->findBar->setView(*m_ui->lvwRecipes);
    QWidget::setTabOrder(m_ui->lvwRecipes, &m_ui->lvwRecipes->placeholderButton());
    connect(m_ui->findBar, &FindBar::textChanged, this, &frmRecipes::findBar_TextChange);
    connect(m_ui->findBar, &FindBar::moveRequested, this, &frmRecipes::findBar_MoveRequest);
    connect(&m_ui->lvwRecipes->placeholderButton(), &QPushButton::clicked, this,
            &frmRecipes::cmdClearFind_Click);
}

void frmRecipes::Form_Load()
{
    m_sources.setDatabaseName(DatabasePath);
    datRecipes.RecordSource =
        u"SELECT Recipes.RecipeID, Recipes.RecipeName, Recipes.Description, Recipes.Serves, "
        "Count(RecipeIngredients.RecipeID) AS CountOfRecipeID "
        "FROM Recipes LEFT JOIN RecipeIngredients "
        "ON Recipes.RecipeID = RecipeIngredients.RecipeID "
        "GROUP BY Recipes.RecipeID, Recipes.RecipeType, Recipes.RecipeName, Recipes.Description, "
        "Recipes.Serves "
        "ORDER BY"_s
        + recipeOrderByClause();
}

void frmRecipes::openDataSources()
{
    m_sources.open();
}

// Selects the first row; while the find bar is open, the recipe that was selected, or what has come
// to its row. The recipe under a pressed mouse button stays there; if it cannot, the press has no
// effect, since a double click would open another recipe. Without a press, the view does not scroll
// if the rows above it are as many as before.
void frmRecipes::Form_Activate()
{
    RecipeTable &table = *m_ui->lvwRecipes;
    const std::optional<QPoint> press = frame().pendingPress();
    const int top = table.firstVisibleRow();
    const int pressedRow = press ? table.rowAt(*press) : -1;
    const qint64 pressed = m_recipes.recipeIdAt(pressedRow);
    const int keptRow = pressed != 0 ? pressedRow : top;
    const qint64 kept = m_recipes.recipeIdAt(keptRow);

    const bool isFinding = m_ui->findBar->isOpen();
    const int selectedRow = table.currentIndex().row();

    readRecipes();
    table.selectRow(isFinding ? selectedOrNearestRow(selectedRow) : 0);
    const int row = m_recipes.rowOf(kept);
    if (isFinding && row < 0)
        table.scrollToRow(top, 0);
    else
        table.scrollToRow(isFinding || pressed != 0 || row == top ? row : 0, keptRow - top);
    if (isFinding && !press)
        table.scrollTo(table.currentIndex());
    if (press && m_recipes.recipeIdAt(table.rowAt(*press)) != pressed)
        table.discardNextPress();
    showState();
}

// Returns the row of the recipe that was selected last, or else the one nearest to the given row.
int frmRecipes::selectedOrNearestRow(int row) const
{
    const int selected = m_recipes.rowOf(m_selectedRecipe);
    return selected >= 0 ? selected : std::clamp(row, 0, std::max(m_recipes.rowCount() - 1, 0));
}

void frmRecipes::readRecipes()
{
    m_recipes.clear();
    try {
        std::optional<ReadTransaction> snapshot; // one state of the file for the list and the index
        if (!m_query.isEmpty())
            snapshot.emplace(datRecipes.Database());
        m_sources.requery();
        const RowSet &rows = datRecipes.Recordset().rows();
        m_recipes.show(rows, foundRecipes());
        m_keepsRows = false;
    } catch (...) {
        showState();
        throw;
    }
}

RecipeListModel::Keys frmRecipes::foundRecipes()
{
    if (m_query.isEmpty())
        return {};
    return m_index.matches(datRecipes.Database(), m_query);
}

// Reads the recipes as well, since what is found must be what is shown. A list that could not be
// read is not read again at each letter. If it only cannot be read now, it remains. A recipe that
// the user has chosen while typing remains selected as long as it is found.
void frmRecipes::findBar_TextChange(const QString &text)
{
    RecipeTable &table = *m_ui->lvwRecipes;
    const bool isChosen = !m_query.isEmpty() && m_selectedRecipe != m_proposedRecipe;
    m_query = SearchQuery(text);
    table.mark(m_query);
    if (!m_recipes.isRead())
        return;
    const std::exception_ptr failure = narrowRecipes();
    const int chosen = isChosen ? m_recipes.rowOf(m_selectedRecipe) : -1;
    table.selectRow(chosen >= 0 ? chosen : proposedRow(text));
    table.scrollTo(table.currentIndex());
    showState();
    if (chosen < 0)
        m_proposedRecipe = m_selectedRecipe;
    if (failure)
        std::rethrow_exception(failure);
}

// Returns why the recipes could not be read. The former rows then remain, narrowed if the index has
// been read, and the next letters do not wait for the file again.
std::exception_ptr frmRecipes::narrowRecipes()
{
    std::exception_ptr failure;
    if (!m_keepsRows) {
        try {
            const ReadTransaction snapshot(datRecipes.Database());
            datRecipes.Database().dataVersion(); // throws before readRecipes() drops the rows
            readRecipes();
            return failure;
        } catch (const DatabaseError &) {
            if (!m_recipes.isRead())
                throw;
            failure = std::current_exception();
        }
    }
    m_keepsRows = !m_query.isEmpty();
    RecipeListModel::Keys found;
    if (!m_query.isEmpty() && m_index.isRead())
        found = m_index.matchesAsRead(m_query);
    m_recipes.narrowTo(found);
    return failure;
}

// Returns the row of the first title that is what is typed, or else begins with it; without such a
// title, the row of the recipe that was selected last, or else the first row.
int frmRecipes::proposedRow(const QString &typed) const
{
    const int titled =
        m_query.isEmpty() ? -1 : m_recipes.firstRowOf(m_index.titled(typed.trimmed()));
    return titled >= 0 ? titled : selectedOrNearestRow(0);
}

void frmRecipes::findBar_MoveRequest(Qt::Key key)
{
    m_ui->lvwRecipes->moveSelection(key);
}

void frmRecipes::cmdClearFind_Click()
{
    m_ui->findBar->clear();
    m_ui->findBar->open();
}

// Says why there are no rows. A list that has not been activated yet says nothing.
void frmRecipes::showState()
{
    QString text;
    QString button;
    if (!m_recipes.isRead()) {
        text = tr("The recipes could not be read. Press F5 to try again.");
    } else if (m_recipes.recipeCount() == 0) {
        text = tr("No recipes yet.\nTo write your first one, press View and then New.\n"
                  "To bring in recipe files, choose File, Import.\n"
                  "When there are many, Ctrl+F finds them.");
    } else if (m_recipes.rowCount() == 0) {
        text = tr("Nothing found.\nTo see all recipes again, press Esc or Clear.");
        button = tr("Clear");
    }
    m_ui->lvwRecipes->setPlaceholderText(text);
    m_ui->lvwRecipes->setPlaceholderButton(button);
    showCount();
    lvwRecipes_SelectionChange(); // a model reset emits no selectionChanged()
}

void frmRecipes::showCount()
{
    if (!m_recipes.isNarrowed() || m_recipes.recipeCount() == 0)
        m_ui->findBar->clearCount();
    else
        m_ui->findBar->showCount(m_recipes.rowCount(), m_recipes.recipeCount());
}

// The click has moved the sort indicator already, or reversed it at a second click.
void frmRecipes::lvwRecipes_ColumnClick(int column)
{
    QHeaderView &header = *m_ui->lvwRecipes->header();
    header.setSortIndicator(m_recipes.sortColumn(), Qt::AscendingOrder);
    m_recipes.sort(column);
    header.setSortIndicator(column, Qt::AscendingOrder);
    m_ui->lvwRecipes->scrollTo(m_ui->lvwRecipes->currentIndex());
}

void frmRecipes::lvwRecipes_DblClick()
{
    cmdView_Click();
}

void frmRecipes::lvwRecipes_SelectionChange()
{
    const bool isEmpty = m_recipes.isRead() && m_recipes.recipeCount() == 0;
    const QModelIndexList selected = m_ui->lvwRecipes->selectionModel()->selectedRows();
    if (!selected.isEmpty())
        m_selectedRecipe = m_recipes.recipeIdAt(selected.constFirst().row());
    setEnabledPassingFocus(*m_ui->cmdView, isEmpty || !selected.isEmpty(), *m_ui->lvwRecipes);
}

// Finds the recipe by its key, since several recipes may have the same title. Without recipes, the
// window opens for a new one.
void frmRecipes::cmdView_Click()
{
    if (!m_ui->cmdView->isEnabled()) // for a double click
        return;
    const QModelIndexList selected = m_ui->lvwRecipes->selectionModel()->selectedRows();
    auto &recipe = frame().load<frmRecipe>();
    frame().show(recipe);
    recipe.setCurrentRecipeID(m_recipes.recipeIdAt(selected.value(0).row()));
}

void frmRecipes::cmdClose_Click()
{
    closeWindow();
}
