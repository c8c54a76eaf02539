#pragma once

#include "data/DataSource.h"
#include "frame/ChildWindow.h"
#include "widgets/ListBox.h"

class ComposedRecipe;
class FindBar;
class ListBoxFinder;
class QPushButton;

// The base of both composition editors. When an editor is loaded, it copies the lines and the key
// of the recipe shown; Done stores the lines for that key. A line remembers its entry of the
// catalog, which may be renamed before Done. An editor keeps the activation unless a catalog is to
// get it.
class CompositionEditor : public ChildWindow
{
    Q_OBJECT

protected:
    // What differs between the editors. The pointers must be valid as long as the window lives.
    struct Composition {
        DataSource *catalog = nullptr;
        QLatin1StringView keyField; // of the catalog, and of the link rows that refer to it
        QLatin1StringView nameField;
        ListBox *catalogList = nullptr;
        FindBar *findBar = nullptr; // narrows the catalog
        DataSource *lines = nullptr; // the table of link rows in which the lines are stored
        ListBox *lineList = nullptr;
        QPushButton *add = nullptr;
        QPushButton *remove = nullptr; // the Delete key in the list of lines does the same
        QPushButton *cancel = nullptr;
        QPushButton *done = nullptr;
        QString unreadText; // in the place of the catalog if it could not be read
        QString missingText; // error text; %1 is replaced by the lines that the catalog lacks
    };

    using ChildWindow::ChildWindow;
    void setComposition(const Composition &composition); // to be called once, by the constructor

    DataSources &sources() { return m_sources; } // for the declaration of catalog and lines
    void openDataSources() final;
    void refresh() final { Form_Activate(); }
    bool keepsActivationFrom(const ChildWindow &next) const noexcept final;

    virtual void addSelected() = 0;
    virtual void cmdRemove_Click() = 0;
    virtual QStringList names() const = 0; // of the lines, in their order
    // Sets what a link row stores beside the keys.
    virtual void setFields(RecordCursor & /*row*/, qsizetype /*line*/) const { }

    // Returns the recipe shown in the recipe window; the lines will be stored for it. Throws if
    // that window is not loaded.
    const ComposedRecipe &takeRecipe();

    // Requeries both sources and lists the catalog's names. If the find bar narrows the list,
    // the selected row stays selected if it is still found, else the best row found is selected.
    // Otherwise none is. If the names cannot be read, the list says so and Add is disabled. Throws
    // DatabaseError.
    void readCatalog();

    void focusCatalog(); // gives the focus to the find bar if it is open, else to the catalog

    // Whether a line has this name or is the same entry of the catalog under an earlier name.
    bool isListed(const ListBox::Row &entry) const;

private:
    void cmdAdd_Click();
    void cmdCancel_Click();
    void cmdDone_Click();
    void onFindEntered();
    void onFindMoved(int row);
    void selectFound();

    void findKeys();
    qint64 keyInCatalog(qint64 key, const QString &name);
    QStringList writeBack(); // returns the lines that the catalog lacks; empty if all stored
    void showMissing(const QStringList &missing);

    DataSources m_sources;
    DataSource m_recipes{m_sources}; // a new recipe may get the key of a deleted one
    Composition m_composition;
    ListBoxFinder *m_finder = nullptr;
    qint64 m_recipeId = 0;
    // Of the file in which the lines have their keys, see Database::fileNumber(); 0 before that.
    int m_fileNumber = 0;
};
