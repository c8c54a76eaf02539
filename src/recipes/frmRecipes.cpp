#include "recipes/frmRecipes.h"

#include "data/DatabasePath.h"
#include "data/settings/Settings.h"
#include "frame/Frame.h"
#include "recipes/frmRecipe.h"
#include "ui_frmRecipes.h"
#include "widgets/StandardWidgets.h"

#include <QHeaderView>
#include <QShortcut>

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

// Selects the first row. The recipe under a pressed mouse button stays there; if it cannot, the
// press has no effect, since a double click would open another recipe. Without a press, the view
// does not scroll if the rows above it are as many as before.
void frmRecipes::Form_Activate()
{
    RecipeTable &table = *m_ui->lvwRecipes;
    const std::optional<QPoint> press = frame().pendingPress();
    const int top = table.firstVisibleRow();
    const int pressedRow = press ? table.rowAt(*press) : -1;
    const qint64 pressed = m_recipes.recipeIdAt(pressedRow);
    const int keptRow = pressed != 0 ? pressedRow : top;
    const qint64 kept = m_recipes.recipeIdAt(keptRow);

    m_recipes.clear();
    try {
        m_sources.requery();
        m_recipes.show(datRecipes.Recordset().rows());
    } catch (...) {
        showState();
        throw;
    }
    table.selectRow(0);
    const int row = m_recipes.rowOf(kept);
    table.scrollToRow(pressed != 0 || row == top ? row : 0, keptRow - top);
    if (press && m_recipes.recipeIdAt(table.rowAt(*press)) != pressed)
        table.discardNextPress();
    showState();
}

// Says why there are no rows. A list that has not been activated yet says nothing.
void frmRecipes::showState()
{
    QString text;
    if (!m_recipes.isRead())
        text = tr("The recipes could not be read. Press F5 to try again.");
    else if (m_recipes.rowCount() == 0)
        text = tr("No recipes yet.\nTo write your first one, press View and then New.\n"
                  "To bring in recipe files, choose File, Import.");
    m_ui->lvwRecipes->setPlaceholderText(text);
    lvwRecipes_SelectionChange(); // a model reset emits no selectionChanged()
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
    const bool isEmpty = m_recipes.isRead() && m_recipes.rowCount() == 0;
    setEnabledPassingFocus(*m_ui->cmdView,
                           isEmpty || m_ui->lvwRecipes->selectionModel()->hasSelection(),
                           *m_ui->lvwRecipes);
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
