#include "composition/frmChangeIngredients.h"

#include "catalogs/frmIngredient.h"
#include "data/DatabasePath.h"
#include "data/settings/Settings.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "ui_frmChangeIngredients.h"
#include "widgets/LineEdit.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Amounts, units and preparations become part of a stored text, so they are never translated.
QStringList amounts()
{
    return {{},         u"1/8"_s,   u"1/4"_s,   u"1/3"_s,   u"1/2"_s,   u"2/3"_s,   u"3/4"_s,
            u"1"_s,     u"1 1/4"_s, u"1 1/2"_s, u"1 3/4"_s, u"2"_s,     u"2 1/2"_s, u"3"_s,
            u"3 1/2"_s, u"4"_s,     u"4 1/2"_s, u"5"_s,     u"5 1/2"_s, u"6"_s};
}

QStringList units()
{
    return {{},         u"tsp"_s,      u"tbsp"_s,  u"cup"_s,   u"ml"_s,       u"L"_s,
            u"oz"_s,    u"fl oz"_s,    u"quart"_s, u"gram"_s,  u"kilogram"_s, u"lb"_s,
            u"pinch"_s, u"handfull"_s, u"dash"_s,  u"sprig"_s, u"clove"_s};
}

QStringList preparations()
{
    return {{},         u"chopped"_s, u"diced"_s,  u"sliced"_s,
            u"cubed"_s, u"ground"_s,  u"minced"_s, u"grated"_s};
}

void fill(QComboBox &combo, const QStringList &entries, const QString &selected)
{
    combo.addItems(entries);
    // setCurrentText() of an editable box sets only the text: the arrow keys would start elsewhere.
    combo.setCurrentIndex(static_cast<int>(entries.indexOf(selected)));
}

} // namespace

frmChangeIngredients::frmChangeIngredients(Frame &frame)
    : CompositionEditor(frame)
    , m_ui(std::make_unique<Ui::frmChangeIngredients>())
{
    m_ui->setupUi(this);
    for (ComboBox *combo : {m_ui->cmbAmount, m_ui->cmbPreperation}) {
        combo->setLineEdit(new LineEdit); // the combo box takes ownership
        combo->setCompleter(nullptr); // it would replace what is typed: "1 1/4" for "1 "
    }
    setComposition(
        {.catalog = &datIngredients,
         .keyField = "IngredientID"_L1,
         .nameField = "IngredientName"_L1,
         .catalogList = m_ui->lstIngredients,
         .findBar = m_ui->findBar,
         .lines = &datRecipeIngredients,
         .lineList = m_ui->lstRecipeIngredients,
         .add = m_ui->cmdAdd,
         .remove = m_ui->cmdRemove,
         .cancel = m_ui->cmdCancel,
         .done = m_ui->cmdDone,
         .unreadText = tr("The catalog could not be read.\nTo try again, press Add Ingredient and "
                          "then Done."),
         .missingText =
             tr("These ingredients are not in the catalog any more:\n\n%1\n\nNothing was stored. "
                "Add them to the catalog again with Add Ingredient, or remove their lines.")});
    connect(m_ui->cmdAddIngredient, &QPushButton::clicked, this,
            &frmChangeIngredients::cmdAddIngredient_Click);
}

frmChangeIngredients::~frmChangeIngredients() = default;

void frmChangeIngredients::Form_Load()
{
    fill(*m_ui->cmbPreperation, preparations(), {});
    fill(*m_ui->cmbQuantity, units(), u"tsp"_s);
    fill(*m_ui->cmbAmount, amounts(), u"1"_s);

    sources().setDatabaseName(DatabasePath);
    datIngredients.RecordSource =
        u"Select * FROM Ingredients ORDER BY"_s + ingredientOrderByClause();
    datRecipeIngredients.RecordSource = u"RecipeIngredients"_s;

    m_lines = takeRecipe().ingredientLines();
    QList<ListBox::Row> rows;
    for (const IngredientLine &line : std::as_const(m_lines))
        rows.append({line.text()});
    m_ui->lstRecipeIngredients->setRows(rows);
    m_ui->lstIngredients->setFocus(); // first in tab order, but not the first child widget
}

void frmChangeIngredients::Form_Activate()
{
    readCatalog();
    if (m_ui->lstIngredients->selectedRow() < 0)
        m_ui->lstIngredients->selectRow(0);
    m_ui->lstRecipeIngredients->selectRow(0);
}

// Composing

void frmChangeIngredients::addSelected()
{
    if (!m_ui->lstIngredients->isShown(m_ui->lstIngredients->selectedRow())) {
        interaction().showError(
            tr("No item selected"),
            tr("No item was selected in the ingredients box.  Try selecting the item you want to "
               "add and then hit add again"));
        return;
    }
    const QString name = m_ui->lstIngredients->selectedText();
    const qint64 key = m_ui->lstIngredients->selectedKey();
    if (isListed({name, key})) {
        interaction().showError(tr("Can't add"), tr("Ingredient is already in the ingredient box"));
        return;
    }
    const QString quantity =
        quantityText(m_ui->cmbAmount->currentText(), m_ui->cmbQuantity->currentText(),
                     m_ui->cmbPreperation->currentText());
    m_lines.append({name, quantity});
    m_ui->lstRecipeIngredients->append({m_lines.last().text(), key});
}

void frmChangeIngredients::cmdRemove_Click()
{
    const int row = m_ui->lstRecipeIngredients->selectedRow();
    if (row < 0) {
        interaction().showError(
            tr("No item selected"),
            tr("No item was selected in the recipe ingredients box.  Try selecting the item you "
               "want to delete and then hit delete again"));
    } else {
        m_lines.removeAt(row);
        m_ui->lstRecipeIngredients->remove(row);
    }
    m_ui->lstIngredients->setFocus(); // not to the find bar, which the next Delete would empty
    m_ui->lstRecipeIngredients->selectRow(0);
}

// The focus is on the list or its find bar again when the catalog is closed.
void frmChangeIngredients::cmdAddIngredient_Click()
{
    focusCatalog();
    frame().show(frame().load<frmIngredient>());
}

// Storing

QStringList frmChangeIngredients::names() const
{
    QStringList names;
    for (const IngredientLine &line : m_lines)
        names += line.name;
    return names;
}

void frmChangeIngredients::setFields(RecordCursor &row, qsizetype line) const
{
    row.setValue("Quantity"_L1, m_lines[line].quantity);
}
