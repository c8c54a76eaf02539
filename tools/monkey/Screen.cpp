#include "Screen.h"

#include "widgets/ListBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

template <class Control>
Control &control(const QWidget &window, const char *name)
{
    auto *found = window.findChild<Control *>(QLatin1StringView(name));
    if (!found)
        qFatal("no control %s", name);
    return *found;
}

QString text(const QWidget &window, const char *name)
{
    return control<QLineEdit>(window, name).text();
}

int index(const QWidget &window, const char *name)
{
    return control<QComboBox>(window, name).currentIndex();
}

} // namespace

bool isRecipe(const QWidget &window)
{
    return window.objectName() == "frmRecipe"_L1;
}
bool isIngredients(const QWidget &window)
{
    return window.objectName() == "frmIngredient"_L1;
}
bool isUtensils(const QWidget &window)
{
    return window.objectName() == "frmUtensil"_L1;
}
bool isIngredientEditor(const QWidget &window)
{
    return window.objectName() == "frmChangeIngredients"_L1;
}
bool isEditor(const QWidget &window)
{
    return isIngredientEditor(window) || window.objectName() == "frmChangeUtensils"_L1;
}

bool isSaveEnabled(const QWidget &window)
{
    const auto *save = window.findChild<QPushButton *>(u"cmdSave"_s);
    return save && save->isEnabled();
}

Recipe recipeOnScreen(const QWidget &window)
{
    QString instructions = control<QPlainTextEdit>(window, "txtInstruction").toPlainText();
    return {.name = window.windowTitle(),
            .description = {},
            .author = text(window, "txtAuthor"),
            .type = index(window, "cmbRecipeType"),
            .instructions = instructions.replace(u'\n', u"\r\n"_s),
            .rating = index(window, "cmbRating"),
            .serves = text(window, "txtServes")};
}

Ingredient ingredientOnScreen(const QWidget &window)
{
    return {.name = text(window, "txtIngredient"),
            .type = index(window, "cmbType"),
            .shelfLife = text(window, "txtShelfLife"),
            .vegetarian = control<QCheckBox>(window, "chkVegetarian").isChecked()};
}

QString utensilOnScreen(const QWidget &window)
{
    return text(window, "txtUtensilName");
}

bool isCatalogRead(const QWidget &window)
{
    return control<QPushButton>(window, "cmdNew").isEnabled();
}

Line selectedInCatalog(const QWidget &window)
{
    if (!control<QLabel>(window, "lblNew").isHidden())
        return {};
    const auto &list =
        control<ListBox>(window, isIngredients(window) ? "lstIngredients" : "lstUtensils");
    return {list.selectedText(), {}, list.selectedKey()};
}

// No name in the file contains a parenthesis.
std::vector<Line> linesOnScreen(const QWidget &window)
{
    const bool ingredients = isIngredientEditor(window);
    const auto &list =
        control<ListBox>(window, ingredients ? "lstRecipeIngredients" : "lstRecipeUtensils");
    std::vector<Line> lines;
    for (const QString &text : list.texts()) {
        const qsizetype end = ingredients ? text.indexOf(" ("_L1) : text.size();
        const QString quantity = ingredients ? text.sliced(end + 2).chopped(1) : QString();
        lines.push_back({text.first(end), quantity, list.keyAt(int(lines.size()))});
    }
    return lines;
}
