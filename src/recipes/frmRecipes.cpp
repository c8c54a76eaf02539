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
    setUpColumns();
    connect(m_ui->lvwRecipes, &QAbstractItemView::doubleClicked, this,
            &frmRecipes::lvwRecipes_DblClick);
    connect(m_ui->lvwRecipes->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmRecipes::lvwRecipes_SelectionChange);
    connect(m_ui->cmdView, &QPushButton::clicked, this, &frmRecipes::cmdView_Click);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmRecipes::cmdClose_Click);
}

frmRecipes::~frmRecipes() = default;

void frmRecipes::setUpColumns()
{
    constexpr std::array widths{2.0, 2.25, 0.5, 0.5}; // inches
    QHeaderView *header = m_ui->lvwRecipes->header();
    header->setSortIndicator(m_recipes.sortColumn(), Qt::AscendingOrder);
    connect(header, &QHeaderView::sectionClicked, this, &frmRecipes::lvwRecipes_ColumnClick);
    for (int column = 0; column < RecipeListModel::columns; ++column) {
        header->resizeSection(column,
                              inches(*this, widths[static_cast<std::size_t>(column)], 0).width());
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

void frmRecipes::Form_Activate()
{
    m_recipes.clear();
    m_sources.requery();
    m_recipes.show(datRecipes.Recordset().rows());
    if (m_recipes.rowCount() > 0) {
        m_ui->lvwRecipes->setCurrentIndex(m_recipes.index(0, 0));
        m_ui->lvwRecipes->scrollToTop();
    }
    lvwRecipes_SelectionChange(); // a model reset emits no selectionChanged()
}

// Undoes QHeaderView's reversal of the order at a second click.
void frmRecipes::lvwRecipes_ColumnClick(int column)
{
    m_ui->lvwRecipes->header()->setSortIndicator(column, Qt::AscendingOrder);
    m_recipes.sort(column);
    m_ui->lvwRecipes->scrollTo(m_ui->lvwRecipes->currentIndex());
}

void frmRecipes::lvwRecipes_DblClick()
{
    cmdView_Click();
}

void frmRecipes::lvwRecipes_SelectionChange()
{
    m_ui->cmdView->setEnabled(m_ui->lvwRecipes->selectionModel()->hasSelection());
}

// Finds the recipe by its key, since several recipes may have the same title.
void frmRecipes::cmdView_Click()
{
    const QModelIndexList selected = m_ui->lvwRecipes->selectionModel()->selectedRows();
    if (selected.isEmpty())
        return;
    auto &recipe = frame().load<frmRecipe>();
    frame().show(recipe);
    recipe.setCurrentRecipeID(m_recipes.recipeIdAt(selected.constFirst().row()));
}

void frmRecipes::cmdClose_Click()
{
    closeWindow();
}
