#include "frmChangeUtensils.h"

#include "CatalogRows.h"
#include "ComposedRecipe.h"
#include "Criterion.h"
#include "DatabasePath.h"
#include "Frame.h"
#include "Transaction.h"
#include "frmUtensil.h"
#include "ui_frmChangeUtensils.h"

#include <QShortcut>

using namespace Qt::Literals::StringLiterals;

static constexpr auto nameField = "UtensilName"_L1;

frmChangeUtensils::frmChangeUtensils(Frame &frame)
    : CompositionEditor(frame)
    , m_ui(std::make_unique<Ui::frmChangeUtensils>())
{
    m_ui->setupUi(this);
    setDefaultButton(m_ui->cmdDone);
    setCancelButton(m_ui->cmdCancel);

    using Window = frmChangeUtensils;
    connect(m_ui->cmdAdd, &QPushButton::clicked, this, &Window::cmdAdd_Click);
    connect(m_ui->lstUtensils, &ListBox::doubleClicked, this, &Window::cmdAdd_Click);
    connect(m_ui->cmdRemove, &QPushButton::clicked, this, &Window::cmdRemove_Click);
    auto *deleteKey = new QShortcut(QKeySequence::Delete, m_ui->lstRecipeUtensils);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, &Window::cmdRemove_Click);
    connect(m_ui->cmdAddUtensil, &QPushButton::clicked, this, &Window::cmdAddUtensil_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &Window::cmdCancel_Click);
    connect(m_ui->cmdDone, &QPushButton::clicked, this, &Window::cmdDone_Click);
}

frmChangeUtensils::~frmChangeUtensils() = default;

void frmChangeUtensils::Form_Load()
{
    datUtensils.DatabaseName = DatabasePath;
    datUtensils.RecordSource = u"Select * FROM Utensils ORDER BY UtensilName"_s;
    datRecipeUtensils.DatabaseName = DatabasePath;
    datRecipeUtensils.RecordSource = u"RecipeUtensils"_s;

    m_recipeId = recipe().recipeId();
    m_ui->lstRecipeUtensils->setTexts(recipe().utensilLines());
}

void frmChangeUtensils::openDataSources()
{
    datUtensils.open();
    datRecipeUtensils.open();
}

// Its catalog has it activated once while that keeps the activation, and then the focus as well.
void frmChangeUtensils::Form_Activate()
{
    m_ui->lstUtensils->setTexts({});
    const ReadTransaction reading(datUtensils.Database());
    RecordCursor &catalog = datUtensils.Recordset();
    catalog.Requery();
    m_ui->lstUtensils->setTexts(textsOf(catalog, nameField));
    datRecipeUtensils.Recordset().Requery();
    if (frame().activeChild() == this)
        m_ui->lstUtensils->setFocus();
}

// Composing

void frmChangeUtensils::cmdAdd_Click()
{
    addSelected();
    m_ui->lstUtensils->setFocus();
}

void frmChangeUtensils::addSelected()
{
    if (m_ui->lstUtensils->selectedRow() < 0) {
        warn(tr("No item was selected in the utensils box.  Try selecting the item you want to add "
                "and then hit add again"),
             tr("No item selected"));
        return;
    }
    const QString name = m_ui->lstUtensils->selectedText();
    if (m_ui->lstRecipeUtensils->texts().contains(name))
        warn(tr("Utensil is already in the utensil box"), tr("Can't add"));
    else
        m_ui->lstRecipeUtensils->append(name);
}

void frmChangeUtensils::cmdRemove_Click()
{
    const int row = m_ui->lstRecipeUtensils->selectedRow();
    if (row < 0)
        warn(tr("No item was selected in the recipe utensils box.  Try selecting the item you want "
                "to delete and then hit delete again"),
             tr("No item selected"));
    else
        m_ui->lstRecipeUtensils->remove(row);
}

void frmChangeUtensils::cmdAddUtensil_Click()
{
    frame().show(frame().load<frmUtensil>());
}

// Leaving

void frmChangeUtensils::cmdCancel_Click()
{
    leave();
}

void frmChangeUtensils::cmdDone_Click()
{
    const QStringList missing = writeBack();
    if (missing.isEmpty())
        leave();
    else
        refuse(tr("These utensils are not in the catalog any more:\n\n%1\n\nNothing was stored. "
                  "Add them to the catalog again with Add Utensil, or remove their lines."),
               missing);
}

QStringList frmChangeUtensils::writeBack()
{
    Transaction transaction(datRecipeUtensils.Database());
    RecordCursor &catalog = datUtensils.Recordset();
    catalog.Requery();
    QList<QVariant> ids;
    QStringList missing;
    for (const QString &name : m_ui->lstRecipeUtensils->texts()) {
        catalog.FindFirst(criterion(nameField, Comparison::Equal, name));
        if (catalog.NoMatch())
            missing += name;
        else
            ids += catalog.value("UtensilID"_L1);
    }
    if (!missing.isEmpty())
        return missing;

    datRecipeUtensils.Database().Execute(
        u"DELETE RecipeUtensils.* From RecipeUtensils "
        "WHERE (((RecipeUtensils.RecipeID)=%1))"_s.arg(m_recipeId));
    RecordCursor &rows = datRecipeUtensils.Recordset();
    for (const QVariant &id : std::as_const(ids)) {
        rows.AddNew();
        rows.setValue("RecipeID"_L1, m_recipeId);
        rows.setValue("UtensilID"_L1, id);
        rows.Update();
    }
    transaction.commit();
    return {};
}
