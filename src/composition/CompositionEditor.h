#pragma once

#include "frame/ChildWindow.h"

class ComposedRecipe;
class DataSource;
class ListBox;
class QPushButton;
class RecordCursor;

// What both composition editors do. An editor takes a copy of the recipe's lines when it is loaded,
// with the key of that recipe, for which it stores them at Done. It keeps the activation, except
// from the catalogs.
class CompositionEditor : public ChildWindow
{
    Q_OBJECT

protected:
    // What one editor has of its own; all of it lives as long as the window.
    struct Composition {
        DataSource *catalog = nullptr;
        QLatin1StringView keyField; // of the catalog, and of the lines that refer to it
        QLatin1StringView nameField;
        ListBox *catalogList = nullptr;
        DataSource *lines = nullptr; // the whole table in which they are stored
        ListBox *lineList = nullptr;
        QPushButton *add = nullptr;
        QPushButton *remove = nullptr; // as the Delete key in the list of lines
        QPushButton *cancel = nullptr;
        QPushButton *done = nullptr;
        QString refusal; // with %1 in the place of the lines that name what the catalog lacks
    };

    using ChildWindow::ChildWindow;
    void setComposition(const Composition &composition); // once, by the constructor

    void openDataSources() final;
    bool keepsActivationFrom(const ChildWindow &next) const noexcept final;

    virtual void addSelected() = 0;
    virtual void cmdRemove_Click() = 0;
    virtual QStringList names() const = 0; // of what the lines use, in their order
    // Sets what is stored with a line beside the keys.
    virtual void setFields(RecordCursor & /*row*/, qsizetype /*line*/) const { }

    // The recipe shown in the recipe window, for which the lines will be stored; throws where that
    // is not loaded.
    const ComposedRecipe &takeRecipe();

    void readCatalog(); // and lists it

private:
    void cmdAdd_Click();
    void cmdCancel_Click();
    void cmdDone_Click();

    QStringList writeBack(); // returns the lines for which the catalog lacks something
    void refuse(const QStringList &missing);
    void leave();

    Composition m_composition;
    qint64 m_recipeId = 0;
};
