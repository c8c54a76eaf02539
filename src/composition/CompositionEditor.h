#pragma once

#include "data/DataSource.h"
#include "frame/ChildWindow.h"

class ComposedRecipe;
class ListBox;
class QPushButton;

// The base of both composition editors. When an editor is loaded, it copies the lines and the key
// of the recipe shown; Done stores the lines for that key. An editor keeps the activation unless a
// catalog is to get it.
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
        DataSource *lines = nullptr; // the table of link rows in which the lines are stored
        ListBox *lineList = nullptr;
        QPushButton *add = nullptr;
        QPushButton *remove = nullptr; // the Delete key in the list of lines does the same
        QPushButton *cancel = nullptr;
        QPushButton *done = nullptr;
        QString missingText; // error text; %1 is replaced by the lines that the catalog lacks
    };

    using ChildWindow::ChildWindow;
    void setComposition(const Composition &composition); // to be called once, by the constructor

    DataSources &sources() { return m_sources; } // for the declaration of catalog and lines
    void openDataSources() final;
    bool keepsActivationFrom(const ChildWindow &next) const noexcept final;

    virtual void addSelected() = 0;
    virtual void cmdRemove_Click() = 0;
    virtual QStringList names() const = 0; // in the catalog; one for each line, in their order
    // Sets what a link row stores beside the keys.
    virtual void setFields(RecordCursor & /*row*/, qsizetype /*line*/) const { }

    // Returns the recipe shown in the recipe window; the lines will be stored for it. Throws if
    // that window is not loaded.
    const ComposedRecipe &takeRecipe();

    void readCatalog(); // requeries both sources and lists the catalog's names

private:
    void cmdAdd_Click();
    void cmdCancel_Click();
    void cmdDone_Click();

    QStringList writeBack(); // returns the lines whose names the catalog lacks; empty if all stored
    void showMissing(const QStringList &missing);

    DataSources m_sources;
    Composition m_composition;
    qint64 m_recipeId = 0;
};
