#include "Model.h"

#include "OtherProgram.h"
#include "frame/ChildWindow.h"
#include "widgets/ListBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <algorithm>
#include <utility>

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

QStringList linesOnScreen(const QWidget &window)
{
    return control<ListBox>(
               window, isIngredientEditor(window) ? "lstRecipeIngredients" : "lstRecipeUtensils")
        .texts();
}

// No name in the file contains a parenthesis.
QString nameOf(const QString &line)
{
    return line.section(u" ("_s, 0, 0);
}

QString quantityOf(const QString &line)
{
    return line.section(u" ("_s, 1).chopped(line.contains(u" ("_s) ? 1 : 0);
}

bool isNumber(const QString &typed)
{
    bool isOne = true;
    if (!typed.isEmpty())
        typed.toDouble(&isOne);
    return isOne;
}

bool isInvalidName(const QString &name)
{
    return name.trimmed().isEmpty() || std::any_of(name.begin(), name.end(), [](QChar c) {
               return u"\\/:*?\"'<>|()"_s.contains(c);
           });
}

template <class Value>
void enter(Value &stored, const Value &shown, const Value &entered, bool isNew)
{
    if (isNew || entered != shown)
        stored = entered;
}

// Returns the key of the row that only the file has, or of the one that it should have.
template <class Row>
Key newKey(const std::map<Key, Row> &stored, const std::map<Key, Row> &known)
{
    for (const auto &[key, row] : stored) {
        if (!known.contains(key))
            return key;
    }
    return known.empty() ? 1 : known.rbegin()->first + 1;
}

template <class Row>
Key keyOf(const std::map<Key, Row> &rows, const std::map<QString, Key> &former, const QString &name,
          Key none)
{
    const Key key = findName(rows, name, none);
    const auto found = former.find(name.toLower());
    return key == none && found != former.end() ? found->second : key;
}

template <class Row>
void addNames(std::map<QString, Key> &names, const std::map<Key, Row> &rows)
{
    for (const auto &[key, row] : rows)
        names[row.name.toLower()] = key;
}

} // namespace

Model::Model(OtherProgram &file)
    : m_file(file)
{
    takeOver();
    qApp->installEventFilter(this);
}

// Presses and boxes

QString Model::Press::answerTo(const QString &title) const
{
    const auto box = std::find_if(boxes.rbegin(), boxes.rend(),
                                  [&](const AnsweredBox &b) { return b.title == title; });
    return box == boxes.rend() ? QString() : box->answer;
}

bool Model::Press::hasFailed() const
{
    return std::any_of(boxes.begin(), boxes.end(), [](const AnsweredBox &box) {
        return box.text.startsWith("Something went wrong"_L1);
    });
}

bool Model::Press::isRefused() const
{
    for (const AnsweredBox &box : boxes) {
        if (box.title == "Error"_L1 || box.title == "Can't save"_L1)
            return !hasFailed();
        if (box.title == "Recipe Name"_L1)
            return false;
    }
    return false;
}

void Model::onAnswered(const AnsweredBox &box)
{
    ++m_answeredBoxes;
    if (!m_press)
        return;
    m_press->boxes.push_back(box);
    if (box.title == "Enter Description"_L1)
        m_windows[m_press->window].description = box.answer;
}

bool Model::eventFilter(QObject *watched, QEvent *event)
{
    auto *window = qobject_cast<ChildWindow *>(watched);
    switch (event->type()) {
    case QEvent::Show:
        if (window && !m_windows.contains(window))
            watch(*window);
        break;
    case QEvent::WindowTitleChange:
        if (window && m_windows.contains(window) && isRecipe(*window))
            onTitleChanged(*window);
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::Timer: // an access key may press its button by a timer
        m_press.reset();
        observe();
        break;
    default:
        break;
    }
    return false;
}

void Model::watch(QWidget &window)
{
    m_windows.emplace(&window, Shown());
    connect(&window, &QObject::destroyed, this, [this, &window] { m_windows.erase(&window); });
    for (QPushButton *button : window.findChildren<QPushButton *>()) {
        connect(button, &QPushButton::released, this, [this, button] { onReleased(button); });
        connect(button, &QPushButton::clicked, this, [this, button] { onClicked(button); });
    }
}

// What is on the screen

void Model::observe()
{
    for (auto &[window, shown] : m_windows) {
        if (isRecipe(*window))
            observeRecipe(*window, shown);
        else if (isIngredients(*window) || isUtensils(*window))
            observeCatalog(*window, shown);
        else if (isEditor(*window))
            observeEditor(*window, shown);
    }
}

void Model::observeRecipe(QWidget &window, Shown &shown) const
{
    if (!isSaveEnabled(window)) {
        shown.recipe = recipeOnScreen(window);
        shown.description.reset();
    }
}

// The key stays if the name is the same: the utensil catalog disables Save also if it has refused
// a name, and the box then still shows that name.
void Model::observeCatalog(QWidget &window, Shown &shown) const
{
    const bool ingredients = isIngredients(window);
    const QString name = text(window, ingredients ? "txtIngredient" : "txtUtensilName");
    const int row =
        control<ListBox>(window, ingredients ? "lstIngredients" : "lstUtensils").selectedRow();
    const bool isSeen = name == shown.name && row == shown.selectedRow;
    shown.name = name;
    shown.selectedRow = row;
    if (isSaveEnabled(window))
        return;
    if (ingredients)
        shown.ingredient = ingredientOnScreen(window);
    if (isSeen && shown.key != none)
        return;
    shown.otherKey = none;
    if (name.isEmpty())
        shown.key = 0;
    else
        shown.key = ingredients ? keyOf(m_tables.ingredients, m_ingredients, name, none)
                                : keyOf(m_tables.utensils, m_utensils, name, none);
}

void Model::observeEditor(QWidget &window, Shown &shown) const
{
    for (const QString &line : linesOnScreen(window)) {
        const QString name = isIngredientEditor(window) ? nameOf(line) : line;
        const Key key = isIngredientEditor(window)
            ? keyOf(m_tables.ingredients, m_ingredients, name, none)
            : keyOf(m_tables.utensils, m_utensils, name, none);
        shown.lineKeys.emplace(name, key);
    }
}

// Edit gives the recipe shown another title, New gives one to a new recipe, and everything else
// shows a stored recipe.
void Model::onTitleChanged(QWidget &window)
{
    Shown &shown = m_windows[&window];
    const bool isPressed = m_press && m_press->window == &window && !m_press->boxes.empty();
    const QString button = isPressed ? m_press->button->objectName() : QString();
    if (button == "cmdEdit"_L1)
        return;
    if (button == "cmdNew"_L1 && !m_press->answerTo(u"Recipe Name"_s).isEmpty())
        shown.key = 0;
    else
        shown.key = keyOf(m_tables.recipes, m_recipes, window.windowTitle(), none);
}

// A button that is down is also released if the handler of another one disables it.
void Model::onReleased(QPushButton *button)
{
    if (m_press)
        return;
    observe();
    QWidget *window = button->parentWidget();
    while (!qobject_cast<ChildWindow *>(window))
        window = window->parentWidget();
    Press press;
    press.button = button;
    press.window = window;
    press.shown = m_windows[window];
    press.isChanged = isSaveEnabled(*window);
    if (isRecipe(*window))
        press.recipe = recipeOnScreen(*window);
    else if (isIngredients(*window))
        press.ingredient = ingredientOnScreen(*window);
    else if (isUtensils(*window))
        press.ingredient.name = text(*window, "txtUtensilName");
    else if (isEditor(*window))
        press.lines = linesOnScreen(*window);
    m_press = press;
}

void Model::onClicked(QPushButton *button)
{
    if (!m_press || m_press->button != button)
        return;
    const Press press = *std::exchange(m_press, std::nullopt);
    Shown &shown = m_windows[press.window];
    if (isRecipe(*press.window))
        recipePressed(press, shown);
    else if (isIngredients(*press.window))
        ingredientPressed(press, shown);
    else if (isUtensils(*press.window))
        utensilPressed(press, shown);
    else if (isEditor(*press.window))
        editorPressed(press, shown);
    else
        expect({m_tables}, press);
}

// What must be stored

// The title may have changed during the press, and with it the key of the recipe shown.
void Model::recipePressed(const Press &press, Shown &shown)
{
    const QString button = press.button->objectName();
    const QString title = press.window->windowTitle();
    const bool isChange = button.startsWith("cmdChange"_L1);
    const bool isSaved = button == "cmdSave"_L1 || (isChange && press.isChanged)
        || press.answerTo(u"Save Changes"_s) == "Yes"_L1;
    if (isSaved && !press.isRefused() && press.shown.key != none)
        recipeSaved(press, shown);
    else
        expect({m_tables}, press);

    const QString name = press.answerTo(u"Recipe Name"_s).trimmed();
    if (button == "cmdNew"_L1 && !name.isEmpty() && title == name) {
        shown.key = 0;
        shown.description = QString();
    }
    for (auto &[window, editor] : m_windows) {
        if (isChange && isEditor(*window) && editor.key == none)
            editor.key = shown.key;
    }
}

void Model::recipeSaved(const Press &press, Shown &shown)
{
    const Recipe &entered = press.recipe;
    const Recipe &found = press.shown.recipe;
    const bool isNew = press.shown.key == 0;
    const Key key = isNew ? newKey(m_file.read().recipes, m_tables.recipes) : press.shown.key;
    Tables after = m_tables;
    if (isNew || after.recipes.contains(key)) {
        Recipe &row = after.recipes[key];
        enter(row.name, found.name, entered.name, isNew);
        row.description = press.shown.description.value_or(row.description);
        enter(row.author, found.author, entered.author, isNew);
        enter(row.type, found.type, entered.type, isNew);
        enter(row.instructions, found.instructions, entered.instructions, isNew);
        enter(row.rating, found.rating, entered.rating, isNew);
        enter(row.serves, found.serves, entered.serves, isNew);
    } else if (press.boxes.empty()) {
        addFault(u"the recipe on the screen is gone, and the user was not told"_s);
    }
    expect({after}, press);

    const QString title = press.window->windowTitle();
    if (isNew && title == entered.name && m_tables.recipes.contains(key))
        shown.key = key;
    if (press.button->objectName() == "cmdSave"_L1 && !press.hasFailed() && title != entered.name)
        addFault(u"\"%1\" was saved and \"%2\" is shown"_s.arg(entered.name, title));
}

bool Model::isIngredientRefused(const Ingredient &entered, const Shown &shown) const
{
    const bool isShelfLifeEntered = entered.shelfLife != shown.ingredient.shelfLife;
    return isInvalidName(entered.name) || (isShelfLifeEntered && !isNumber(entered.shelfLife))
        || std::any_of(
               m_tables.ingredients.begin(), m_tables.ingredients.end(), [&](const auto &row) {
                   return row.first != shown.key && isSameText(row.second.name, entered.name);
               });
}

void Model::ingredientPressed(const Press &press, Shown &shown)
{
    const QString button = press.button->objectName();
    Tables after = m_tables;
    if (button == "cmdDelete"_L1) {
        if (press.answerTo(u"Confirm"_s) == "Yes"_L1)
            after.ingredients.erase(shown.key);
    } else if (button == "cmdSave"_L1 || press.answerTo(u"Save Changes"_s) == "Yes"_L1) {
        const Ingredient &entered = press.ingredient;
        const bool isNew = shown.key == 0;
        const Key key = isNew ? newKey(m_file.read().ingredients, m_tables.ingredients) : shown.key;
        if (!isIngredientRefused(entered, shown) && (isNew || after.ingredients.contains(key))) {
            Ingredient &row = after.ingredients[key];
            enter(row.name, shown.ingredient.name, entered.name, isNew);
            enter(row.type, shown.ingredient.type, entered.type, isNew);
            enter(row.shelfLife, shown.ingredient.shelfLife, entered.shelfLife, isNew);
            enter(row.vegetarian, shown.ingredient.vegetarian, entered.vegetarian, isNew);
        }
    }
    expect({after}, press);
    shown.selectedRow = -1; // to look up the key at the next display
}

void Model::utensilPressed(const Press &press, Shown &shown)
{
    const QString button = press.button->objectName();
    std::vector<Tables> allowed;
    if (button == "cmdSave"_L1 || press.answerTo(u"Save Changes"_s) == "Yes"_L1) {
        const QString entered = press.ingredient.name;
        const Key taken = findName(m_tables.utensils, entered.trimmed(), none);
        const bool isRefused = isInvalidName(entered) || taken != none;
        for (const Key shownKey : {shown.key, shown.otherKey}) {
            const bool isNew = shownKey == 0;
            const Key key = isNew ? newKey(m_file.read().utensils, m_tables.utensils) : shownKey;
            Tables after = m_tables;
            if (!isRefused && (isNew || after.utensils.contains(key)))
                after.utensils[key].name = entered.trimmed();
            if (shownKey != none)
                allowed.push_back(after);
        }
        if (taken != none)
            shown.otherKey = taken;
        if (!isRefused)
            shown.selectedRow = -1; // to look up the key at the next display
    }
    if (allowed.empty())
        allowed.push_back(m_tables);
    expect(allowed, press);
}

// By name: the row that has the name now. Otherwise the row that had it when the line appeared.
std::vector<Link> Model::linksOf(const Press &press, const Shown &shown, bool byName) const
{
    const bool ingredients = isIngredientEditor(*press.window);
    std::vector<Link> links;
    for (const QString &line : press.lines) {
        const QString name = ingredients ? nameOf(line) : line;
        Key key = none;
        if (byName)
            key = ingredients ? findName(m_tables.ingredients, name, none)
                              : findName(m_tables.utensils, name, none);
        if (key == none)
            key = shown.lineKeys.at(name);
        links.push_back({key, ingredients ? quantityOf(line) : QString()});
    }
    return links;
}

bool Model::isLineMissing(const Press &press, const Shown &shown) const
{
    return std::any_of(press.lines.begin(), press.lines.end(), [&](const QString &line) {
        if (!isIngredientEditor(*press.window))
            return findName(m_tables.utensils, line, none) == none;
        return findName(m_tables.ingredients, nameOf(line), none) == none
            || !m_tables.ingredients.contains(shown.lineKeys.at(nameOf(line)));
    });
}

void Model::editorPressed(const Press &press, Shown &shown)
{
    std::vector<Tables> allowed{m_tables};
    if (press.button->objectName() == "cmdDone"_L1) {
        if (press.isRefused()) {
            if (!isLineMissing(press, shown))
                addFault(u"the lines were refused, although the catalog has all of them"_s);
        } else if (m_tables.recipes.contains(shown.key)) {
            allowed.assign(2, m_tables);
            const bool ingredients = isIngredientEditor(*press.window);
            for (const bool byName : {true, false}) {
                Tables &after = allowed[byName ? 0 : 1];
                (ingredients ? after.ingredientLinks : after.utensilLinks)[shown.key] =
                    linksOf(press, shown, byName);
            }
        }
    }
    const bool hadFault = !m_fault.isEmpty();
    expect(allowed, press);
    if (!hadFault && !m_fault.isEmpty())
        m_fault += u"  the editor was opened for recipe %1 and shows: %2\n"_s.arg(shown.key).arg(
            press.lines.join(", "_L1));
}

// Comparing

void Model::expect(std::vector<Tables> allowed, const Press &press)
{
    if (press.hasFailed())
        allowed.push_back(m_tables);
    const Tables stored = m_file.read();
    const auto equal = std::find_if(allowed.begin(), allowed.end(), [&](const Tables &tables) {
        return difference(tables, stored).isEmpty();
    });
    if (equal == allowed.end())
        addFault(u"after %1 of %2:\n%3"_s.arg(press.button->objectName(),
                                              press.window->objectName(),
                                              difference(allowed.front(), stored)));
    setTables(stored);
}

void Model::check(const QString &after)
{
    const Tables stored = m_file.read();
    if (const QString lines = difference(m_tables, stored); !lines.isEmpty())
        addFault(u"nothing was saved by a button, but after %1:\n%2"_s.arg(after, lines));
    if (const QString doubled = doubledNames(stored); !doubled.isEmpty())
        addFault(u"names are not unique:\n"_s + doubled);
}

void Model::takeOver()
{
    setTables(m_file.read());
}

void Model::setTables(const Tables &tables)
{
    m_tables = tables;
    addNames(m_recipes, tables.recipes);
    addNames(m_ingredients, tables.ingredients);
    addNames(m_utensils, tables.utensils);
}

void Model::addFault(const QString &fault)
{
    if (m_fault.isEmpty())
        m_fault = fault;
}
