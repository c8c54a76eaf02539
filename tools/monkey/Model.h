#pragma once

#include "RandomInteraction.h"
#include "Screen.h"
#include "Tables.h"

#include <QObject>

#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

class OtherProgram;
class QPushButton;
class QWidget;

// Says what the recipe database must hold: what the windows show at the moment in which the user
// saves it, in the row whose title or name the window shows. It reads the controls of the windows
// and the answered boxes, and shares no code with the program.
//
// It sees a press of a button through QAbstractButton::released(), which comes before the window
// handles the press, and through clicked(), which reaches this object after the window.
class Model final : public QObject
{
    Q_OBJECT

public:
    explicit Model(OtherProgram &file); // installs itself as an event filter of the application

    const Tables &tables() const { return m_tables; }

    void onAnswered(const AnsweredBox &box);
    int answeredBoxes() const { return m_answeredBoxes; } // so far
    bool isPressing() const { return m_press.has_value(); }
    bool hasBoxInPress() const { return m_press && !m_press->boxes.empty(); }

    void takeOver(); // what another program has written
    void check(const QString &after); // compares the file with the model

    QString fault() const { return m_fault; } // the first one found, or empty

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static constexpr Key none = -1;
    using Names = std::set<std::pair<QString, Key>>; // in lower case

    // What the model knows of a window.
    struct Shown {
        Key key = none; // of the row shown, 0 for a new one; in an editor that of its recipe
        Recipe recipe; // as the user found it
        Ingredient ingredient;
        std::optional<QString> description; // if the user has entered one
    };

    struct Press {
        QPushButton *button = nullptr;
        QWidget *window = nullptr;
        Shown shown; // before the press
        Recipe recipe; // what the window shows
        Ingredient ingredient;
        QString utensil;
        std::vector<Line> lines;
        bool isChanged = false; // whether Save is enabled
        std::vector<AnsweredBox> boxes;

        QString answerTo(const QString &title) const; // the last one
        bool hasFailed() const; // an error box of the program's ErrorBoundary came
        bool isRefused() const; // an error box came before a name was asked for
    };

    void watch(QWidget &window);
    void observe();
    void observeCatalog(QWidget &window, Shown &shown);
    // Adds a fault if no row with this key has or had this name.
    void checkKey(const Line &line, const Names &names);
    void onTitleChanged(QWidget &window);
    void onKeyPress(const QObject &watched, int key);
    void onReleased(QPushButton *button);
    void onClicked(QPushButton *button);

    void recipePressed(const Press &press, Shown &shown);
    void recipeSaved(const Press &press, Shown &shown);
    void ingredientPressed(const Press &press, const Shown &shown);
    void utensilPressed(const Press &press, const Shown &shown);
    void editorPressed(const Press &press, const Shown &shown);

    bool isIngredientRefused(const Ingredient &entered, const Shown &shown) const;
    // Returns what the lines of an editor are stored as, or nothing if the catalog lacks one.
    std::optional<std::vector<Link>> linksOf(const Press &press) const;

    // The file must hold these tables. If the press has failed, the error may have come before they
    // were stored.
    void expect(const Tables &tables, const Press &press);
    void addFault(const QString &fault);
    void setTables(const Tables &tables);

    OtherProgram &m_file;
    Tables m_tables;
    // Every name that a row has or had, in lower case. Of two recipes the later has it.
    std::map<QString, Key> m_recipes;
    Names m_ingredients;
    Names m_utensils;
    std::map<QWidget *, Shown> m_windows;
    std::optional<Press> m_press; // that a window is handling, until the next event
    // Whether the press is that of a key in a catalog's find bar, which saves and goes to another
    // row as the button of the press does. No clicked() ends it, but the next event.
    bool m_isMoving = false;
    int m_answeredBoxes = 0;
    QString m_fault;
};
