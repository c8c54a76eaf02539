#include "frmChangeIngredients.h"

#include "CatalogRows.h"
#include "ComposedRecipe.h"
#include "Criterion.h"
#include "DatabasePath.h"
#include "Frame.h"
#include "SortOrder.h"
#include "Transaction.h"
#include "frmIngredient.h"
#include "ui_frmChangeIngredients.h"

#include <QShortcut>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto nameField = "IngredientName"_L1;

QStringList amounts()
{
    return {{},         u"1/8"_s,   u"1/4"_s,   u"1/3"_s,   u"1/2"_s,   u"2/3"_s,   u"3/4"_s,
            u"1"_s,     u"1 1/4"_s, u"1 1/2"_s, u"1 3/4"_s, u"2"_s,     u"2 1/2"_s, u"3"_s,
            u"3 1/2"_s, u"4"_s,     u"4 1/2"_s, u"5"_s,     u"5 1/2"_s, u"6"_s};
}

QStringList units()
{
    using Window = frmChangeIngredients;
    return {{},
            Window::tr("tsp"),
            Window::tr("tbsp"),
            Window::tr("cup"),
            Window::tr("ml"),
            Window::tr("L"),
            Window::tr("oz"),
            Window::tr("fl oz"),
            Window::tr("quart"),
            Window::tr("gram"),
            Window::tr("kilogram"),
            Window::tr("lb"),
            Window::tr("pinch"),
            Window::tr("handfull"),
            Window::tr("dash"),
            Window::tr("sprig"),
            Window::tr("clove")};
}

QStringList preparations()
{
    using Window = frmChangeIngredients;
    return {{},
            Window::tr("chopped"),
            Window::tr("diced"),
            Window::tr("sliced"),
            Window::tr("cubed"),
            Window::tr("ground"),
            Window::tr("minced"),
            Window::tr("grated")};
}

void fill(QComboBox &combo, const QStringList &entries, const QString &selected)
{
    combo.addItems(entries);
    // An editable list would take a text without selecting its entry, from which the arrows go on.
    combo.setCurrentIndex(static_cast<int>(entries.indexOf(selected)));
}

} // namespace

frmChangeIngredients::frmChangeIngredients(Frame &frame)
    : CompositionEditor(frame)
    , m_ui(std::make_unique<Ui::frmChangeIngredients>())
{
    m_ui->setupUi(this);
    // A completed text would be another one than was typed: "1 1/4" for "1 ".
    m_ui->cmbAmount->setCompleter(nullptr);
    m_ui->cmbPreperation->setCompleter(nullptr);
    setCancelButton(m_ui->cmdCancel);

    using Window = frmChangeIngredients;
    connect(m_ui->cmdAdd, &QPushButton::clicked, this, &Window::cmdAdd_Click);
    connect(m_ui->lstIngredients, &ListBox::doubleClicked, this, &Window::cmdAdd_Click);
    connect(m_ui->cmdRemove, &QPushButton::clicked, this, &Window::cmdRemove_Click);
    auto *deleteKey = new QShortcut(QKeySequence::Delete, m_ui->lstRecipeIngredients);
    deleteKey->setContext(Qt::WidgetShortcut);
    connect(deleteKey, &QShortcut::activated, this, &Window::cmdRemove_Click);
    connect(m_ui->cmdAddIngredient, &QPushButton::clicked, this, &Window::cmdAddIngredient_Click);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &Window::cmdCancel_Click);
    connect(m_ui->cmdDone, &QPushButton::clicked, this, &Window::cmdDone_Click);
}

frmChangeIngredients::~frmChangeIngredients() = default;

void frmChangeIngredients::Form_Load()
{
    fill(*m_ui->cmbPreperation, preparations(), {});
    fill(*m_ui->cmbQuantity, units(), tr("tsp"));
    fill(*m_ui->cmbAmount, amounts(), u"1"_s);

    datIngredients.DatabaseName = DatabasePath;
    datIngredients.RecordSource = u"Select * FROM Ingredients ORDER BY"_s + ingredientOrderSuffix();
    datRecipeIngredients.DatabaseName = DatabasePath;
    datRecipeIngredients.RecordSource = u"RecipeIngredients"_s;

    m_recipeId = recipe().recipeId();
    m_lines = recipe().ingredientLines();
    QStringList texts;
    for (const IngredientLine &line : std::as_const(m_lines))
        texts += line.text();
    m_ui->lstRecipeIngredients->setTexts(texts);
}

void frmChangeIngredients::openDataSources()
{
    datIngredients.open();
    datRecipeIngredients.open();
}

void frmChangeIngredients::Form_Activate()
{
    m_ui->lstIngredients->setTexts({});
    const ReadTransaction reading(datIngredients.Database());
    RecordCursor &catalog = datIngredients.Recordset();
    catalog.Requery();
    m_ui->lstIngredients->setTexts(textsOf(catalog, nameField));
    datRecipeIngredients.Recordset().Requery();
    m_ui->lstIngredients->selectRow(0);
    m_ui->lstRecipeIngredients->selectRow(0);
}

// Composing

void frmChangeIngredients::cmdAdd_Click()
{
    addSelected();
    m_ui->lstIngredients->setFocus();
}

void frmChangeIngredients::addSelected()
{
    if (m_ui->lstIngredients->selectedRow() < 0) {
        warn(tr("No item was selected in the ingredients box.  Try selecting the item you want to "
                "add and then hit add again"),
             tr("No item selected"));
        return;
    }
    const QString name = m_ui->lstIngredients->selectedText();
    if (isListed(name)) {
        warn(tr("Ingredient is already in the ingredient box"), tr("Can't add"));
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
        warn(tr("No item was selected in the recipe ingredients box.  Try selecting the item you "
                "want to delete and then hit delete again"),
             tr("No item selected"));
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

// Leaving

void frmChangeIngredients::cmdCancel_Click()
{
    leave();
}

void frmChangeIngredients::cmdDone_Click()
{
    const QStringList missing = writeBack();
    if (missing.isEmpty())
        leave();
    else
        refuse(tr("These ingredients are not in the catalog any more:\n\n%1\n\nNothing was stored. "
                  "Add them to the catalog again with Add Ingredient, or remove their lines."),
               missing);
}

QStringList frmChangeIngredients::writeBack()
{
    Transaction transaction(datRecipeIngredients.Database());
    RecordCursor &catalog = datIngredients.Recordset();
    catalog.Requery();
    QList<QVariant> ids;
    QStringList missing;
    for (const IngredientLine &line : std::as_const(m_lines)) {
        catalog.FindFirst(criterion(nameField, Comparison::Equal, line.name));
        if (catalog.NoMatch())
            missing += line.text();
        else
            ids += catalog.value("IngredientID"_L1);
    }
    if (!missing.isEmpty())
        return missing;

    datRecipeIngredients.Database().Execute(
        u"DELETE RecipeIngredients.* From RecipeIngredients "
        "WHERE (((RecipeIngredients.RecipeID)=%1))"_s.arg(m_recipeId));
    RecordCursor &rows = datRecipeIngredients.Recordset();
    for (qsizetype i = 0; i < m_lines.size(); ++i) {
        rows.AddNew();
        rows.setValue("RecipeID"_L1, m_recipeId);
        rows.setValue("Quantity"_L1, m_lines[i].quantity);
        rows.setValue("IngredientID"_L1, ids[i]);
        rows.Update();
    }
    transaction.commit();
    return {};
}
