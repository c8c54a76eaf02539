#include "composition/frmChangeUtensils.h"

#include "catalogs/frmUtensil.h"
#include "composition/ComposedRecipe.h"
#include "data/DatabasePath.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "ui_frmChangeUtensils.h"

using namespace Qt::Literals::StringLiterals;

frmChangeUtensils::frmChangeUtensils(Frame &frame)
    : CompositionEditor(frame)
    , m_ui(std::make_unique<Ui::frmChangeUtensils>())
{
    m_ui->setupUi(this);
    setDefaultButton(m_ui->cmdDone);
    setComposition(
        {.catalog = &datUtensils,
         .keyField = "UtensilID"_L1,
         .nameField = "UtensilName"_L1,
         .catalogList = m_ui->lstUtensils,
         .findBar = m_ui->findBar,
         .lines = &datRecipeUtensils,
         .lineList = m_ui->lstRecipeUtensils,
         .add = m_ui->cmdAdd,
         .remove = m_ui->cmdRemove,
         .cancel = m_ui->cmdCancel,
         .done = m_ui->cmdDone,
         .unreadText = tr("The catalog could not be read.\nTo try again, press Add Utensil and "
                          "then Done."),
         .missingText =
             tr("These utensils are not in the catalog any more:\n\n%1\n\nNothing was stored. "
                "Add them to the catalog again with Add Utensil, or remove their lines.")});
    connect(m_ui->cmdAddUtensil, &QPushButton::clicked, this,
            &frmChangeUtensils::cmdAddUtensil_Click);
}

frmChangeUtensils::~frmChangeUtensils() = default;

void frmChangeUtensils::Form_Load()
{
    sources().setDatabaseName(DatabasePath);
    datUtensils.RecordSource = u"Select * FROM Utensils ORDER BY UtensilName"_s;
    datRecipeUtensils.RecordSource = u"RecipeUtensils"_s;

    QList<ListBox::Row> rows;
    for (const QString &name : takeRecipe().utensilLines())
        rows.append({name});
    m_ui->lstRecipeUtensils->setRows(rows);
}

// Also runs while the utensil catalog keeps the activation; the focus must then stay there.
void frmChangeUtensils::Form_Activate()
{
    readCatalog();
    if (frame().activeChild() == this)
        focusCatalog();
}

// Composing

void frmChangeUtensils::addSelected()
{
    if (!m_ui->lstUtensils->isShown(m_ui->lstUtensils->selectedRow())) {
        interaction().showError(
            tr("No item selected"),
            tr("No item was selected in the utensils box.  Try selecting the item you want to add "
               "and then hit add again"));
        return;
    }
    const ListBox::Row selected{m_ui->lstUtensils->selectedText(),
                                m_ui->lstUtensils->selectedKey()};
    if (isListed(selected))
        interaction().showError(tr("Can't add"), tr("Utensil is already in the utensil box"));
    else
        m_ui->lstRecipeUtensils->append(selected);
}

void frmChangeUtensils::cmdRemove_Click()
{
    const int row = m_ui->lstRecipeUtensils->selectedRow();
    if (row < 0)
        interaction().showError(
            tr("No item selected"),
            tr("No item was selected in the recipe utensils box.  Try selecting the item you want "
               "to delete and then hit delete again"));
    else
        m_ui->lstRecipeUtensils->remove(row);
}

void frmChangeUtensils::cmdAddUtensil_Click()
{
    frame().show(frame().load<frmUtensil>());
}

// Storing

QStringList frmChangeUtensils::names() const
{
    return m_ui->lstRecipeUtensils->texts();
}
