#include "composition/frmChangeIngredients.h"

#include "catalogs/frmIngredient.h"
#include "data/DatabasePath.h"
#include "data/settings/Settings.h"
#include "frame/Frame.h"
#include "interaction/Interaction.h"
#include "ui_frmChangeIngredients.h"
#include "widgets/LineEdit.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QStringList amounts()
{
    return {{},         u"1/8"_s,   u"1/4"_s,   u"1/3"_s,   u"1/2"_s,   u"2/3"_s,   u"3/4"_s,
            u"1"_s,     u"1 1/4"_s, u"1 1/2"_s, u"1 3/4"_s, u"2"_s,     u"2 1/2"_s, u"3"_s,
            u"3 1/2"_s, u"4"_s,     u"4 1/2"_s, u"5"_s,     u"5 1/2"_s, u"6"_s};
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
         .lines = &datRecipeIngredients,
         .lineList = m_ui->lstRecipeIngredients,
         .add = m_ui->cmdAdd,
         .remove = m_ui->cmdRemove,
         .cancel = m_ui->cmdCancel,
         .done = m_ui->cmdDone,
         .missingText =
             tr("These ingredients are not in the catalog any more:\n\n%1\n\nNothing was stored. "
                "Add them to the catalog again with Add Ingredient, or remove their lines.")});
    connect(m_ui->cmdAddIngredient, &QPushButton::clicked, this,
            &frmChangeIngredients::cmdAddIngredient_Click);
    m_ui->lstIngredients->setFocus(); // first in tab order, but not the first child widget
}

frmChangeIngredients::~frmChangeIngredients() = default;

QStringList frmChangeIngredients::units()
{
    return {{},          tr("tsp"),      tr("tbsp"),  tr("cup"),   tr("ml"),       tr("L"),
            tr("oz"),    tr("fl oz"),    tr("quart"), tr("gram"),  tr("kilogram"), tr("lb"),
            tr("pinch"), tr("handfull"), tr("dash"),  tr("sprig"), tr("clove")};
}

QStringList frmChangeIngredients::preparations()
{
    return {{},          tr("chopped"), tr("diced"),  tr("sliced"),
            tr("cubed"), tr("ground"),  tr("minced"), tr("grated")};
}

void frmChangeIngredients::Form_Load()
{
    fill(*m_ui->cmbPreperation, preparations(), {});
    fill(*m_ui->cmbQuantity, units(), tr("tsp"));
    fill(*m_ui->cmbAmount, amounts(), u"1"_s);

    sources().setDatabaseName(DatabasePath);
    datIngredients.RecordSource =
        u"Select * FROM Ingredients ORDER BY"_s + ingredientOrderByClause();
    datRecipeIngredients.RecordSource = u"RecipeIngredients"_s;

    m_lines = takeRecipe().ingredientLines();
    QStringList texts;
    for (const IngredientLine &line : std::as_const(m_lines))
        texts += line.text();
    m_ui->lstRecipeIngredients->setTexts(texts);
}

void frmChangeIngredients::Form_Activate()
{
    readCatalog();
    m_ui->lstIngredients->selectRow(0);
    m_ui->lstRecipeIngredients->selectRow(0);
}

// Composing

void frmChangeIngredients::addSelected()
{
    if (m_ui->lstIngredients->selectedRow() < 0) {
        interaction().showError(
            tr("No item selected"),
            tr("No item was selected in the ingredients box.  Try selecting the item you want to "
               "add and then hit add again"));
        return;
    }
    const QString name = m_ui->lstIngredients->selectedText();
    if (isListed(name)) {
        interaction().showError(tr("Can't add"), tr("Ingredient is already in the ingredient box"));
        return;
    }
    const QString quantity =
        quantityText(m_ui->cmbAmount->currentText(), m_ui->cmbQuantity->currentText(),
                     m_ui->cmbPreperation->currentText());
    m_lines.append({name, quantity});
    m_ui->lstRecipeIngredients->append(m_lines.last().text());
}

bool frmChangeIngredients::isListed(const QString &name) const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [&name](const IngredientLine &line) { return line.name == name; });
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
    m_ui->lstIngredients->setFocus();
    m_ui->lstRecipeIngredients->selectRow(0);
}

void frmChangeIngredients::cmdAddIngredient_Click()
{
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
