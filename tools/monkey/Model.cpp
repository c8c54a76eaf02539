#include "Model.h"

#include "OtherProgram.h"
#include "frame/ChildWindow.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QPushButton>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

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
    case QEvent::Timer: // QAbstractButton::animateClick(), which a screen reader calls, ends by one
        if (std::exchange(m_isMoving, false) && m_press)
            onClicked(m_press->button);
        m_press.reset();
        observe();
        if (event->type() == QEvent::KeyPress)
            onKeyPress(*watched, static_cast<const QKeyEvent &>(*event).key());
        break;
    default:
        break;
    }
    return false;
}

// Enter and the arrow keys in the find bar of a catalog offer to save, as Next does.
void Model::onKeyPress(const QObject &watched, int key)
{
    static constexpr int moving[] = {Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Up,
                                     Qt::Key_Down,   Qt::Key_PageUp, Qt::Key_PageDown};
    if (watched.objectName() != "txtFind"_L1
        || std::find(std::begin(moving), std::end(moving), key) == std::end(moving))
        return;
    for (const auto &[window, shown] : m_windows) {
        const bool isCatalog = isIngredients(*window) || isUtensils(*window);
        if (isCatalog && window->isAncestorOf(static_cast<const QWidget *>(&watched))) {
            onReleased(window->findChild<QPushButton *>(u"cmdNext"_s));
            m_isMoving = true;
            return;
        }
    }
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
        if (isSaveEnabled(*window))
            continue;
        if (isRecipe(*window)) {
            shown.recipe = recipeOnScreen(*window);
            shown.description.reset();
        } else if (isIngredients(*window) || isUtensils(*window)) {
            observeCatalog(*window, shown);
        }
    }
}

// A catalog that could not be read again disables Save, but keeps what the user has typed.
void Model::observeCatalog(QWidget &window, Shown &shown)
{
    if (!isCatalogRead(window))
        return;
    const bool ingredients = isIngredients(window);
    if (ingredients)
        shown.ingredient = ingredientOnScreen(window);
    const Line selected = selectedInCatalog(window);
    checkKey(selected, ingredients ? m_ingredients : m_utensils);
    shown.key = selected.key;
    // Delete shows the first row in the place of a new one, and selects none.
    if (ingredients && selected.name != shown.ingredient.name) {
        const QString name = shown.ingredient.name.toLower();
        const auto found = m_ingredients.lower_bound({name, 0});
        if (found != m_ingredients.end() && found->first == name)
            shown.key = found->second;
    }
}

void Model::checkKey(const Line &line, const Names &names)
{
    if (line.key != 0 && !names.contains({line.name.toLower(), line.key}))
        addFault(u"\"%1\" is listed with the key %2\n"_s.arg(line.name).arg(line.key));
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
    else if (const auto found = m_recipes.find(window.windowTitle().toLower());
             found != m_recipes.end())
        shown.key = findName(m_tables.recipes, window.windowTitle(), found->second);
    else
        shown.key = none;
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
        press.utensil = utensilOnScreen(*window);
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
        expect(m_tables, press);
}

// Comparing

void Model::expect(const Tables &tables, const Press &press)
{
    const Tables stored = m_file.read();
    const QString lines = difference(tables, stored);
    const bool isKept = press.hasFailed() && difference(m_tables, stored).isEmpty();
    if (!lines.isEmpty() && !isKept)
        addFault(u"after %1 of %2:\n%3"_s.arg(press.button->objectName(),
                                              press.window->objectName(), lines));
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
    for (const auto &[key, row] : tables.recipes)
        m_recipes[row.name.toLower()] = key;
    for (const auto &[key, row] : tables.ingredients)
        m_ingredients.emplace(row.name.toLower(), key);
    for (const auto &[key, row] : tables.utensils)
        m_utensils.emplace(row.name.toLower(), key);
}

void Model::addFault(const QString &fault)
{
    if (m_fault.isEmpty())
        m_fault = fault;
}
