#pragma once

#include "RandomInteraction.h"
#include "Tables.h"

#include <QObject>

#include <map>
#include <optional>
#include <vector>

class OtherProgram;
class QPushButton;
class QWidget;

// Says what the recipe file must hold: what the windows show at the moment in which the user saves
// it, in the row whose title or name the window shows. It reads the controls of the windows and the
// answered boxes, and shares no code with the program.
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
    using Names = std::map<QString, Key>;

    // What the model knows of a window.
    struct Shown {
        Key key = none; // of the row shown, 0 for a new one; in an editor that of its recipe
        Key otherKey = none; // the row could as well be this one
        QString name; // as it was seen last, and the selected row of the catalog
        int selectedRow = -1;
        Recipe recipe; // as the user found it
        Ingredient ingredient;
        std::optional<QString> description; // if the user has entered one
        Names lineKeys; // of an editor's lines
    };

    struct Press {
        QPushButton *button = nullptr;
        QWidget *window = nullptr;
        Shown shown; // before the press
        Recipe recipe; // what the window shows
        Ingredient ingredient;
        QStringList lines;
        bool isChanged = false; // whether Save is enabled
        std::vector<AnsweredBox> boxes;

        QString answerTo(const QString &title) const; // the last one
        bool hasFailed() const; // an error box of the program's ErrorBoundary came
        bool isRefused() const; // an error box came before a name was asked for
    };

    void watch(QWidget &window);
    void observe();
    void observeRecipe(QWidget &window, Shown &shown) const;
    void observeCatalog(QWidget &window, Shown &shown) const;
    void observeEditor(QWidget &window, Shown &shown) const;
    void onTitleChanged(QWidget &window);
    void onReleased(QPushButton *button);
    void onClicked(QPushButton *button);

    void recipePressed(const Press &press, Shown &shown);
    void recipeSaved(const Press &press, Shown &shown);
    void ingredientPressed(const Press &press, Shown &shown);
    void utensilPressed(const Press &press, Shown &shown);
    void editorPressed(const Press &press, Shown &shown);

    bool isIngredientRefused(const Ingredient &entered, const Shown &shown) const;
    std::vector<Link> linksOf(const Press &press, const Shown &shown, bool byName) const;
    bool isLineMissing(const Press &press, const Shown &shown) const; // in the catalog

    // The file must hold one of these. An error may come after the transaction has been committed,
    // so that the old tables are allowed too if the press has failed.
    void expect(std::vector<Tables> allowed, const Press &press);
    void addFault(const QString &fault);
    void setTables(const Tables &tables);

    OtherProgram &m_file;
    Tables m_tables;
    Names m_recipes; // every name that a row has or had, in lower case
    Names m_ingredients;
    Names m_utensils;
    std::map<QWidget *, Shown> m_windows;
    std::optional<Press> m_press; // that a window is handling, until the next event
    int m_answeredBoxes = 0;
    QString m_fault;
};
